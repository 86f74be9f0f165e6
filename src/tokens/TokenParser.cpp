#include "tokens/TokenParser.h"

#include "base/Durations.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "tokens/Replace.h"

namespace tessera {

namespace {

template <class Source>
struct Token {
    const char* text;
    std::string (*value)(const Source&);
};

// A template that becomes its text, step by step.
class Expansion {
public:
    explicit Expansion(std::string text) : m_text(std::move(text)) {}

    void replace(std::string_view token, std::string_view value)
    {
        replaceToken(token, value, m_text, m_room);
    }
    // One token after the other in the order given: a value that holds a later token is expanded by
    // that token's step. A value is asked for only when its token is there.
    template <class Source>
    void replaceAll(std::span<const Token<Source>> tokens, const Source& source)
    {
        for (const Token<Source>& token : tokens) {
            if (containsToken(m_text, token.text))
                replace(token.text, token.value(source));
        }
    }
    std::string text() && { return std::move(m_text); }

private:
    std::string m_text;
    std::size_t m_room = kRoomForValues;
};

std::string number(std::int32_t value)
{
    return format("%ld", static_cast<long>(value));
}

std::string artistName(const Album& album)
{
    return album.artist != nullptr ? album.artist->displayName : std::string{};
}

template <std::string Album::*member>
std::string albumText(const Album& album)
{
    return album.*member;
}

std::string albumBitrate(const Album& album)
{
    return number(album.maxBitrate);
}

std::string albumTrackNumber(const Album& album)
{
    return number(static_cast<std::int32_t>(album.tracks.size()));
}

std::string albumYear(const Album& album)
{
    return yearText(album.year);
}

std::string albumDuration(const Album& album)
{
    return formatDuration(static_cast<std::uint32_t>(album.duration), DurationStyle::Clock);
}

constexpr Token<Album> kAlbumExpansion[] = {
    {"<Album>", albumText<&Album::displayTitle>},
    {"<AlbumPath>", albumText<&Album::path>},
    {"<Artist>", artistName},
    {"<Bitrate>", albumBitrate},
    {"<Duration>", albumDuration},
    {"<Favourite>", [](const Album& album) { return favouriteText(album, TextStyle::Long); }},
    {"<Compilation>", [](const Album& album) { return compilationText(album, TextStyle::Long); }},
    {"<Genre>", albumText<&Album::genre>},
    {"<New>", [](const Album& album) { return newText(album, TextStyle::Long); }},
    {"<NewDate>", [](const Album& album) { return newDateText(album.newDate); }},
    {"<NumTracks>", albumTrackNumber},
    {"<NumTracksEx>", [](const Album& album) { return trackCountText(album.tracks.size()); }},
    {"<Rank>", [](const Album& album) { return number(album.rank); }},
    {"<RankEx>", [](const Album& album) { return rankText(album.rank, TextStyle::Long); }},
    {"<Type>", albumText<&Album::type>},
    {"<Year>", albumYear},
};

// Behind "<MJArtworkDir>".
constexpr Token<Album> kArtworkExpansion[] = {
    {"<Album>", albumText<&Album::displayTitle>},
    {"<AlbumPath>", albumText<&Album::path>},
    {"<Artist>", artistName},
    {"<Bitrate>", albumBitrate},
    {"<Genre>", albumText<&Album::genre>},
    {"<NumTracks>", albumTrackNumber},
    {"<Type>", albumText<&Album::type>},
    {"<Year>", albumYear},
};

// The host's objects change nothing by being read, but their calls are not const.
using FileSource = HostFile*;

template <FileText field>
std::string fileText(const FileSource& file)
{
    return file->text(field);
}

template <FileNumber field>
std::string fileNumber(const FileSource& file)
{
    return number(file->number(field));
}

std::string fileNumberEx(const FileSource& file)
{
    const long track = file->number(FileNumber::Track);
    return format("%*ld", track < 10 ? 3 : 0, track);
}

std::string fileRating(const FileSource& file)
{
    const std::int32_t rating = file->number(FileNumber::Rating);
    return rating < 1 ? "Not Rated" : number(rating);
}

constexpr Token<FileSource> kTrackExpansion[] = {
    {"<Name>", fileText<FileText::Name>},
    {"<FileSize>", fileText<FileText::FileSize>},
    {"<Duration>", fileText<FileText::DurationText>},
    {"<Genre>", fileText<FileText::Genre>},
    {"<Year>", [](const FileSource& file) { return yearText(file->number(FileNumber::Year)); }},
    {"<Bitrate>", fileNumber<FileNumber::Bitrate>},
    {"<Number>", fileNumber<FileNumber::Track>},
    {"<NumberEx>", fileNumberEx},
    {"<FileDate>", fileText<FileText::FileDate>},
    {"<Custom1>", fileText<FileText::Custom1>},
    {"<Custom2>", fileText<FileText::Custom2>},
    {"<Custom3>", fileText<FileText::Custom3>},
    {"<PlayCounter>", fileNumber<FileNumber::PlayCount>},
    {"<LastPlayed>", fileText<FileText::LastPlayed>},
    {"<Rating>", fileRating},
    {"<Type>", fileText<FileText::Type>},
};

std::string orUnassigned(const std::string& text)
{
    return text.empty() ? "(Unassigned)" : text;
}

// Of the track that plays, which may belong to no album of the database.
constexpr Token<FileSource> kFileAlbumExpansion[] = {
    {"<Artist>", [](const FileSource& file) { return orUnassigned(file->text(FileText::Artist)); }},
    {"<Album>", [](const FileSource& file) { return orUnassigned(file->text(FileText::Album)); }},
};

constexpr Token<Album> kTrackAlbumExpansion[] = {{"<Artist>", artistName},
                                                 {"<Album>", albumText<&Album::displayTitle>}};

constexpr Token<Album> kPreviewAlbum[] = {
    {"<Artist>", artistName},
    {"<Album>", albumText<&Album::displayTitle>},
    {"<Genre>", albumText<&Album::genre>},
};

struct PreviewText {
    const char* token;
    const char* text;
};

constexpr PreviewText kPreviewTexts[] = {
    {"<Name>", "Part One"},
    {"<FileSize>", "22,714kb"},
    {"<Duration>", "19:22"},
    {"<Year>", "1975"},
    {"<Bitrate>", "192"},
    {"<Number>", "1"},
    {"<NumberEx>", "  1"},
    {"<FileDate>", "15 September 2002"},
    {"<Custom1>", "Custom1"},
    {"<Custom2>", "Custom2"},
    {"<Custom3>", "Custom3"},
    {"<PlayCounter>", "1"},
    {"<LastPlayed>", "15 September 2002"},
    {"<Rating>", "1"},
    {"<Type>", "MP3"},
};

constexpr const char* kAlbumTokens[] = {"<Album>",       "<AlbumPath>", "<Artist>",    "<Bitrate>",
                                        "<Compilation>", "<Duration>",  "<Favourite>", "<Genre>",
                                        "<New>",         "<NewDate>",   "<NumTracks>", "<NumTracksEx>",
                                        "<Rank>",        "<RankEx>",    "<Type>",      "<Year>"};

constexpr const char* kTrackTokens[] = {
    "<Album>",    "<Artist>",      "<Bitrate>",  "<Custom1>", "<Custom2>",    "<Custom3>", "<Duration>",
    "<FileDate>", "<Filename>",    "<FileSize>", "<Genre>",   "<LastPlayed>", "<Name>",    "<Number>",
    "<NumberEx>", "<PlayCounter>", "<Rating>",   "<Type>",    "<Year>"};

} // namespace

TokenParser::TokenParser()
{
    m_artist.id = 1;
    m_artist.displayName = m_artist.hostName = "Harlan Voss";
    m_artist.albums[1] = &m_album;

    m_album.id = 1;
    m_album.displayTitle = m_album.hostTitle = "Tidewater";
    m_album.type = "MP3";
    m_album.minBitrate = m_album.maxBitrate = 192;
    m_album.year = 1975;
    m_album.duration = 2198;
    m_album.flags = kAlbumNew | kAlbumFavourite;
    m_album.newDate = 20020101;
    m_album.genre = "New Age";
    m_album.path = "C:\\My Music\\Harlan Voss\\Tidewater";
    m_album.rank = 1;
    m_album.artist = &m_artist;

    m_tracks[0].fileName = "01 - Part One.mp3";
    m_tracks[1].fileName = "02 - Part Two.mp3";
    for (std::int32_t id = 1; Track & track : m_tracks) {
        track.id = id;
        track.album = &m_album;
        m_album.tracks[id++] = &track;
    }
}

std::string TokenParser::expandAlbum(std::string_view text, const Album& album) const
{
    Expansion expansion(processTemplateEscapes(text));
    expansion.replaceAll<Album>(kAlbumExpansion, album);
    return std::move(expansion).text();
}

std::string TokenParser::expandArtwork(std::string_view pattern, const Album& album) const
{
    Expansion expansion{std::string(pattern)};
    expansion.replace("<MJArtworkDir>", m_artworkFolder);
    expansion.replaceAll<Album>(kArtworkExpansion, album);
    return std::move(expansion).text();
}

std::string TokenParser::expandTrack(std::string_view text, const Track& track, unsigned flags) const
{
    Expansion expansion(processTemplateEscapes(text));
    expansion.replace("<Filename>", track.fileName);
    if ((flags & kPreview) != 0) {
        expansion.replaceAll<Album>(kPreviewAlbum, m_album);
        for (const PreviewText& preview : kPreviewTexts)
            expansion.replace(preview.token, preview.text);
        return std::move(expansion).text();
    }
    if (track.m_pMJFile == nullptr)
        throw HostError(kErrorPointer);
    const FileSource file = track.m_pMJFile.get();
    const Album none;
    if ((flags & kFromHostFile) != 0)
        expansion.replaceAll<FileSource>(kFileAlbumExpansion, file);
    else
        expansion.replaceAll<Album>(kTrackAlbumExpansion, track.album != nullptr ? *track.album : none);
    expansion.replaceAll<FileSource>(kTrackExpansion, file);
    return std::move(expansion).text();
}

std::string artworkTokenHelp()
{
    return "Supported Tokens (case insensitive):\n\n"
           "<MJArtworkDir>  <Album>  <AlbumPath>  <Artist>  <Bitrate>  <Genre>  <NumTracks>  <Type>  <Year>";
}

std::string trackTokenHelp()
{
    return "Supported Tokens (case insensitive):\n\n"
           "<Album>  <Artist>  <Bitrate>  <Custom1>  <Custom2>  <Custom3>  <Duration>  <FileDate>  "
           "<Filename>  "
           "<FileSize>  <FileSize>  <Genre>  <LastPlayed>  <Name>  <Number>  <NumberEx>  <PlayCounter>  "
           "<Rating>  <Type>  <Year>";
}

std::span<const char* const> albumTokens()
{
    return kAlbumTokens;
}

std::span<const char* const> trackTokens()
{
    return kTrackTokens;
}

} // namespace tessera
