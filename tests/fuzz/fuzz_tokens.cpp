#include "tokens/Replace.h"
#include "tokens/TokenParser.h"

#include <cstdlib>
#include <string>

using namespace tessera;

namespace {

// Answers every question with the same text.
class EchoFile : public HostFile {
public:
    explicit EchoFile(std::string text) : m_text(std::move(text)) {}
    std::string text(FileText) override { return m_text; }
    std::u16string wideText(FileText) override { return {}; }
    std::int32_t number(FileNumber) override { return static_cast<std::int32_t>(m_text.size()) - 2; }
    std::string image(ImageKind) override { return m_text; }

private:
    std::string m_text;
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

// The template, a NUL, then what the album and the host answer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TokenParser parser;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\0');
    const std::string text = input.substr(0, end);
    const std::string value = end == std::string::npos ? std::string{} : input.substr(end + 1);

    Artist artist;
    artist.displayName = value;
    Album album;
    album.artist = &artist;
    album.displayTitle = album.path = album.genre = album.type = value;
    album.year = album.rank = album.newDate = static_cast<std::int32_t>(size);
    Track track;
    track.album = &album;
    track.fileName = value;
    track.m_pMJFile = std::make_shared<EchoFile>(value);

    require(processTemplateEscapes(text).size() <= std::min<std::size_t>(text.size(), 8191));
    require(parser.expandAlbum(text, album).size() <= 8191 + kRoomForValues);
    require(parser.expandArtwork(text, album).size() <= text.size() + kRoomForValues);
    for (const unsigned flags : {0U, 1U, 2U, 3U})
        require(parser.expandTrack(text, track, flags).size() <= 8191 + kRoomForValues);
    return 0;
}
