// What the pane shows, and how it is left and found again.

#include "PaneAlbumDetailsFixture.h"

#include <map>

using namespace tessera;

namespace {

constexpr int kAlbumTracks = 1;
constexpr int kPlayingNow = 2;

LONG widthOf(const RECT& place)
{
    return place.right - place.left;
}

LONG heightOf(const RECT& place)
{
    return place.bottom - place.top;
}

} // namespace

TEST_F(PaneAlbumDetailsTest, ANodeShowsItsAlbumsAndTheStatusSaysWhich)
{
    open();
    EXPECT_EQ(pane->status(), "Total Albums: 5");
    EXPECT_EQ(titles(), Texts{});
    const struct {
        Texts path;
        Texts titles;
        const char* status;
    } cases[] = {
        {{"Artist/Album"},
         {"Early", "Rock & Roll", "Yearling", "Tidewater", "Nothing"},
         "Artist/Album - Multiple Selection: 5 of 5"},
        {{"Artist/Album", "LUMEN"},
         {"Early", "Rock & Roll"},
         "Artist/Album - LUMEN - Multiple Selection: 2 of 5"},
        {{"Artist/Album", "LUMEN", "Early"}, {"Early"}, "Early - 1 of 5"},
        {{"Artist/Album", "Vera Linde"}, {"Nothing"}, "Artist/Album - Vera Linde - Nothing - 1 of 5"},
        {{"Genre", "Jazz"}, {"Yearling", "Tidewater"}, "Genre - Jazz - Multiple Selection: 2 of 5"},
        {{"Rank", "3", "LUMEN"}, {"Early"}, "Rank - 3 - LUMEN - Early - 1 of 5"},
    };
    for (const auto& each : cases) {
        choose(each.path);
        EXPECT_EQ(titles(), each.titles) << each.status;
        EXPECT_EQ(pane->status(), each.status);
    }
    choose({"Artist/Album", "The Harbour Quartet"});
    selectOnly({1});
    EXPECT_EQ(pane->status(), "Artist/Album - The Harbour Quartet - Tidewater - 1 of 5");
    selectOnly({0, 1});
    EXPECT_EQ(pane->status(), "Artist/Album - The Harbour Quartet - Multiple Selection: 2 of 5");
    send(albumCommand::kSortFirst + 8);
    EXPECT_EQ(titles(), (Texts{"Tidewater", "Yearling"})) << "by year";
}

TEST_F(PaneAlbumDetailsTest, TheViewComboShowsOneTreeAndHidesThree)
{
    open();
    const ComboBoxEx combo(child(controlId::kTreeCombo));
    const char* const names[] = {"Entire Library", "New", "Favourites", "Completed Only"};
    ASSERT_EQ(combo.count(), 4);
    for (int entry = 0; entry < 4; ++entry) {
        EXPECT_EQ(combo.itemText(entry), names[entry]);
        EXPECT_EQ(combo.data(entry), controlId::kTreeLibrary + entry);
        chooseTree(entry);
        for (int other = 0; other < 4; ++other)
            EXPECT_EQ(IsWindowVisible(tree(other).handle()) != FALSE, other == entry) << other;
    }
    EXPECT_EQ(children(node({"Artist/Album"}, kNew), kNew), Texts{"The Harbour Quartet"});
    EXPECT_EQ(children(node({"Artist/Album"}, kFavourites), kFavourites), Texts{"LUMEN"});
    chooseTree(kCompleted);
    choose({"Artist/Album"}, kCompleted);
    EXPECT_EQ(titles(), Texts{"Rock & Roll"});
    chooseTree(kNew);
    EXPECT_EQ(titles(), Texts{}) << "nothing is selected in that tree";
    EXPECT_EQ(pane->status(), "Total Albums: 5");
    chooseTree(kCompleted);
    EXPECT_EQ(titles(), Texts{"Rock & Roll"}) << "the node is still selected";
}

