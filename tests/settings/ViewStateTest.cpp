#include "settings/ViewState.h"
#include "settings/TreeState.h"
#include "support/MemorySettingsStore.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace tessera {
namespace {

TEST(ViewStateTest, ComesBackAsItWas)
{
    MemorySettingsStore store;
    const ViewState state{"C:\\a.ts2", 8, false, 17, 3, {3, 9, 2000000000}};
    saveViewState(store, "Overview", state);
    const ViewState read = loadViewState(store, "Overview");
    EXPECT_EQ(read.database, state.database);
    EXPECT_EQ(read.sortColumn, 8);
    EXPECT_FALSE(read.ascending);
    EXPECT_EQ(read.topAlbum, 17);
    EXPECT_EQ(read.focusedAlbum, 3);
    EXPECT_EQ(read.selectedAlbums, state.selectedAlbums);

    const ViewState other = loadViewState(store, "Other");
    EXPECT_EQ(other.sortColumn, -1);
    EXPECT_TRUE(other.ascending);
    EXPECT_EQ(other.topAlbum, 0);
    EXPECT_EQ(other.focusedAlbum, 0);
    saveViewState(store, "Other", {});
    EXPECT_TRUE(loadViewState(store, "Other").ascending);
    EXPECT_EQ(loadViewState(store, "Other").database, "");

    saveViewNumber(store, "Number", -2);
    EXPECT_EQ(loadViewNumber(store, "Number", 5), -2);
    EXPECT_EQ(loadViewNumber(store, "None", 5), 5);
    EXPECT_EQ(ViewState().sortColumn, -1);
    EXPECT_TRUE(ViewState().ascending);
}

// Lists and trees alike; a text may come without its end.
TEST(ViewStateTest, UnsoundValuesAreAsInANewList)
{
    MemorySettingsStore store;
    store.put("View", "OverviewSortColumn", StorageType::Binary, "abcd");
    store.put("View", "OverviewTopAlbum", StorageType::Number, "ab");
    store.put("View", "OverviewFocusedAlbum", StorageType::Number, "abcde");
    store.put("View", "OverviewSelectedAlbums", StorageType::Text, "abcdefgh");
    store.put("View", "OverviewDatabase", StorageType::Number, "abcd");
    const ViewState read = loadViewState(store, "Overview");
    EXPECT_EQ(read.sortColumn, -1);
    EXPECT_EQ(read.topAlbum, 0);
    EXPECT_EQ(read.focusedAlbum, 0);
    EXPECT_TRUE(read.selectedAlbums.empty());
    EXPECT_TRUE(read.database.empty());
    store.put("View", "OverviewSelectedAlbums", StorageType::Binary, "\1\0\0\0\2\0"sv);
    store.put("View", "OverviewDatabase", StorageType::Text, "a.ts2");
    EXPECT_EQ(loadViewState(store, "Overview").selectedAlbums, std::vector<std::int32_t>{1});
    EXPECT_EQ(loadViewState(store, "Overview").database, "a.ts2");

    store.put("View", "RankOpen", StorageType::Text, "1\0"sv);
    store.put("View", "RankTop", StorageType::Binary, "1\0"sv);
    EXPECT_TRUE(loadTreeState(store, "Rank").empty());
    store.put("View", "RankOpen", StorageType::Binary, "one\0\0two\0cut"sv);
    store.put("View", "RankTop", StorageType::Text, "two\0more"sv);
    EXPECT_EQ(loadTreeState(store, "Rank").open, (std::vector<std::string>{"one", "", "two"}));
    EXPECT_EQ(loadTreeState(store, "Rank").top, "two");
    store.put("View", "RankTop", StorageType::Text, "two");
    EXPECT_EQ(loadTreeState(store, "Rank").top, "two");
}

TEST(ViewStateTest, TreesComeBackAsTheyWere)
{
    MemorySettingsStore store;
    saveTreeState(store, "Genre", {{"Rock", "", "Rock\tLumen"}, "Jazz"});
    const TreeState read = loadTreeState(store, "Genre");
    EXPECT_EQ(read.open, (std::vector<std::string>{"Rock", "", "Rock\tLumen"}));
    EXPECT_EQ(read.top, "Jazz");
    EXPECT_TRUE(loadTreeState(store, "Rank").empty());
    EXPECT_EQ(store.read("View", "GenreTop")->bytes.back(), 0); // the registry wants texts ended
    EXPECT_FALSE((TreeState{{"a"}, ""}).empty());
    EXPECT_FALSE((TreeState{{}, "a"}).empty());
}

// What is kept of long ones, and what is read of ones that others wrote.
TEST(ViewStateTest, LongOnesAreCut)
{
    MemorySettingsStore store;
    ViewState list;
    TreeState tree;
    for (const std::size_t count : {4095u, 4096u, 4097u, 100000u}) {
        const std::size_t kept = std::min<std::size_t>(count, 4096);
        list.selectedAlbums.assign(count, 5);
        saveViewState(store, "Overview", list);
        EXPECT_EQ(store.read("View", "OverviewSelectedAlbums")->bytes.size(), kept * 4);
        store.put("View", "OverviewSelectedAlbums", StorageType::Binary, std::string(count * 4, '\1'));
        EXPECT_EQ(loadViewState(store, "Overview").selectedAlbums.size(), kept);
        tree.open.assign(count, "a");
        saveTreeState(store, "Rank", tree);
        EXPECT_EQ(store.read("View", "RankOpen")->bytes.size(), kept * 2);
        store.put("View", "RankOpen", StorageType::Binary, std::string(count, '\0'));
        EXPECT_EQ(loadTreeState(store, "Rank").open.size(), kept);
    }
}

} // namespace
} // namespace tessera
