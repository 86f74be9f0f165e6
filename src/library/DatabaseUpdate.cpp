#include "library/Database.h"

#include "library/DatabaseWriter.h"

#include <vector>

namespace tessera {

namespace {

// What an update may change; the other flags and all texts stay as they were read.
constexpr std::uint32_t kSettingFlags = kAlbumNew | kAlbumFavourite | kAlbumCompilation;

using Bytes = std::vector<std::uint8_t>;

// A file in memory that takes one record.
class RecordBytes : public OutputFile {
public:
    bool write(ByteView bytes) override
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return true;
    }
    bool seek(std::uint32_t) override { return false; }
    bool seekToEnd() override { return true; }
    std::optional<Bytes> readAt(std::uint32_t, std::uint32_t) override { return std::nullopt; }
    bool flush() override { return true; }
    Bytes take() { return std::move(m_bytes); }

private:
    Bytes m_bytes;
};

Bytes recordOf(const Album& album)
{
    RecordBytes file;
    BufferedWriter writer(file, 1024);
    writeAlbum(writer, album);
    writer.flush();
    return file.take();
}

std::uint32_t wordAt(const Bytes& bytes, std::size_t position)
{
    std::uint32_t word = 0;
    ByteReader(ByteView(bytes).subspan(position)).take(word);
    return word;
}

// Where the rank stands in the album's record; the new date is behind it.
std::size_t rankPosition(const Album& album)
{
    const std::size_t title = album.has(kAlbumTitleOnce) ? 0 : 4 + album.displayTitle.size();
    return 4 + 4 + 4 + album.hostTitle.size() + title + 4 + album.type.size() + 4 + 4 + album.genre.size() +
           4 * 4;
}

// True when the record in the file differs from the album's in settings only.
bool isSameAlbum(const Album& album, const Bytes& record, const Bytes& found)
{
    if (found.size() != record.size() || ((wordAt(found, 0) ^ wordAt(record, 0)) & ~kSettingFlags) != 0)
        return false;
    const std::size_t rank = rankPosition(album);
    const auto settingsEnd = static_cast<std::ptrdiff_t>(rank + 8);
    return std::equal(record.begin() + 4, record.begin() + static_cast<std::ptrdiff_t>(rank),
                      found.begin() + 4) &&
           std::equal(record.begin() + settingsEnd, record.end(), found.begin() + settingsEnd);
}

bool writeRecord(OutputFile& file, const Album& album, const Bytes& record)
{
    return file.seek(album.filePosition) && file.write(record);
}

void tell(Prompt& prompt, const char* pattern, const std::string& fileName)
{
    prompt.message(Severity::Exclamation, format(pattern, fileName.c_str()));
}

} // namespace

void Database::update(const std::string& fileName, std::span<Album* const> changed, FileSystem& files,
                      Prompt& prompt)
{
    for (Album* album : changed)
        album->columnTextsValid = false;
    const std::unique_ptr<OutputFile> file = files.openForUpdate(fileName);
    if (!file)
        return tell(prompt, "Could not open the database '%s'!", fileName);

    std::vector<Bytes> records;
    records.reserve(changed.size());
    for (const Album* album : changed) {
        records.push_back(recordOf(*album));
        const auto found =
            file->readAt(album->filePosition, static_cast<std::uint32_t>(records.back().size()));
        if (!found || !isSameAlbum(*album, records.back(), *found))
            return tell(prompt,
                        "The database '%s' has been changed by another program! Your changes were not "
                        "written; open the database again.",
                        fileName);
    }
    for (std::size_t i = 0; i < changed.size(); ++i) {
        rebuildColumnTexts(*changed[i]);
        if (!writeRecord(*file, *changed[i], records[i]))
            return tell(prompt, "Could not write the database '%s'!", fileName);
    }
    if (!file->seekToEnd())
        tell(prompt, "Could not write the database '%s'!", fileName);
}

} // namespace tessera
