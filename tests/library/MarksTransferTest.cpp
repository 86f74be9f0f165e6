#include "library/MarksTransfer.h"

#include "library/KeptDatabases.h"
#include "library/SampleRig.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

struct AlbumSpec {
    std::string title;
    std::string artist;
    std::string path;
    std::vector<std::string> files;
    std::uint32_t marks = 0; // kAlbumNew, kAlbumFavourite
    std::int32_t rank = 0;
    std::int32_t newDate = 0;
};

// A database of these albums, ids from 1; an artist for each, so that their names may be any.
Bytes databaseOf(const std::vector<AlbumSpec>& albums)
{
    Ts2Bytes file;
    std::int64_t trackCount = 0;
    for (const AlbumSpec& album : albums)
        trackCount += static_cast<std::int64_t>(album.files.size());
    const auto count = static_cast<std::int64_t>(albums.size());
    file.header(0, trackCount, count, count, 0);
    std::int64_t id = 0;
    for (std::int64_t album = 1; album <= count; ++album) {
        for (const std::string& name : albums[static_cast<std::size_t>(album - 1)].files)
            file.word(0).word(++id).text(name).word(album);
    }
    id = 0;
    for (std::int64_t i = 1; i <= count; ++i) {
        const AlbumSpec& album = albums[static_cast<std::size_t>(i - 1)];
        file.word(1 | album.marks).word(i).text(album.title).text("MP3").word(i).text("Rock");
        file.words({60, 128, 128, 1999, album.rank, album.newDate});
        file.word(static_cast<std::int64_t>(album.files.size()));
        for (std::size_t track = 0; track < album.files.size(); ++track)
            file.word(++id);
        file.text(album.path).text("");
    }
    for (std::int64_t i = 1; i <= count; ++i)
        file.word(1).word(i).text(albums[static_cast<std::size_t>(i - 1)].artist).word(0).ids({i});
    return file.bytes;
}

constexpr const char* kOther = "C:\\db\\here.ts2.bak";

class Transfer : public testing::Test {
protected:
    JobRig rig;
    FakeHost host;
    Database database;

    void load(const std::vector<AlbumSpec>& albums)
    {
        rig.files.files["C:\\db\\here.ts2"] = databaseOf(albums);
        for (const AlbumSpec& album : albums) {
            for (const std::string& name : album.files)
                host.tracks.emplace_back().fileName = toWide(name);
        }
        ASSERT_TRUE(database.read("C:\\db\\here.ts2", host, rig.context, [] {})) << rig.prompt.text();
    }
    MarksPlan plan() { return planMarks(kOther, database.library(), rig.files); }
    MarksPlan planFrom(const std::vector<AlbumSpec>& albums)
    {
        rig.files.files[kOther] = databaseOf(albums);
        return plan();
    }
    // "ID:rank RANK", a blank between.
    static std::string ranks(const MarksPlan& plan)
    {
        std::vector<std::string> all;
        for (const auto& [album, marks] : plan.changes)
            all.push_back(format("%d:%d", static_cast<int>(album->id), static_cast<int>(marks.rank)));
        return join(all, " ");
    }
};

TEST_F(Transfer, AKindThatIsMarkedThereReplacesTheSameKindHere)
{
    load({{"Tides", "Lumen", "D:\\a", {"1"}, kAlbumFavourite | kAlbumNew, 3, 20200101},
          {"Other", "Lumen", "D:\\b", {"2"}, kAlbumNew, 5, 20200101},
          {"Same", "Lumen", "D:\\c", {"3"}, kAlbumFavourite, 1}});
    const MarksPlan plan =
        planFrom({{"TIDES", "lumen", "d:\\A", {"x"}, 0, 8, 20190101},
                  {"Other", "Lumen", "D:\\b", {"y"}, kAlbumNew | kAlbumFavourite, 0, 20250303},
                  {"Same", "Lumen", "D:\\c", {"z"}, kAlbumFavourite, 1},
                  {"Gone", "Nobody", "D:\\d", {"w"}, kAlbumNew, 77}});
    EXPECT_EQ(plan.failure, "");
    ASSERT_EQ(plan.changes.size(), 2U) << "what is the same already is left out";
    EXPECT_EQ(plan.changes[0].album->id, 1);
    EXPECT_EQ(plan.changes[0].marks,
              (Marks{.rank = 8, .newDate = 20200101, .isNew = true, .favourite = true}));
    EXPECT_EQ(plan.changes[1].marks,
              (Marks{.rank = 5, .newDate = 20250303, .isNew = true, .favourite = true}));
    EXPECT_EQ(plan.found.ranks, 2U) << "77 is no rank";
    EXPECT_EQ(plan.found.favourites, 2U);
    EXPECT_EQ(plan.found.news, 2U);
    EXPECT_EQ(plan.matched.ranks, 2U);
    EXPECT_EQ(plan.matched.favourites, 2U);
    EXPECT_EQ(plan.matched.news, 1U);
    EXPECT_EQ(database.library().albums.at(1)->rank, 3) << "a plan changes nothing";
}