TEST_F(PaneAlbumDetailsTest, AGroupThatClosesOverTheSelectedAlbumIsSelected)
{
    open();
    choose({"Artist/Album", "LUMEN", "Early"});
    EXPECT_EQ(titles(), Texts{"Early"});
    const HTREEITEM group = node({"Artist/Album", "LUMEN"});
    RECT line = tree().itemRect(group);
    MapWindowPoints(nullptr, tree().handle(), reinterpret_cast<POINT*>(&line), 2);
    TVHITTESTINFO button{};
    button.pt = {line.left, (line.top + line.bottom) / 2};
    while (button.pt.x > 0 && (button.flags & TVHT_ONITEMBUTTON) == 0) {
        --button.pt.x;
        tree().send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&button));
    }
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP})
        SendMessageA(tree().handle(), message, 0, MAKELPARAM(button.pt.x, button.pt.y));
    settle();
    EXPECT_FALSE(tree().expanded(group));
    EXPECT_EQ(tree().selection(), group);
    EXPECT_EQ(titles(), (Texts{"Early", "Rock & Roll"}));
    EXPECT_EQ(pane->status(), "Artist/Album - LUMEN - Multiple Selection: 2 of 5");
}

TEST_F(PaneAlbumDetailsTest, TheListsBelowFollowTheSelection)
{
    open();
    EXPECT_TRUE(IsWindowVisible(child(controlId::kAlbumTracks)));
    choose({"Artist/Album"});
    const ListView tracks(child(controlId::kAlbumTracks));
    EXPECT_EQ(tracks.count(), 5);
    EXPECT_EQ(windowText(child(controlId::kTrackDetailsText)), "About Dawn") << "the first one there is";
    selectOnly({3});
    EXPECT_EQ(tracks.count(), 3);
    EXPECT_EQ(tracks.text(1, 0), "Track 2: Flow");
    tracks.select(1);
    settle();
    EXPECT_EQ(windowText(child(controlId::kTrackDetailsText)), "About Flow");
    chooseBelow(0);
    const ListView info(child(controlId::kAlbumInfo));
    EXPECT_TRUE(IsWindowVisible(info.handle()));
    EXPECT_FALSE(IsWindowVisible(tracks.handle()));
    UpdateWindow(info.handle());
    EXPECT_EQ(info.text(0, 1), "Tidewater");
    selectOnly({4});
    EXPECT_EQ(windowText(child(controlId::kTrackDetailsText)), "") << "an album without tracks";
}

TEST_F(PaneAlbumDetailsTest, PlayingNowFollowsTheHost)
{
    open();
    commands.fakeHost.entries = {3, 0};
    commands.fakeHost.position = 0;
    chooseBelow(kPlayingNow);
    const ListView playing(child(controlId::kPlayingNow));
    EXPECT_EQ(playing.count(), 2);
    EXPECT_EQ(playing.text(0, 0), "Track 2: Flow / The Harbour Quartet");
    playing.select(1);
    settle();
    const auto details = [&] { return windowText(child(controlId::kTrackDetailsText)); };
    EXPECT_EQ(details(), "About Dawn");
    commands.fakeHost.entries = {3, 1, 0};
    pane->trackCursor({}, false);
    EXPECT_EQ(playing.selection(), std::vector<int>{1});
    EXPECT_EQ(details(), "About Noon") << "the row stands for another track";
    const int reads = commands.fakeHost.textReads[FileText::Comment];
    pane->trackCursor({}, false);
    EXPECT_EQ(commands.fakeHost.textReads[FileText::Comment], reads);
    commands.records.tracks[2]->fileName = "C:\\elsewhere.mp3"; // the library does not know it
    commands.fakeHost.entries = {1, 1};
    pane->trackCursor({}, false);
    EXPECT_EQ(details(), "About Noon");
    commands.fakeHost.entries = {1, 2};
    pane->trackCursor({}, false);
    EXPECT_EQ(details(), "About Ebb");
    commands.fakeHost.entries = {4};
    pane->trackCursor({}, false);
    EXPECT_EQ(playing.count(), 1);
    EXPECT_EQ(details(), "") << "the row is gone, and no album is selected";
    commands.fakeHost.entries = {4, 3, 2, 1};
    choose({"Artist/Album", "LUMEN"});
    send(albumCommand::kAppend);
    EXPECT_EQ(playing.count(), 4) << "at once after albums were appended";
    commands.busy = true;
    commands.fakeHost.entries.clear();
    pane->trackCursor({}, false);
    EXPECT_EQ(playing.count(), 4);
}

