#include "tokens/TokenParser.h"

#include "base/Dates.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "tokens/Replace.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>

using namespace tessera;

namespace {

// As one would say it: search from the beginning, replace, search from the beginning.
void replaceNaively(std::string_view token, std::string_view value, std::string& text, std::size_t room)
{
    const bool holdsItself = toUpper(value).find(toUpper(token)) != std::string::npos;
    std::size_t from = 0;
    for (;;) {
        const std::size_t at = toUpper(text).find(toUpper(token), from);
        if (at == std::string::npos || value.size() > room)
            return;
        room -= value.size();
        text.replace(at, token.size(), value);
        from = holdsItself ? at + value.size() : 0;
    }
}

// A host's file that tells what it was asked for.
class FakeFile : public HostFile {
public:
    std::string text(FileText field) override
    {
        asked += tessera::format("t%d ", static_cast<int>(field));
        return texts[field];
    }
    std::u16string wideText(FileText) override { return {}; }
    std::int32_t number(FileNumber field) override
    {
        asked += tessera::format("n%d ", static_cast<int>(field));
        return numbers[field];
    }
    std::string image(ImageKind) override { return {}; }

    std::map<FileText, std::string> texts;
    std::map<FileNumber, std::int32_t> numbers;
    std::string asked;
};

struct Case {
    const char* text;
    const char* expected;
};

class Templates : public testing::Test {
protected:
    Templates()
    {
        artist.displayName = "Lumen";
        album.artist = &artist;
        album.displayTitle = "(Various)";
        album.hostTitle = "Dawn";
        album.minBitrate = 128;
        album.maxBitrate = 320;
        track.album = &album;
        track.m_pMJFile = file;
        track.fileName = "C:\\Music\\new\\01.mp3";
        file->texts = {
            {FileText::Artist, "Guest"},      {FileText::Album, "Single"},      {FileText::Name, "Morning"},
            {FileText::FileSize, "1,234kb"},  {FileText::DurationText, "3:21"}, {FileText::Genre, "Ambient"},
            {FileText::FileDate, "1.2.2003"}, {FileText::LastPlayed, "never"},  {FileText::Custom1, "one"},
            {FileText::Custom2, "two"},       {FileText::Custom3, "three"},     {FileText::Type, "OGG"}};
        file->numbers = {{FileNumber::Year, 1999},
                         {FileNumber::Bitrate, 192},
                         {FileNumber::Track, 9},
                         {FileNumber::PlayCount, 5},
                         {FileNumber::Rating, 4}};
    }

    std::string expand(std::string_view text, unsigned flags = 0) const
    {
        return parser.expandTrack(text, track, flags);
    }

    TokenParser parser;
    Artist artist;
    Album album;
    std::shared_ptr<FakeFile> file = std::make_shared<FakeFile>();
    Track track;
};

} // namespace