struct MatchCase {
    const char* name;
    std::vector<AlbumSpec> here;
    std::vector<AlbumSpec> there;
    const char* changes;
};

TEST_F(Transfer, FindsTheRightPartners)
{
    const MatchCase cases[] = {
        {"a folder was renamed, the files moved along with another album's name",
         {{"Tides", "Lumen", "D:\\new", {"D:\\new\\1"}}, {"Tides", "Lumen", "D:\\a", {"D:\\a\\1"}}},
         {{"Tides", "Lumen", "D:\\a", {"D:\\a\\1"}, 0, 2},
          {"Tides", "Lumen", "D:\\old", {"D:\\old\\1"}, 0, 3}},
         "2:2"},
        {"the tags were corrected: the files tell",
         {{"Tides", "Lumen", "D:\\a", {"D:\\A\\1", "D:\\a\\2"}}},
         {{"Tidse", "Lumne", "D:\\x", {"d:\\a\\1", "d:\\a\\2"}, 0, 4}},
         "1:4"},
        {"two albums became one: the one with more files in it",
         {{"Both", "Lumen", "D:\\a", {"1", "2", "3", "4", "5"}}},
         {{"A", "Lumen", "D:\\a", {"1", "2"}, 0, 4}, {"B", "Lumen", "D:\\b", {"3", "4", "5"}, 0, 6}},
         "1:6"},
        {"one album became two: only one has its marks",
         {{"A", "Lumen", "D:\\a", {"1"}}, {"B", "Lumen", "D:\\b", {"2", "3"}}},
         {{"Both", "Lumen", "D:\\c", {"1", "2", "3"}, 0, 5}},
         "2:5"},
        {"as many files: the first of them",
         {{"A", "Lumen", "D:\\a", {"1", "2"}}},
         {{"W", "Lumen", "D:\\w", {"9"}, 0, 6},
          {"X", "Lumen", "D:\\x", {"2"}, 0, 7},
          {"Y", "Lumen", "D:\\y", {"1"}, 0, 8}},
         "1:7"},
        {"the name comes before the files",
         {{"A", "Lumen", "D:\\a", {"1"}}, {"B", "Lumen", "D:\\b", {"2"}}},
         {{"A", "Lumen", "D:\\a", {"2"}, 0, 1}, {"B", "Lumen", "D:\\b", {"1"}, 0, 2}},
         "1:1 2:2"},
        {"albums of one name: files tell them apart, and one without marks keeps its place",
         {{"A", "Lumen", "D:\\a", {"1.mp3"}}, {"A", "Lumen", "D:\\a", {"2.ogg"}}},
         {{"A", "Lumen", "D:\\a", {"2.ogg"}, 0, 2}, {"A", "Lumen", "D:\\a", {"1.mp3"}}},
         "2:2"},
        {"one album here, two of its name there",
         {{"A", "Lumen", "D:\\a", {"2"}}},
         {{"A", "Lumen", "D:\\a", {"1"}, 0, 1}, {"A", "Lumen", "D:\\a", {"2"}, 0, 2}},
         "1:2"},
        {"two albums here, one of their name there",
         {{"A", "Lumen", "D:\\a", {"1"}}, {"A", "Lumen", "D:\\a", {"2"}}},
         {{"A", "Lumen", "D:\\a", {"2"}, 0, 2}},
         "2:2"},
        {"albums of one name without a common file: in their order",
         {{"A", "Lumen", "D:\\a", {"1"}}, {"A", "Lumen", "D:\\a", {"2"}}},
         {{"A", "Lumen", "D:\\a", {"x"}},
          {"A", "Lumen", "D:\\a", {"y"}, 0, 2},
          {"A", "Lumen", "D:\\a", {"z"}, 0, 3}},
         "2:2"},
        {"an unmarked album of the same name gives way to files of a marked one",
         {{"A", "Lumen", "D:\\a", {"1", "2"}}},
         {{"A", "Lumen", "D:\\a", {"1"}}, {"B", "Lumen", "D:\\b", {"2"}, 0, 9}},
         "1:9"},
        {"another artist or another album altogether",
         {{"A", "Lumen", "D:\\a", {"1"}}},
         {{"A", "Other", "D:\\a", {"2"}, 0, 9}},
         ""},
        {"titles and artists that only together are the same text",
         {{"AB", "C", "D:\\a", {"1"}}},
         {{"A", "BC", "D:\\a", {"2"}, 0, 9}},
         ""},
    };
    for (const MatchCase& match : cases) {
        SCOPED_TRACE(match.name);
        database.clear();
        host.tracks.clear();
        load(match.here);
        EXPECT_EQ(ranks(planFrom(match.there)), match.changes);
    }
}