TEST_F(PaneAlbumDetailsTest, EveryAreaHasItsPlace)
{
    open();
    const RECT view = place(controlId::kTreeLibrary);
    const RECT albums = place(controlId::kDetailsAlbums);
    const RECT tracks = place(controlId::kAlbumTracks);
    const RECT details = place(controlId::kTrackDetailsText);
    EXPECT_NEAR(view.right, kWide / 2, 1);
    EXPECT_EQ(view.bottom, kTall);
    EXPECT_EQ(albums.left, view.right + SplitterCtrl::kThickness);
    EXPECT_EQ(albums.right, kWide);
    EXPECT_NEAR(albums.bottom, kTall / 2, 1);
    EXPECT_NEAR(place(controlId::kSplitTracks).left, (albums.left + kWide) / 2, 1) << "halves what is left";
    for (const RECT& area : {view, albums, tracks, details}) {
        EXPECT_GT(widthOf(area), 150);
        EXPECT_GT(heightOf(area), 150);
    }
    MoveWindow(pane->window(), 0, 0, 5, 3, TRUE);
    MoveWindow(pane->window(), 0, 0, 2 * kWide, kTall, TRUE);
    EXPECT_NEAR(place(controlId::kTreeLibrary).right, kWide, 1);
}

TEST_F(PaneAlbumDetailsTest, BarsStayWhereTheyAreDroppedAndAreFoundThereAgain)
{
    open();
    const struct {
        int bar;
        LONG to;
    } drags[] = {{controlId::kSplitMain, 260},
                 {controlId::kSplitDetails, 350},
                 {controlId::kSplitTracks, 640},
                 {controlId::kSplitTracks, 500}};
    const auto edge = [&](int bar) {
        return bar == controlId::kSplitDetails ? place(bar).top : place(bar).left;
    };
    for (const auto& drag : drags) {
        const HWND bar = child(drag.bar);
        const LONG by = drag.to - edge(drag.bar);
        const bool across = drag.bar != controlId::kSplitDetails;
        const LPARAM there = across ? MAKELPARAM(by, 3) : MAKELPARAM(3, by);
        SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
        SendMessageA(bar, WM_MOUSEMOVE, MK_LBUTTON, there);
        SendMessageA(bar, WM_LBUTTONUP, 0, there);
        EXPECT_NEAR(edge(drag.bar), drag.to, 3) << drag.bar;
    }
    EXPECT_EQ(place(controlId::kTreeLibrary).right, edge(controlId::kSplitMain));
    EXPECT_EQ(place(controlId::kDetailsAlbums).bottom, edge(controlId::kSplitDetails));
    EXPECT_EQ(place(controlId::kAlbumTracks).right, edge(controlId::kSplitTracks));

    std::map<int, LONG> before;
    for (const auto& drag : drags)
        before[drag.bar] = edge(drag.bar);
    pane->storeState();
    EXPECT_NE(commands.albumDetailsSettings.splitTracks, 50.0);
    open();
    for (const auto& drag : drags)
        EXPECT_EQ(edge(drag.bar), before[drag.bar]) << drag.bar;
}

