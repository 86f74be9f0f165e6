#include "library/Filters.h"
#include "library/FirstNames.h"
#include "support/Recorders.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tessera::test {
namespace {

TEST(Filters, WildcardsCoverTheWholeText)
{
    struct Row {
        const char* text;
        const char* pattern;
        bool matches;
    };
    const Row rows[] = {
        {"LUMEN", "LUMEN", true},
        {"LUMEN", "LUME", false},
        {"LUMEN", "*", true},
        {"", "*", true},
        {"", "", true},
        {"", "?", false},
        {"LUMEN", "L?M*", true},
        {"LUMEN", "*EN", true},
        {"LUMEN", "*E", false},
        {"AABAAB", "*AAB", true},
        {"AAAB", "A*AB", true},
        {"LUMEN", "LUMEN**", true},
        {"LUMEN", "LUMEN?", false},
        {"ABCBD", "*B?D*", false},
        {"ABCBXD", "A*B?D", true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(matchesWildcard(row.text, row.pattern), row.matches) << row.text << " / " << row.pattern;
}

TEST(Filters, ExclusionsArePairsOfLines)
{
    const Exclusions lists = parseExclusions("# comment\r\n"
                                             "Lumen \t\r\n*\r\n"
                                             "lost\r\n; comment\r\n"
                                             "\r\n"
                                             "Ada\nArc*\n"
                                             "lost too\n\n"
                                             " spaced\nx\n"
                                             "no partner");
    EXPECT_EQ(join(lists.artists, "|"), "LUMEN|ADA| SPACED");
    EXPECT_EQ(join(lists.albums, "|"), "*|ARC*|X");
    EXPECT_TRUE(parseExclusions("").artists.empty());
    EXPECT_EQ(parseExclusions("\xEF\xBB\xBFLumen\n*").artists, std::vector<std::string>{"LUMEN"});
}

TEST(FirstNames, LinesAreUpperCasedOnce)
{
    EXPECT_EQ(parseFirstNames("Ada\r\nada  \n;x\n#y\n\n\t\nBob"), (std::set<std::string>{"ADA", "BOB"}));
    EXPECT_TRUE(parseFirstNames("\xEF\xBB\xBF;only\n\n# comments").empty());
}

class FilterPass : public testing::Test {
protected:
    JobRig rig;
    Library library;
    FilterSettings settings;

    void add(const std::string& artist, const std::string& title, const std::string& type, int tracks)
    {
        const auto id = static_cast<std::int32_t>(library.albums.size()) + 1;
        auto album = std::make_unique<Album>();
        album->id = id;
        album->hostTitle = title;
        album->displayTitle = title.empty() ? "(Unassigned)" : title;
        album->type = type;
        Artist* owner = nullptr;
        for (const auto& [artistId, known] : library.artists)
            owner = equalNoCase(known->displayName, artist) ? known.get() : owner;
        if (!owner) {
            auto made = std::make_unique<Artist>();
            made->id = static_cast<std::int32_t>(library.artists.size()) + 1;
            made->displayName = artist;
            owner = made.get();
            library.artists[made->id] = std::move(made);
        }
        album->artist = owner;
        owner->albums[id] = album.get();
        for (int i = 0; i < tracks; ++i) {
            auto track = std::make_unique<Track>();
            track->id = id * 10 + i;
            track->album = album.get();
            album->tracks[track->id] = track.get();
            library.tracks[track->id] = std::move(track);
        }
        library.albums[id] = std::move(album);
    }
    // Ids of what is left.
    std::string run()
    {
        add("Lumen", "Greatest Hits", "MP3", 2);
        add("lumen", "", "WAV", 3);
        add("Ada", "Arc", "MP2", 3);
        add("Bob", "Bay", "OGG", 1);
        applyFilters(library, settings, rig.context);
        std::string left;
        for (const auto& [id, album] : library.albums)
            left += std::to_string(id);
        return left;
    }
};

TEST_F(FilterPass, NothingFiltered)
{
    EXPECT_EQ(run(), "1234");
    EXPECT_EQ(rig.log.text(), "Applying any additional filters on data\nNo albums filtered out");
    rig.terminating = true;
    EXPECT_THROW(applyFilters(library, settings, rig.context), Cancelled);
}

TEST_F(FilterPass, FewTracksLeaveWithTheirTracksAndArtist)
{
    settings.minTracksPerAlbum = 3;
    EXPECT_EQ(run(), "23");
    EXPECT_EQ(rig.log.lines.back(), "Albums excluded - 2 out of 4");
    EXPECT_EQ(library.tracks.size(), 6u);
    EXPECT_EQ(library.artists.size(), 2u);
    EXPECT_EQ(library.artists.at(1)->albums.size(), 1u);
}

TEST_F(FilterPass, Unassigned)
{
    settings.excludeUnassigned = true;
    EXPECT_EQ(run(), "134");
}

// A list is split at commas, spaces and semicolons; one piece has to match the whole type.
TEST_F(FilterPass, Types)
{
    const struct {
        const char* type;
        const char* list;
        bool excluded;
    } cases[] = {
        {"mp3", "MP?", true},
        {"WMA", "wav,wma", true},
        {"Floyd", "Pink Floyd", true},
        {"Pink Floyd", "Pink Floyd", false},
        {"WMAX", "wma", false},
        {"Pink Floyd", "x;Pink*Floyd", true},
        {"", "", false},
        {"", " , ;", false},
    };
    for (const auto& c : cases) {
        library.clear();
        add("Ada", "Arc", c.type, 1);
        settings.excludedTypes = c.list;
        applyFilters(library, settings, rig.context);
        EXPECT_EQ(library.empty(), c.excluded) << c.type << " / " << c.list;
    }
}

TEST_F(FilterPass, ExclusionsFile)
{
    settings.exclusionList = "C:\\x.txt";
    rig.files.files["C:\\x.txt"] = bytesOf("*\nGreatest Hits\nLUMEN\n*unassigned*\nada bob\nb* a?c");
    EXPECT_EQ(run(), "1");
}

// 20 KB of a name by 10 KB of a pattern that walks anew from every place of it.
TEST_F(FilterPass, NamesAndPatternsMadeToTakeForEverDoNot)
{
    const std::string letters(20000, 'A');
    for (const char* artist : {"Ada", "Bob", "Eve"})
        add(artist, letters, "MP3", 1);
    add("Zoe", letters, std::string(3'000'000, 'A'), 1); // long, but no walk
    settings.excludedTypes = "A*";
    settings.exclusionList = "C:\\x.txt";
    rig.files.files["C:\\x.txt"] = bytesOf("*\n*" + letters.substr(0, 10000) + "B");
    const auto start = std::chrono::steady_clock::now();
    applyFilters(library, settings, rig.context);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(rig.log.lines.back(), "Albums excluded - 1 out of 4");
}

// The end comes while an album is looked at.
TEST_F(FilterPass, TheEndWaitsForNoPattern)
{
    rig.log.terminating = &rig.terminating;
    rig.log.cancelAtStep = 1;
    add("Ada", "Arc", "MP3", 1);
    settings.excludedTypes = "WAV";
    EXPECT_THROW(applyFilters(library, settings, rig.context), Cancelled);
}

TEST_F(FilterPass, ExclusionsFileThatCannotBeOpened)
{
    settings.exclusionList = "C:\\x.txt";
    settings.minTracksPerAlbum = 2;
    EXPECT_EQ(run(), "123");
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the exclusions file 'C:\\x.txt'!");
}

} // namespace
} // namespace tessera::test