TEST_F(Transfer, TheSameFileChangesNothing)
{
    const std::vector<AlbumSpec> albums = {{"A", "Lumen", "D:\\a", {"1"}, kAlbumFavourite, 4},
                                           {"B", "Lumen", "D:\\b", {"2"}}};
    load(albums);
    const MarksPlan same = planFrom(albums);
    EXPECT_TRUE(same.changes.empty());
    EXPECT_EQ(same.matched.ranks, 1U);
    EXPECT_EQ(same.matched.favourites, 1U);
}

TEST_F(Transfer, ADamagedFileIsRefused)
{
    load({{"A", "Lumen", "D:\\a", {"1"}}});
    EXPECT_EQ(plan().failure, "Could not open the database 'C:\\db\\here.ts2.bak'!");
    const Bytes whole = databaseOf({{"A", "Lumen", "D:\\a", {"1"}, 0, 9}});
    rig.files.files[kOther].assign(whole.begin(), whole.end() - 1);
    const MarksPlan refused = plan();
    EXPECT_EQ(refused.failure, "Invalid database!");
    EXPECT_TRUE(refused.changes.empty() && !refused.found.any());
    Bytes version = whole;
    version[8] = 3;
    rig.files.files[kOther] = version;
    EXPECT_NE(plan().failure.find("found 3!"), std::string::npos);
    EXPECT_EQ(rig.prompt.text(), "") << "nothing is shown by itself";
}

// What was taken and then changed lives; what is gone, or was never taken, does not.
TEST_F(Transfer, MarksLiveInALaterDatabase)
{
    const std::vector<AlbumSpec> earlier = {{"A", "Lumen", "D:\\a", {"1"}, kAlbumFavourite, 4},
                                            {"B", "Lumen", "D:\\b", {"2"}, kAlbumNew, 0, 20250101},
                                            {"C", "Lumen", "D:\\c", {"3"}, 0, 5},
                                            {"D", "Lumen", "D:\\d", {"4"}}};
    const auto living = [&](const std::vector<AlbumSpec>& later, std::size_t absent = 0) {
        const LivingMarks marks = livingMarks(databaseOf(later), databaseOf(earlier), rig.terminating);
        EXPECT_EQ(marks.absent, absent);
        return marks.living;
    };
    EXPECT_EQ(markedAlbums(databaseOf(earlier), rig.terminating), 3U);
    EXPECT_FALSE(markedAlbums(bytesOf("no database"), rig.terminating).has_value());
    EXPECT_EQ(living(earlier), 3U);
    EXPECT_EQ(living({{"A", "Lumen", "D:\\a", {"1"}, kAlbumFavourite, 9}, // another rank
                      {"B", "Lumen", "D:\\b", {"2"}, 0, 0, 20250101},     // no longer new
                      {"X", "Lumen", "D:\\x", {"3"}, 0, 1}}),             // its files tell
              3U);
    EXPECT_EQ(living({{"A", "Lumen", "D:\\a", {"1"}, 0, 4}, {"B", "Lumen", "D:\\b", {"2"}}}, 1), 0U);
    EXPECT_EQ(living({}, 3), 0U);
}

// Twenty marked albums: one unmarked by hand lets the earlier database go, one missing with its drive not.
TEST_F(Transfer, AMissingAlbumKeepsTheDatabaseThatHasItsMarks)
{
    const std::string name = "C:\\db\\here.ts2";
    std::vector<AlbumSpec> albums;
    for (int i = 0; i < 20; ++i)
        albums.push_back({format("Album %d", i), "Lumen", format("D:\\%d", i), {format("%d", i)}, 0, 4});
    const auto earlierName = [&](const std::vector<AlbumSpec>& now) {
        rig.files.files[name] = databaseOf(now);
        return planReplacement(name, {}, rig.files, rig.terminating).earlier;
    };
    rig.files.files[name + ".bak"] = databaseOf(albums);
    auto unmarked = albums;
    unmarked.back().rank = 0;
    EXPECT_EQ(earlierName(unmarked), "");
    EXPECT_EQ(earlierName({albums.begin(), albums.end() - 1}), name + ".2.bak");
}

TEST_F(Transfer, KeptDatabasesWithMarksAreListedTheEarliestFirst)
{
    const std::vector<AlbumSpec> one = {{"A", "Lumen", "D:\\a", {"1"}, 0, 4}};
    const std::string name = "C:\\db\\here.ts2";
    rig.files.files[name + ".bak"] = databaseOf(one);
    rig.files.files[name + ".2.bak"] = databaseOf(one);
    rig.files.files[name + ".4.bak"] = databaseOf(one);
    rig.files.files[name + ".3.bak"] = databaseOf({{"A", "Lumen", "D:\\a", {"1"}}});
    rig.files.files[name + ".5.bak"] = bytesOf("no database");
    std::string text;
    for (const KeptMarks& kept : keptMarks(name, rig.files, rig.terminating))
        text += kept.fileName.substr(name.size()) + format(" %d ", static_cast<int>(kept.albums));
    EXPECT_EQ(text, ".2.bak 1 .4.bak 1 .bak 1 ");
}

} // namespace
} // namespace tessera::test