// In the settings 50 percent mean the middle of what the main bar leaves.
TEST_F(PaneAlbumDetailsTest, ABarThatIsDroppedInTheMiddleOfThePaneStaysThere)
{
    commands.albumDetailsSettings.splitMain = 20;
    open();
    const LONG middle = (place(controlId::kDetailsAlbums).left + kWide) / 2;
    EXPECT_NEAR(place(controlId::kSplitTracks).left, middle, 1);
    const HWND bar = child(controlId::kSplitTracks);
    const auto dropAt = [&](LONG x) {
        const LPARAM there = MAKELPARAM(x - place(controlId::kSplitTracks).left, 3);
        SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
        SendMessageA(bar, WM_LBUTTONUP, 0, there);
    };
    for (LONG x = kWide / 2 - 6; x < kWide / 2 + 6; ++x) {
        dropAt(x);
        EXPECT_NEAR(place(controlId::kSplitTracks).left, x, 3);
    }
    SendMessageA(bar, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(3, 3));
    EXPECT_NEAR(place(controlId::kSplitTracks).left, middle, 1);
}

TEST_F(PaneAlbumDetailsTest, PositionsThatAreNoneLeaveUsableAreas)
{
    for (const double percent : {-5.0, 0.0, 20.0, 79.5, 95.0, 1e300}) {
        commands.albumDetailsSettings.splitMain = percent;
        commands.albumDetailsSettings.splitDetails = percent;
        commands.albumDetailsSettings.splitTracks = percent;
        open();
        for (const int id : {controlId::kTreeLibrary, controlId::kDetailsAlbums, controlId::kAlbumTracks,
                             controlId::kTrackDetailsText}) {
            const RECT area = place(id);
            EXPECT_GT(widthOf(area), 20) << percent << " " << id;
            EXPECT_GT(heightOf(area), 20) << percent << " " << id;
            EXPECT_LE(area.right, kWide);
        }
    }
}

TEST_F(PaneAlbumDetailsTest, TheViewIsFoundAgain)
{
    open();
    chooseTree(kFavourites);
    tree(kFavourites).expand(node({"Genre"}, kFavourites));
    tree(kFavourites).expand(node({"Genre", "Rock"}, kFavourites));
    tree().expand(node({"Artist/Album"}));
    chooseBelow(0);
    chooseEntry(controlId::kTrackDetailsCombo, 8);
    pane->setView(ListStyle::Tiles);
    send(albumCommand::kSortFirst + 1);
    send(albumCommand::kSortFirst + 1);
    pane->storeState();
    open();
    EXPECT_TRUE(IsWindowVisible(tree(kFavourites).handle()));
    EXPECT_EQ(ComboBoxEx(child(controlId::kTreeCombo)).selection(), kFavourites);
    EXPECT_TRUE(tree(kFavourites).expanded(node({"Genre", "Rock"}, kFavourites)));
    EXPECT_FALSE(tree(kFavourites).expanded(node({"Artist/Album"}, kFavourites)));
    EXPECT_TRUE(tree().expanded(node({"Artist/Album"})));
    EXPECT_TRUE(IsWindowVisible(child(controlId::kAlbumInfo)));
    EXPECT_EQ(ComboBoxEx(child(controlId::kTrackDetailsCombo)).selection(), 8);
    EXPECT_EQ(pane->albumList().style(), ListStyle::Tiles);
    EXPECT_EQ(pane->albumList().sortColumn(), 1);
    choose({"Artist/Album"}, kFavourites);
    chooseTree(kLibrary);
    choose({"Artist/Album"});
    EXPECT_EQ(titles().front(), "Nothing") << "by artist, downwards";
}

