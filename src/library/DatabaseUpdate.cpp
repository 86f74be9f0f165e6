#include "library/Database.h"

#include "library/DatabaseWriter.h"

#include <algorithm>

namespace tessera {

namespace {

// What an update may change; the other flags and all texts stay as they were read.
constexpr std::uint32_t kSettingFlags = kAlbumNew | kAlbumFavourite | kAlbumCompilation;

constexpr const char* kCouldNotOpen = "Could not open the database '%s'!";
constexpr const char* kCouldNotRead = "Could not read the database '%s'!";
constexpr const char* kCouldNotWrite = "Could not write the database '%s'!";
constexpr const char* kChanged =
    "The database '%s' has been changed by another program! Your changes were not written; open the "
    "database again.";

using Bytes = std::vector<std::uint8_t>;

// Makes the record of one album after the other, in the same memory.
class RecordMaker : private OutputFile {
public:
    // Valid until the next one is made.
    ByteView make(const Album& album)
    {
        m_bytes.clear();
        writeAlbum(m_writer, album);
        m_writer.flush();
        return m_bytes;
    }

private:
    bool write(ByteView bytes) override
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return true;
    }
    bool seek(std::uint32_t) override { return false; }
    bool readAt(std::uint32_t, std::span<std::uint8_t>) override { return false; }
    std::optional<std::uint64_t> size() override { return m_bytes.size(); }
    bool flush() override { return true; }

    Bytes m_bytes;
    BufferedWriter m_writer{*this, 1024};
};

std::uint32_t wordAt(ByteView bytes, std::size_t position)
{
    std::uint32_t word = 0;
    ByteReader(bytes.subspan(position)).take(word);
    return word;
}

// Where the rank stands in the album's record; the new date is behind it.
std::size_t rankPosition(const Album& album)
{
    const std::size_t title = album.has(kAlbumTitleOnce) ? 0 : 4 + album.displayTitle.size();
    return 4 + 4 + 4 + album.hostTitle.size() + title + 4 + album.type.size() + 4 + 4 + album.genre.size() +
           4 * 4;
}

// True when the record in the file, of the same length, differs from the album's in settings only.
bool isSameAlbum(const Album& album, ByteView record, ByteView found)
{
    if (((wordAt(found, 0) ^ wordAt(record, 0)) & ~kSettingFlags) != 0)
        return false;
    const std::size_t rank = rankPosition(album);
    return std::ranges::equal(record.subspan(4, rank - 4), found.subspan(4, rank - 4)) &&
           std::ranges::equal(record.subspan(rank + 8), found.subspan(rank + 8));
}

bool lessId(const Album* left, const Album* right)
{
    return left->id < right->id;
}

// Every record is looked at before the first is written. Both answer why not, or null.
const char* compareRecords(OutputFile& file, std::span<Album* const> albums, RecordMaker& records)
{
    Bytes found;
    for (const Album* album : albums) {
        const ByteView record = records.make(*album);
        found.resize(record.size());
        if (!file.readAt(album->filePosition, found))
            return kCouldNotRead;
        if (!isSameAlbum(*album, record, found))
            return kChanged;
    }
    return nullptr;
}

// One write a record, so that a crash leaves whole ones; all settings of a record that was torn
// nevertheless are written anew by the next update. Several together are seen to the medium; a single
// one, where the wait would be most of the work, is left to the system.
const char* writeRecords(OutputFile& file, std::span<Album* const> albums, RecordMaker& records)
{
    for (Album* album : albums) {
        rebuildColumnTexts(*album);
        if (!file.seek(album->filePosition) || !file.write(records.make(*album)))
            return kCouldNotWrite;
    }
    return albums.size() == 1 || file.flush() ? nullptr : kCouldNotWrite;
}

} // namespace

bool Database::update(const std::string& fileName, std::span<Album* const> changed, FileSystem& files,
                      Prompt& prompt)
{
    addUnsaved(changed);
    const char* const failure = writeUnsaved(fileName, files);
    if (failure)
        prompt.message(Severity::Exclamation, format(failure, shownName(fileName).c_str()));
    return !failure;
}

bool Database::saveUnsaved(const std::string& fileName, FileSystem& files, Prompt& prompt)
{
    const bool saved = !writeUnsaved(fileName, files);
    if (!saved)
        prompt.message(Severity::Exclamation, lostChangesText(m_unsaved.size()));
    return saved;
}

void Database::addUnsaved(std::span<Album* const> changed)
{
    for (Album* album : changed)
        album->columnTextsValid = false;
    m_unsaved.insert(m_unsaved.end(), changed.begin(), changed.end());
    std::ranges::sort(m_unsaved, lessId);
    m_unsaved.erase(std::unique(m_unsaved.begin(), m_unsaved.end()), m_unsaved.end());
}

// Answers the pattern of the message that says why not, or null when nothing is left. The file is
// closed by then: a message may stay on the screen for long.
const char* Database::writeUnsaved(const std::string& fileName, FileSystem& files)
{
    if (m_unsaved.empty())
        return nullptr;
    const std::unique_ptr<OutputFile> file = files.openForUpdate(fileName);
    if (!file)
        return kCouldNotOpen;
    const std::optional<std::uint64_t> size = file->size();
    if (size != m_fileSize) // a cheap first look; most replacements show here
        return size ? kChanged : kCouldNotRead;
    RecordMaker records;
    if (const char* const failure = compareRecords(*file, m_unsaved, records))
        return failure;
    if (const char* const failure = writeRecords(*file, m_unsaved, records))
        return failure;
    m_unsaved.clear();
    return nullptr;
}

std::string lostChangesText(std::size_t albums)
{
    return format("The changes of %ld album%s could not be saved and are lost!", static_cast<long>(albums),
                  albums == 1 ? "" : "s");
}

} // namespace tessera
