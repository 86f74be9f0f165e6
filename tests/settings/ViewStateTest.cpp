#include "settings/ViewState.h"
#include "support/MemorySettingsStore.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(loadViewState(store, "Other").sortColumn, -1);
}

TEST(ViewStateTest, UnsoundValuesAreAsInANewList)
{
    MemorySettingsStore store;
    store.put("View", "OverviewSortColumn", StorageType::Binary, "abcd");
    store.put("View", "OverviewTopAlbum", StorageType::Number, "ab");
    store.put("View", "OverviewSelectedAlbums", StorageType::Text, "abcdefgh");
    store.put("View", "OverviewDatabase", StorageType::Number, "abcd");
    const ViewState read = loadViewState(store, "Overview");
    EXPECT_EQ(read.sortColumn, -1);
    EXPECT_EQ(read.topAlbum, 0);
    EXPECT_TRUE(read.selectedAlbums.empty());
    EXPECT_TRUE(read.database.empty());
    store.put("View", "OverviewSelectedAlbums", StorageType::Binary, std::string_view("\1\0\0\0\2\0", 6));
    EXPECT_EQ(loadViewState(store, "Overview").selectedAlbums, std::vector<std::int32_t>{1});
}

TEST(ViewStateTest, LongSelectionIsCut)
{
    MemorySettingsStore store;
    ViewState state;
    state.selectedAlbums.assign(100000, 5);
    saveViewState(store, "Overview", state);
    EXPECT_EQ(loadViewState(store, "Overview").selectedAlbums.size(), 4096u);
}

} // namespace
} // namespace tessera