TEST_F(Templates, TheSampleAlbumShowsEveryToken)
{
    const Case cases[] = {
        {"<Album>", "Tidewater"},
        {"<AlbumPath>", "C:\\My Music\\Harlan Voss\\Tidewater"},
        {"<ARTIST> - <artist>", "Harlan Voss - Harlan Voss"},
        {"<Bitrate>", "192"},
        {"<Compilation>", "Not a Compilation"},
        {"<Duration>", "00:36:38"},
        {"<Favourite>", "Favourite"},
        {"<Genre>", "New Age"},
        {"<New>", "New"},
        {"<NumTracks>", "2"},
        {"<NumTracksEx>", "2 Tracks"},
        {"<Rank>", "1"},
        {"<RankEx>", "Rank 1"},
        {"<Type>", "MP3"},
        {"<Year>", "1975"},
        {"<Bogus> <Name> < Album >", "<Bogus> <Name> < Album >"},
        {"no tokens\\r\\n", "no tokens\r\n"},
        {"<\\x41lbum>", "Tidewater"}, // escapes come first
        {"<Al<Album>", "<AlTidewater"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parser.expandAlbum(c.text, parser.sampleAlbum()), c.expected) << c.text;
    EXPECT_EQ(parser.expandAlbum("<NewDate>", parser.sampleAlbum()), longDate(20020101));
    EXPECT_FALSE(longDate(20020101).empty());
}

TEST_F(Templates, AnAlbumWithoutValues)
{
    const Case cases[] = {
        {"<Album>/<Bitrate>", "(Various)/320"}, // the title shown, the highest bitrate
        {"<Year>|<Rank>|<RankEx>|<NewDate>", "No Year|0|Not Ranked|"},
        {"<New>, <Favourite>", "Old, Not a Favourite"},
        {"<NumTracks> <NumTracksEx>", "0 0 Tracks"},
        {"<Genre><Type><AlbumPath>", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parser.expandAlbum(c.text, album), c.expected) << c.text;
    album.tracks[7] = &track;
    album.duration = 360000;
    album.flags = kAlbumCompilation;
    album.artist = nullptr;
    EXPECT_EQ(parser.expandAlbum("<NumTracksEx>, <Duration>, <Compilation>, <Artist>.", album),
              "1 Track, 100:00:00, Compilation, .");
}

TEST_F(Templates, PreviewsComeFromTheSample)
{
    EXPECT_EQ(parser.expandTrack("<Filename>|<Artist>|<Album>|<Name>|<FileSize>|<Duration>|<Genre>|<Year>|"
                                 "<Bitrate>|<Number>|<NumberEx>|<FileDate>|<Custom1>|<Custom2>|<Custom3>|"
                                 "<PlayCounter>|<LastPlayed>|<Rating>|<Type>",
                                 parser.sampleTrack(), TokenParser::kPreview),
              "01 - Part One.mp3|Harlan Voss|Tidewater|Part One|22,714kb|19:22|New Age|1975|192|1|  1|"
              "15 September 2002|Custom1|Custom2|Custom3|1|15 September 2002|1|MP3");
}

TEST_F(Templates, TrackTokensComeFromTheHost)
{
    EXPECT_EQ(
        expand("<Artist>|<Album>|<Name>|<FileSize>|<Duration>|<Genre>|<Year>|<Bitrate>|<Number>|"
               "<NumberEx>|<FileDate>|<Custom1>|<Custom2>|<Custom3>|<PlayCounter>|<LastPlayed>|"
               "<Rating>|<Type>"),
        "Lumen|(Various)|Morning|1,234kb|3:21|Ambient|1999|192|9|  9|1.2.2003|one|two|three|5|never|4|OGG");
    // Only what the template holds, in the table's order.
    file->asked.clear();
    EXPECT_EQ(expand("<Type> <Name> <Filename>"), "OGG Morning C:\\Music\\new\\01.mp3");
    EXPECT_EQ(file->asked, "t4 t19 ");
}

TEST_F(Templates, NumbersOfTracks)
{
    const struct {
        std::int32_t track;
        std::int32_t year;
        std::int32_t rating;
        const char* expected;
    } cases[] = {
        {9, 0, 0, "  9/9/No Year/Not Rated"},
        {10, -1, -1, "10/10/-1/Not Rated"},
        {0, 2003, 1, "  0/0/2003/1"},
        {-5, 0, 0, " -5/-5/No Year/Not Rated"},
    };
    for (const auto& c : cases) {
        file->numbers = {
            {FileNumber::Track, c.track}, {FileNumber::Year, c.year}, {FileNumber::Rating, c.rating}};
        EXPECT_EQ(expand("<NumberEx>/<Number>/<Year>/<Rating>"), c.expected);
    }
}

TEST_F(Templates, ThePlayingTrackTellsItsArtistAndAlbumItself)
{
    track.album = nullptr;
    EXPECT_EQ(expand("<Artist> - <Album>", TokenParser::kFromHostFile), "Guest - Single");
    file->texts.clear();
    EXPECT_EQ(expand("<Artist> - <Album> - <Name>", TokenParser::kFromHostFile),
              "(Unassigned) - (Unassigned) - ");
    EXPECT_EQ(expand("<Artist> - <Album>"), " - ");
}

TEST_F(Templates, ATrackWithoutAHostFileIsRefused)
{
    track.m_pMJFile = nullptr;
    for (const char* text : {"<Name>", "no token"}) {
        try {
            expand(text);
            ADD_FAILURE() << "no exception for " << text;
        } catch (const HostError& error) {
            EXPECT_EQ(error.code(), kErrorPointer);
        }
    }
    EXPECT_EQ(expand("<Name>", TokenParser::kPreview), "Part One");
}

TEST_F(Templates, ArtworkPatternsKeepTheirBackslashes)
{
    parser.setArtworkFolder("C:\\Cover Art");
    Album& sample = parser.sampleAlbum();
    const Case cases[] = {
        {"<mjartworkdir>\\<Artist> - <Album>.jpg", "C:\\Cover Art\\Harlan Voss - Tidewater.jpg"},
        {"<AlbumPath>\\*front*.jpg", "C:\\My Music\\Harlan Voss\\Tidewater\\*front*.jpg"},
        {"C:\\temp\\<Year>\\<Type>\\<Genre>\\<NumTracks>\\<Bitrate>", "C:\\temp\\1975\\MP3\\New Age\\2\\192"},
        {"<Rank><New><Duration>", "<Rank><New><Duration>"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parser.expandArtwork(c.text, sample), c.expected) << c.text;
    sample.year = 0;
    EXPECT_EQ(parser.expandArtwork("<Year>", sample), "No Year");
}

TEST_F(Templates, ValuesWithTokensInThem)
{
    album.displayTitle = "<Album> by <Artist>";
    artist.displayName = "The <artist> <Genre>";
    album.genre = "<Album>"; // an earlier step's token stays
    EXPECT_EQ(parser.expandAlbum("<Album>", album), "<Album> by The <artist> <Album>");

    file->texts[FileText::Name] = "<Name><Name>";
    EXPECT_EQ(expand("<Name>"), "<Name><Name>");

    album.displayTitle = "album"; // completes its own token with what stands around it
    artist.displayName = "Genre";
    EXPECT_EQ(parser.expandAlbum("<<Album>> <<<ALBUM>>>, <<Artist>>", album), "album album, <Album>");
}

TEST_F(Templates, ReplacingIsTheSameAsSearchingFromTheBeginning)
{
    constexpr const char* kPieces[] = {"<", ">", "a", "B>", "<A", "<aB>", "<<A", "b>>", "x", "><"};
    std::minstd_rand random(7);
    const auto put = [&](std::size_t pieces) {
        std::string text;
        for (std::size_t i = random() % (pieces + 1); i > 0; --i)
            text += kPieces[random() % std::size(kPieces)];
        return text;
    };
    int replaced = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string before = put(30);
        const std::string value = put(4);
        const std::size_t room = i % 3 == 0 ? random() % 20 : 200; // some values never come to an end
        std::string expected = before;
        replaceNaively("<ab>", value, expected, room);
        std::string found = before;
        std::size_t left = room;
        replaceToken("<ab>", value, found, left);
        ASSERT_EQ(found, expected) << before << " with " << value << " in " << room;
        replaced += found != before ? 1 : 0;
    }
    EXPECT_GT(replaced, 5000);
}

TEST_F(Templates, ExpansionsStayBounded)
{
    std::string many;
    for (int i = 0; i < 500; ++i)
        many += "<Artist><Genre><Type>";
    album.displayTitle = album.path = artist.displayName = album.genre = album.type = many;
    const std::string text =
        parser.expandAlbum(std::string("<Album><AlbumPath>") + many.substr(0, 8000), album);
    EXPECT_LE(text.size(), 8191 + kRoomForValues);
    EXPECT_NE(text.find("<Artist>"), std::string::npos); // what did not fit is still there as it was
    EXPECT_EQ(parser.expandAlbum("<Year>", album), "No Year");
    // A value that leaves no room for others is taken in; those stay tokens.
    album.displayTitle = std::string(kRoomForValues, 'x');
    EXPECT_EQ(parser.expandAlbum("<Year><Album>", album), "<Year>" + album.displayTitle);
    album.displayTitle += 'x';
    EXPECT_EQ(parser.expandAlbum("<Year><Album>", album), "No Year<Album>");
}

// One tag is enough: each value completes the token around it.
TEST_F(Templates, TokensNestedThousandsDeepTakeNoTime)
{
    constexpr int kDepth = 5000;
    album.displayTitle.clear();
    for (int i = 0; i < kDepth; ++i)
        album.displayTitle += "<AlbumP";
    album.displayTitle += "<AlbumPath>";
    for (int i = 0; i < kDepth; ++i)
        album.displayTitle += "ath>";
    const auto start = std::chrono::steady_clock::now();
    for (int caption = 0; caption < 50; ++caption) {
        ASSERT_EQ(parser.expandAlbum("-<Album>-", album), "--");
        ASSERT_EQ(parser.expandArtwork("-<Album>-", album), "--");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(Templates, MenusAndHelpsHoldTheTokensOfTheirTemplates)
{
    ASSERT_EQ(albumTokens().size(), 16u);
    ASSERT_EQ(trackTokens().size(), 19u);
    for (const char* token : albumTokens())
        EXPECT_NE(parser.expandAlbum(token, parser.sampleAlbum()), token);
    for (const char* token : trackTokens()) {
        EXPECT_NE(expand(token), token);
        EXPECT_NE(trackTokenHelp().find(token), std::string::npos) << token;
    }
    EXPECT_TRUE(
        artworkTokenHelp().starts_with("Supported Tokens (case insensitive):\n\n<MJArtworkDir>  <Album>  "));
    EXPECT_NE(trackTokenHelp().find("<FileSize>  <FileSize>  <Genre>"), std::string::npos);
}