TEST_F(PaneAlbumDetailsTest, AViewThatIsNoneIsTheUsualOne)
{
    for (const std::int32_t number : {-1, 4, 0x7FFFFFFF}) {
        for (const char* const name : {"AlbumDetailsTree", "AlbumDetailsBelow", "AlbumDetailsSortColumn"})
            saveViewNumber(commands.store, name, number);
        commands.albumDetailsSettings.listviewStyle = number;
        commands.albumDetailsSettings.trackDetailsCombo = number == 4 ? 9 : number;
        open();
        EXPECT_TRUE(IsWindowVisible(tree(kLibrary).handle()));
        EXPECT_TRUE(IsWindowVisible(child(controlId::kAlbumTracks)));
        EXPECT_EQ(ComboBoxEx(child(controlId::kTrackDetailsCombo)).selection(), 0);
        EXPECT_EQ(pane->albumList().style(), ListStyle::Details);
    }
}

TEST_F(PaneAlbumDetailsTest, ReloadKeepsNodesOpenAndSelectsNothing)
{
    open();
    tree().expand(node({"Genre"}));
    tree().expand(node({"Genre", "Rock"}));
    tree().expand(node({"Rank"}));
    choose({"Genre", "Rock"});
    pane->clearRecords();
    commands.records.albums.erase(5);
    commands.library();
    pane->reload();
    settle();
    EXPECT_TRUE(tree().expanded(node({"Genre"})));
    EXPECT_TRUE(tree().expanded(node({"Genre", "Rock"})));
    EXPECT_TRUE(tree().expanded(node({"Rank"})));
    EXPECT_FALSE(tree().expanded(node({"Artist/Album"})));
    EXPECT_EQ(tree().selection(), nullptr);
    EXPECT_EQ(titles(), Texts{});
    EXPECT_EQ(pane->status(), "Total Albums: 4");
}

TEST_F(PaneAlbumDetailsTest, RecordsAreLetGoBeforeTheyDie)
{
    open();
    choose({"Artist/Album"});
    selectOnly({0});
    ListView(child(controlId::kAlbumTracks)).select(0);
    pane->clearRecords();
    commands.busy = true;
    commands.records.albums.clear();
    commands.records.tracks.clear();
    commands.records.artists.clear();
    commands.library();
    settle();
    EXPECT_EQ(list().count(), 0);
    EXPECT_EQ(ListView(child(controlId::kAlbumTracks)).count(), 0);
    EXPECT_EQ(windowText(child(controlId::kTrackDetailsText)), "");
    RedrawWindow(pane->window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    tree().select(tree().root());
    chooseBelow(0);
    pane->trackCursor({}, true);
    pane->settingsChanged();
    pane->storeState();
    send(albumCommand::kPlay);
    EXPECT_EQ(takeCalls(), Texts{});
    commands.busy = false;
    send(albumCommand::kTakeBack);
    EXPECT_EQ(written(), Texts{});
    pane->reload();
    EXPECT_EQ(pane->status(), "Nothing Selected");
}

TEST_F(PaneAlbumDetailsTest, WithoutAlbumsThereIsOnlyTheInvitation)
{
    commands.records.albums.clear();
    open();
    EXPECT_EQ(pane->status(), "Nothing Selected");
    for (HWND each = GetWindow(pane->window(), GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT)) {
        const int id = GetDlgCtrlID(each);
        EXPECT_EQ(IsWindowVisible(each) != 0, id == controlId::kStatus || id == controlId::kCaptionMenu)
            << id;
    }
    RedrawWindow(pane->window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    const WindowDc dc(pane->window());
    int drawn = 0;
    for (int x = kWide / 2 - 100; x < kWide / 2 + 100; ++x) {
        for (int y = kTall * 2 / 5; y < kTall * 3 / 5; ++y)
            drawn += GetPixel(dc.dc(), x, y) == commands.text ? 1 : 0;
    }
    EXPECT_GT(drawn, 20);
    EXPECT_EQ(commands.logged, Texts{});
    addAlbum(commands.records, "Late", *commands.records.artists[1]);
    commands.library();
    pane->reload();
    EXPECT_TRUE(IsWindowVisible(tree().handle()));
    EXPECT_TRUE(IsWindowVisible(list().handle()));
    EXPECT_EQ(commands.logged, Texts{"Sorting"});
}
