#include "GeneratedLibrary.h"

#include "Report.h"
#include "library/Format.h"

#include <cstdio>
#include <cstdlib>

namespace tessera::bench {

namespace {

constexpr const char* kWords[] = {"Harbour",  "Evening", "Glass",   "Northern", "Paper",  "Slow",
                                  "Electric", "Copper",  "Silent",  "Golden",   "Winter", "Orchard",
                                  "Midnight", "Velvet",  "Distant", "Marble"};

const char* word(std::int32_t number)
{
    return kWords[static_cast<std::uint32_t>(number) % std::size(kWords)];
}

class UnusedFile : public HostFile {
public:
    std::string text(FileText) override { return {}; }
    std::u16string wideText(FileText) override { return {}; }
    std::int32_t number(FileNumber) override { return 0; }
    std::string image(ImageKind) override { return {}; }
};

class NullFile : public OutputFile {
public:
    bool write(ByteView) override { return true; }
    bool seek(std::uint32_t) override { return true; }
    bool readAt(std::uint32_t, std::span<std::uint8_t>) override { return false; }
    std::optional<std::uint64_t> size() override { return std::nullopt; }
    bool flush() override { return true; }
};

void writeAlbum(const GeneratedLibrary& library, std::int32_t album, BufferedWriter& out)
{
    const std::int32_t first = library.firstTrack(album);
    const std::int32_t end = library.firstTrack(album + 1);
    out.put(std::uint32_t{kAlbumTitleOnce});
    out.put(album + 1);
    out.putText(library.title(album));
    out.putText("MP3");
    out.put(album / 4 + 1);
    out.putText(word(album / 7));
    out.put((end - first) * 217);
    out.put(std::int32_t{128});
    out.put(std::int32_t{320});
    out.put(1960 + album % 60);
    out.put(std::int32_t{0}); // rank
    out.put(std::int32_t{0}); // new date
    out.put(end - first);
    for (std::int32_t track = first; track < end; ++track)
        out.put(track + 1);
    out.putText(library.folder(album));
    out.putText({});
}

void writeArtist(const GeneratedLibrary& library, std::int32_t artist, BufferedWriter& out)
{
    const std::int32_t end = std::min((artist + 1) * 4, library.shape().albums);
    out.put(ts2::kNameOnce);
    out.put(artist + 1);
    out.putText(library.artist(artist * 4));
    out.put(std::int32_t{0}); // not complete
    out.put(end - artist * 4);
    for (std::int32_t album = artist * 4; album < end; ++album)
        out.put(album + 1);
}

} // namespace

std::int32_t GeneratedLibrary::firstTrack(std::int32_t album) const
{
    return static_cast<std::int32_t>(std::int64_t{album} * m_shape.tracks / m_shape.albums);
}

std::int32_t GeneratedLibrary::albumOf(std::int32_t track) const
{
    return static_cast<std::int32_t>(((std::int64_t{track} + 1) * m_shape.albums - 1) / m_shape.tracks);
}

std::string GeneratedLibrary::artist(std::int32_t album) const
{
    return format("The %s %s %d", word(album / 4), word(album / 64 + 5), static_cast<int>(album / 4));
}

std::string GeneratedLibrary::title(std::int32_t album) const
{
    return format("%s %s, Volume %d", word(album * 7), word(album / 16), static_cast<int>(album));
}

std::string GeneratedLibrary::folder(std::int32_t album) const
{
    return "D:\\Music\\" + artist(album) + "\\" + title(album);
}

std::string GeneratedLibrary::fileName(std::int32_t track) const
{
    const std::int32_t album = albumOf(track);
    return folder(album) + format("\\%02d - %s %s.mp3", static_cast<int>(track - firstTrack(album) + 1),
                                  word(track), word(track / 3));
}

void GeneratedLibrary::writeFile(const std::string& name) const
{
    const std::unique_ptr<OutputFile> file = systemFiles().create(name);
    require(file != nullptr, "cannot write a database");
    BufferedWriter out(*file);
    for (const std::uint32_t value : {ts2::kFirstMagic, ts2::kSecondMagic, ts2::kVersion, 0U})
        out.put(value);
    for (const std::int32_t count : {m_shape.tracks, m_shape.albums, artists(), 0})
        out.put(count);
    for (std::int32_t track = 0; track < m_shape.tracks; ++track) {
        out.put(std::uint32_t{0});
        out.put(track + 1);
        out.putText(fileName(track));
        out.put(albumOf(track) + 1);
    }
    for (std::int32_t album = 0; album < m_shape.albums; ++album)
        writeAlbum(*this, album, out);
    for (std::int32_t artist = 0; artist < artists(); ++artist)
        writeArtist(*this, artist, out);
    require(out.flush(), "cannot write a database");
}

void NoPrompt::message(Severity, const std::string& text)
{
    std::fprintf(stderr, "bench: message: %s\n", text.c_str());
    std::exit(1);
}

void NoPrompt::assertion(const std::string& expression, const std::string& unit, unsigned long line)
{
    std::fprintf(stderr, "bench: assertion: %s (%s, %lu)\n", expression.c_str(), unit.c_str(), line);
    std::exit(1);
}

OneFileHost::OneFileHost() : m_file(std::make_shared<UnusedFile>()) {}

std::unique_ptr<OutputFile> NullFiles::create(const std::string&)
{
    return std::make_unique<NullFile>();
}

} // namespace tessera::bench
