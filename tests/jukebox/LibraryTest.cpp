#include "jukebox/Library.h"

#include <gtest/gtest.h>

namespace tessera::jukebox {
namespace {

struct Parsed {
    std::vector<std::string> complaints;
    std::optional<Library> library;
};

Parsed parse(const std::string& text)
{
    Parsed parsed;
    parsed.library = Library::parse(text, parsed.complaints);
    return parsed;
}

TEST(LibraryFile, ColumnsComeInAnyOrderAndMayBeMissing)
{
    const Parsed parsed = parse("Album\tMood\tFilename\tDuration\r\n"
                                "Songs \xC3\xA9\tcalm\tC:\\\\m\\\\1.mp3\t215\r\n"
                                "\n"
                                "Short\t\tC:\\\\m\\\\2.mp3\n");
    ASSERT_TRUE(parsed.library);
    EXPECT_TRUE(parsed.complaints.empty());
    ASSERT_EQ(parsed.library->size(), 2u);
    EXPECT_EQ(parsed.library->text(0, Column::Album), L"Songs \x00E9");
    EXPECT_EQ(parsed.library->text(0, Column::Filename), L"C:\\m\\1.mp3");
    EXPECT_EQ(parsed.library->number(0, Column::Duration), 215);
    EXPECT_EQ(parsed.library->text(0, Column::Artist), L"");
    EXPECT_EQ(parsed.library->number(1, Column::Duration), 0);
}

TEST(LibraryFile, ValuesKeepTabsLineBreaksAndBackslashes)
{
    const Parsed parsed = parse("\xEF\xBB\xBF"
                                "Filename\tLyrics\n"
                                "C:\\\\a.mp3\tone\\ttwo\\r\\nthree\\\\n\n");
    ASSERT_TRUE(parsed.library);
    EXPECT_EQ(parsed.library->text(0, Column::Lyrics), L"one\ttwo\r\nthree\\n");
}

TEST(LibraryFile, WrongLinesAreNamedAndLeftOut)
{
    const struct {
        const char* line;
        const char* complaint;
    } cases[] = {
        {"\tNo file\t1", "the file name is missing"},
        {"C:\\\\b.mp3\tA\t1\t2", "more values"},
        {"C:\\\\b.mp3\tbad \\x escape\t1", "backslash"},
        {"C:\\\\b.mp3\tbad end\\\t1", "backslash"},
        {"C:\\\\b.mp3\tA\t3:35", "Duration is not a number"},
        {"C:\\\\b.mp3\tA\t99999999999", "Duration is not a number"},
        {"C:\\\\b.mp3\t\xE9\t1", "not UTF-8"},
        {"c:\\\\A.MP3\tA\t1", "listed already"},
    };
    for (const auto& wrong : cases) {
        const Parsed parsed = parse(std::string("Filename\tName\tDuration\nC:\\\\a.mp3\tA\t1\n") +
                                    wrong.line + "\nC:\\\\z.mp3\tZ\t1");
        ASSERT_TRUE(parsed.library) << wrong.line;
        EXPECT_EQ(parsed.library->size(), 2u) << wrong.line;
        ASSERT_EQ(parsed.complaints.size(), 1u) << wrong.line;
        EXPECT_EQ(parsed.complaints[0].rfind("line 3: ", 0), 0u) << parsed.complaints[0];
        EXPECT_NE(parsed.complaints[0].find(wrong.complaint), std::string::npos) << parsed.complaints[0];
    }
}

TEST(LibraryFile, AnUnusableHeaderIsRefused)
{
    for (const char* text : {"", "\n", "Artist\tAlbum\nA\tB\n", "Filename\tName\tName\n", "filename\n"}) {
        const Parsed parsed = parse(text);
        EXPECT_FALSE(parsed.library) << text;
        EXPECT_EQ(parsed.complaints.size(), 1u) << text;
    }
}

class LibrarySearch : public testing::Test {
protected:
    Parsed m_parsed = parse("Filename\tArtist\tAlbum\tName\tGenre\tYear\n"
                            "C:\\\\Music\\\\1.mp3\t\xC3\x89milie\tRain\tDrops\tFolk\t1999\n"
                            "C:\\\\Music\\\\2.mp3\tBruno\tRain\tSun\tJazz\t2001\n"
                            "C:\\\\Other\\\\3.mp3\tBruno\tWind\tSun\tFolk\t1999\n");
    const Library& m_library = *m_parsed.library;
};

TEST_F(LibrarySearch, EveryWordMustOccurSomewhereIgnoringCase)
{
    const struct {
        const wchar_t* criteria;
        std::vector<TrackIndex> found;
    } cases[] = {
        {L"", {0, 1, 2}},           {L" \t ", {0, 1, 2}},
        {L"RAIN", {0, 1}},          {L"rain folk", {0}},
        {L"  bruno\tSUN ", {1, 2}}, {L"\x00E9MILIE", {0}},
        {L"music 2.MP3", {1}},      {L"1999", {}}, // the year is not searched
        {L"raindrops", {}},                        // nor do values run into each other
        {L"rain nothing", {}},
    };
    for (const auto& search : cases) {
        EXPECT_EQ(m_library.search(search.criteria), search.found) << testing::PrintToString(search.criteria);
    }
}

TEST_F(LibrarySearch, FilesAreFoundByNameIgnoringCase)
{
    EXPECT_EQ(m_library.find(L"c:\\MUSIC\\2.MP3"), TrackIndex{1});
    EXPECT_EQ(m_library.find(L"2.mp3"), std::nullopt);
    EXPECT_EQ(m_library.find(L""), std::nullopt);
    EXPECT_EQ(m_library.albumCount(), 2u); // two artists share one
}

TEST(LibraryFile, TextsSurviveAMoveOfTheLibrary)
{
    Parsed parsed = parse("Filename\nx\n"); // short enough for a string's own buffer
    const Library moved = std::move(*parsed.library);
    parsed.library.reset();
    EXPECT_EQ(moved.text(0, Column::Filename), L"x");
}

TEST(LibraryFile, AHundredThousandTracksAreRead)
{
    std::string text = "Filename\tArtist\tAlbum\n";
    for (int i = 0; i < 100000; ++i) {
        text +=
            "C:\\\\Music\\\\" + std::to_string(i) + ".mp3\tArtist " + std::to_string(i / 100) + "\tAlbum\n";
    }
    const Parsed parsed = parse(text);
    ASSERT_TRUE(parsed.library);
    EXPECT_EQ(parsed.library->size(), 100000u);
    EXPECT_EQ(parsed.library->find(L"c:\\music\\99999.mp3"), TrackIndex{99999});
    EXPECT_EQ(parsed.library->search(L"artist").size(), 100000u);
}

} // namespace
} // namespace tessera::jukebox
