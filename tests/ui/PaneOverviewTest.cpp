#include "OverviewFixture.h"

#include <algorithm>
#include <set>

namespace tessera {
namespace {

TEST_F(PaneOverviewTest, LongTextIsCutToTheBufferThatAsks)
{
    m_commands.records.albums[1]->displayTitle.assign(3000, 'x');
    open();
    EXPECT_EQ(list().text(0, 0).size(), 3000u) << "a buffer that grows gets all of it";
    char small[8] = "1234567";
    NMLVDISPINFOA info{};
    info.hdr = {list().handle(), controlId::kOverviewList, LVN_GETDISPINFOA};
    info.item.mask = LVIF_TEXT | LVIF_IMAGE;
    info.item.pszText = small;
    info.item.cchTextMax = 4;
    info.item.iImage = -7;
    SendMessageA(m_pane->window(), WM_NOTIFY, controlId::kOverviewList, reinterpret_cast<LPARAM>(&info));
    EXPECT_STREQ(small, "xxx");
    EXPECT_EQ(small[4], '5');
    EXPECT_EQ(info.item.iImage, 0) << "the cover's index";
}

TEST_F(PaneOverviewTest, SearchNarrowsAndTellsSo)
{
    open();
    EXPECT_EQ(windowText(child(controlId::kSearchLabel)), "Search Criteria:");
    EXPECT_EQ(m_pane->status(), "Qualified Albums: 4 out of 4");
    type("QUARTET");
    EXPECT_EQ(titles(), (Titles{"Yearling", "Tidewater"}));
    EXPECT_EQ(m_pane->status(), "Qualified Albums: 2 out of 4");
    clickSwitch(controlId::kSearchArtist);
    EXPECT_FALSE(m_commands.overviewSettings.searchArtist);
    EXPECT_EQ(m_pane->status(), "Nothing Qualified");
    EXPECT_EQ(list().count(), 0);
    clickSwitch(controlId::kSearchAlbum);
    clickSwitch(controlId::kSearchGenre);
    type("Early");
    EXPECT_EQ(m_pane->status(), "Nothing Qualified") << "no field is looked at";
    type("");
    EXPECT_EQ(m_pane->status(), "Qualified Albums: 4 out of 4");
}

TEST_F(PaneOverviewTest, StatusFollowsTheSelection)
{
    open();
    selectOnly({2});
    EXPECT_EQ(m_pane->status(), "Rock & Roll - 3 of 4");
    clickColumn(1);
    EXPECT_EQ(m_pane->status(), "Rock & Roll - 2 of 4") << "its place in the sorted list";
    send(10901);
    EXPECT_EQ(m_pane->status(), "Rock & Roll - 4 of 4");
    selectOnly({1, 3});
    EXPECT_EQ(m_pane->status(), "Multiple Selection: 2 of 4");
    list().select(-1);
    EXPECT_EQ(m_pane->status(), "Multiple Selection: 4 of 4");
    list().select(-1, false);
    EXPECT_EQ(m_pane->status(), "Qualified Albums: 4 out of 4");
}

// Others read the status line, too, so it is a control with that text.
TEST_F(PaneOverviewTest, StatusLineIsAControlInTheCaption)
{
    open();
    const Control line(child(controlId::kStatus));
    EXPECT_TRUE(IsWindowVisible(line.handle()));
    EXPECT_EQ(line.text(), "Qualified Albums: 4 out of 4");
    selectOnly({2});
    EXPECT_EQ(line.text(), "Rock & Roll - 3 of 4");
    EXPECT_EQ(line.rect().top, 0);
    EXPECT_LT(line.rect().right, 900);
    EXPECT_LE(line.rect().bottom, box().rect().top);
    pixel(0, 0);
    const WindowDc dc(line.handle());
    std::set<COLORREF> colours;
    for (int x = line.clientRect().right - 60; x < line.clientRect().right; ++x)
        for (int y = 3; y < line.clientRect().bottom - 3; ++y)
            colours.insert(GetPixel(dc.dc(), x, y));
    EXPECT_GT(colours.size(), 1u) << "right-aligned text";
    MoveWindow(m_pane->window(), 0, 0, 400, 600, TRUE);
    EXPECT_LT(line.rect().right, 400);
    EXPECT_EQ(SendMessageA(line.handle(), WM_NCHITTEST, 0, 0), HTTRANSPARENT) << "clicks are the pane's";
}

TEST_F(PaneOverviewTest, SameResultLeavesSelectionAlone)
{
    open();
    type("a");
    selectOnly({0});
    type("ar"); // Early, Yearling, and the two of the Harbour Quartet again
    type("arl");
    EXPECT_EQ(titles(), (Titles{"Early", "Yearling"}));
    EXPECT_EQ(list().nextSelected(), -1) << "another sequence: nothing is selected";
    selectOnly({1});
    type("arl ");
    type("arl");
    selectOnly({1});
    type("ARL");
    EXPECT_EQ(list().selection(), std::vector<int>{1});
}

TEST_F(PaneOverviewTest, SortKeepsSelectionAndFocusOnTheirAlbums)
{
    open();
    selectOnly({0, 3});
    list().setFocused(3);
    clickColumn(8);
    EXPECT_EQ(titles(), (Titles{"Tidewater", "Yearling", "Early", "Rock & Roll"}));
    EXPECT_EQ(list().selection(), (std::vector<int>{0, 2}));
    EXPECT_EQ(list().focused(), 0);
    clickColumn(8);
    EXPECT_EQ(titles().front(), "Rock & Roll");
    EXPECT_EQ(list().selection(), (std::vector<int>{1, 3}));
    clickColumn(1);
    EXPECT_EQ(titles(), (Titles{"Rock & Roll", "Early", "Yearling", "Tidewater"}))
        << "another column begins ascending; ties keep their order";
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    SendMessageA(list().header(), HDM_GETITEMA, 1, reinterpret_cast<LPARAM>(&item));
    EXPECT_TRUE(item.fmt & HDF_SORTUP);
    SendMessageA(list().header(), HDM_GETITEMA, 8, reinterpret_cast<LPARAM>(&item));
    EXPECT_FALSE(item.fmt & (HDF_SORTUP | HDF_SORTDOWN));
    list().select(-1);
    clickColumn(0);
    EXPECT_EQ(list().selection().size(), 4u);
    EXPECT_EQ(m_pane->status(), "Multiple Selection: 4 of 4");
    type("e");
    EXPECT_EQ(titles().front(), "Early") << "a new result is sorted, too";
}

TEST_F(PaneOverviewTest, OneAlbumOnlyChangesTheSortState)
{
    open();
    type("tidewater");
    clickColumn(8);
    EXPECT_EQ(m_pane->albumList().sortColumn(), 8);
    type("");
    EXPECT_EQ(titles().front(), "Tidewater");
}

TEST_F(PaneOverviewTest, CellsHaveTheirSizes)
{
    m_commands.overviewSettings.listviewStyle = 0;
    open();
    EXPECT_EQ(list().send(LVM_GETITEMSPACING, FALSE), MAKELONG(95, 150));
    RECT icon = cell(0);
    EXPECT_EQ(icon.right - icon.left, 85);
    EXPECT_EQ(icon.bottom - icon.top, 140);
    m_pane->setView(ListStyle::Tiles);
    EXPECT_EQ(m_commands.overviewSettings.listviewStyle, 3);
    EXPECT_EQ(list().send(LVM_GETITEMSPACING, FALSE), MAKELONG(394, 71));
    icon = cell(0);
    EXPECT_EQ(icon.right - icon.left, 364);
    EXPECT_EQ(icon.bottom - icon.top, 64);
    m_pane->setView(ListStyle::Details);
    EXPECT_EQ(GetWindowLongA(list().handle(), GWL_STYLE) & LVS_TYPEMASK, LVS_REPORT);
    m_commands.generalSettings.iconCaptionHeight = -20;
    m_commands.generalSettings.tileWidth = 2000000000;
    for (const ListStyle style : {ListStyle::Icons, ListStyle::Tiles, ListStyle::Icons})
        m_pane->setView(style);
    pixel(0, 0);
    EXPECT_EQ(cell(0).bottom - cell(0).top, 90);
}

TEST_F(PaneOverviewTest, CoversCaptionsAndSelectionAreDrawn)
{
    m_commands.overviewSettings.listviewStyle = 0;
    open();
    selectOnly({1});
    const RECT plain = cell(0);
    const RECT chosen = cell(1);
    EXPECT_EQ(pixel(plain.left + 5, plain.top + 5), ColouredCovers::kColour);
    EXPECT_EQ(pixel(plain.left + 79, plain.top + 79), ColouredCovers::kColour);
    EXPECT_EQ(pixel(plain.left + 4, plain.top + 4), m_commands.background);
    EXPECT_EQ(pixel(plain.left + 80, plain.top + 80), m_commands.background);
    EXPECT_EQ(pixel(chosen.left + 2, chosen.top + 2), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(pixel(chosen.left + 40, chosen.top + 40), ColouredCovers::kColour) << "a plain copy";
    m_pane->setView(ListStyle::Tiles);
    const RECT tile = cell(0);
    EXPECT_EQ(pixel(tile.left, tile.top), ColouredCovers::kColour);
    EXPECT_EQ(pixel(tile.left + 63, tile.top + 63), ColouredCovers::kColour);
    const auto dark = [&](LONG x, LONG y) {
        const COLORREF colour = pixel(static_cast<int>(x), static_cast<int>(y));
        return GetRValue(colour) < 100 && GetGValue(colour) < 100;
    };
    int drawn = 0;
    for (LONG x = tile.left + 70; x < tile.left + 120; ++x)
        drawn += dark(x, (tile.top + tile.bottom) / 2 - 20) || dark(x, (tile.top + tile.bottom) / 2 - 18);
    EXPECT_GT(drawn, 3) << "the first line of text";
}

TEST_F(PaneOverviewTest, EmptyListSaysSo)
{
    open();
    type("nowhere to be found");
    const RECT client = list().clientRect();
    const auto textThere = [&] {
        pixel(0, 0);
        const WindowDc dc(list().handle());
        for (LONG x = client.right / 2 - 60; x < client.right / 2 + 60; ++x) {
            for (LONG y = client.bottom / 2 - 10; y < client.bottom / 2 + 25; ++y) {
                if (GetPixel(dc.dc(), static_cast<int>(x), static_cast<int>(y)) == m_commands.text)
                    return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(textThere());
    type("tidewater");
    EXPECT_FALSE(textThere());
}

TEST_F(PaneOverviewTest, MenuNamesTheOneAlbumOrAll)
{
    open();
    selectOnly({2});
    Menu menu = m_pane->contextMenu();
    EXPECT_EQ(menu.itemText(10998), "Play: Rock && Roll") << "the menu shows one '&'";
    EXPECT_EQ(menu.itemText(10997), "Append To Playlist: Rock && Roll");
    EXPECT_EQ(menu.itemText(10996), "Go To Directory");
    EXPECT_EQ(GetMenuState(menu.get(), 10996, MF_BYCOMMAND) & MF_GRAYED, 0u);
    EXPECT_EQ(menu.itemText(10908), "Year");
    selectOnly({0, 1});
    menu = m_pane->contextMenu();
    EXPECT_EQ(menu.itemText(10998), "Play: All");
    EXPECT_NE(GetMenuState(menu.get(), 10996, MF_BYCOMMAND) & MF_GRAYED, 0u);
    send(10908);
    EXPECT_EQ(titles().front(), "Tidewater");
    send(10920); // no such column
    menu = m_pane->contextMenu();
    EXPECT_NE(GetMenuState(menu.get(), 10908, MF_BYCOMMAND) & MF_CHECKED, 0u);
}

TEST_F(PaneOverviewTest, AlbumsPlayAppendAndShowTheirFolder)
{
    open();
    send(10998);
    EXPECT_TRUE(m_commands.calls.empty()) << "nothing is selected";
    selectOnly({0, 2});
    send(10998);
    send(10997);
    selectOnly({1});
    key(list().handle(), VK_RETURN);
    send(10996);
    const Titles expected{"play Early Rock & Roll", "append Early Rock & Roll", "play Yearling",
                          "folder C:\\Music\\Yearling"};
    EXPECT_EQ(m_commands.calls, expected);
    m_commands.busy = true;
    send(10998);
    EXPECT_EQ(m_commands.calls, expected);
}

TEST_F(PaneOverviewTest, TypingFindsByPrefix)
{
    open();
    const auto find = [&](const char* text, int start, UINT flags) {
        LVFINDINFOA info{};
        info.flags = flags;
        info.psz = text;
        return list().send(LVM_FINDITEMA, static_cast<WPARAM>(start), reinterpret_cast<LPARAM>(&info));
    };
    EXPECT_EQ(find("tide", -1, LVFI_PARTIAL | LVFI_STRING), 3);
    EXPECT_EQ(find("LUM", -1, LVFI_PARTIAL | LVFI_STRING), 0) << "no such title: an artist";
    EXPECT_EQ(find("EARL", 2, LVFI_PARTIAL | LVFI_STRING), -1);
    EXPECT_EQ(find("earl", 2, LVFI_PARTIAL | LVFI_STRING | LVFI_WRAP), 0);
    EXPECT_EQ(find("zzz", -1, LVFI_PARTIAL | LVFI_STRING | LVFI_WRAP), -1);
    SetFocus(list().handle());
    list().setFocused(0);
    SendMessageA(list().handle(), WM_CHAR, 'r', 1);
    EXPECT_EQ(list().focused(), 2);
}

TEST_F(PaneOverviewTest, ApplicationsKeyMovesThePointerToTheItem)
{
    open();
    m_commands.busy = true; // no menu, only what comes before it
    list().setFocused(1);
    key(list().handle(), VK_APPS);
    const auto pointer = [&] {
        POINT place{};
        GetCursorPos(&place);
        ScreenToClient(list().handle(), &place);
        return place;
    };
    const auto bounds = [&] {
        RECT rect{LVIR_BOUNDS, 0, 0, 0};
        list().send(LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&rect));
        return rect;
    };
    EXPECT_EQ(pointer().y, bounds().bottom - 30);
    EXPECT_EQ(pointer().x, list().clientRect().right - 30) << "a row may be wider than the list";
    for (const ListStyle style : {ListStyle::Icons, ListStyle::Tiles}) {
        m_pane->setView(style);
        key(list().handle(), VK_APPS);
        EXPECT_EQ(pointer().x, bounds().right - 30);
        EXPECT_EQ(pointer().y, bounds().bottom - 30);
    }
}

// Some keyboards type letters with the right Alt key, which counts as Ctrl and Alt.
TEST_F(PaneOverviewTest, LettersTypedWithAltGrAreNoCommands)
{
    open();
    type("early");
    box().select(5, 5);
    SetFocus(box().handle());
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    const BYTE before[] = {keys[VK_CONTROL], keys[VK_MENU]};
    keys[VK_CONTROL] = keys[VK_MENU] = 0x80;
    SetKeyboardState(keys);
    key(box().handle(), 'A');
    SendMessageA(box().handle(), WM_CHAR, '\xB9', 1);
    key(list().handle(), 'A');
    keys[VK_CONTROL] = before[0];
    keys[VK_MENU] = before[1];
    SetKeyboardState(keys);
    EXPECT_EQ(box().text(), "early\xB9");
    type("");
    EXPECT_EQ(list().nextSelected(), -1);
}

TEST_F(PaneOverviewTest, WheelStepsTheIconSize)
{
    open();
    const auto turn = [&](int delta) {
        SendMessageA(list().handle(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, delta), 0);
    };
    turn(120);
    EXPECT_TRUE(m_commands.calls.empty()) << "only icons have a size";
    m_pane->setView(ListStyle::Icons);
    turn(120);
    turn(-120); // the smallest already
    m_commands.artworkSettings.imageSizeIndex = 5;
    turn(120);
    turn(-120);
    EXPECT_EQ(m_commands.calls, (Titles{"size 1", "size 4"}));
}

TEST_F(PaneOverviewTest, BoxIsAboveBelowOrHidden)
{
    open();
    const auto top = [](HWND window) { return Control(window).rect().top; };
    EXPECT_LT(top(box().handle()), top(list().handle()));
    m_commands.overviewSettings.searchBoxTop = false;
    m_pane->settingsChanged();
    EXPECT_GT(top(box().handle()), top(list().handle()));
    EXPECT_EQ(GetWindow(m_pane->window(), GW_CHILD), list().handle()) << "the Tab key meets the list first";
    type("early");
    m_commands.overviewSettings.showSearch = false;
    m_pane->settingsChanged();
    m_pane->reload();
    EXPECT_FALSE(IsWindowVisible(box().handle()));
    EXPECT_EQ(list().count(), 4) << "a box that nobody sees narrows nothing";
    send(albumCommand::kFind);
    EXPECT_TRUE(IsWindowVisible(box().handle()));
    EXPECT_EQ(list().count(), 1);
}

TEST_F(PaneOverviewTest, ViewIsThereAgainAtTheNextStart)
{
    for (int i = 0; i < 300; ++i)
        addAlbum(m_commands.records, ("album " + std::to_string(i)).c_str(), *m_commands.records.artists[1],
                 i);
    for (const int style : {0, 1, 3}) {
        m_commands.overviewSettings.listviewStyle = style;
        open();
        if (m_pane->albumList().sortColumn() != 8)
            clickColumn(8);
        selectOnly({250, 252});
        list().setFocused(252);
        list().makeVisible(252);
        ViewState before;
        m_pane->albumList().keepView(before);
        m_pane->storeState();
        open();
        ViewState after;
        m_pane->albumList().keepView(after);
        EXPECT_EQ(after.sortColumn, 8);
        EXPECT_EQ(after.selectedAlbums, before.selectedAlbums) << style;
        EXPECT_EQ(after.focusedAlbum, before.focusedAlbum) << style;
        EXPECT_EQ(after.topAlbum, before.topAlbum) << style;
        EXPECT_NE(after.topAlbum, m_pane->albumList().album(0).id) << style;
    }
    m_commands.databaseSettings.lastUsed = "C:\\other.ts2";
    open();
    EXPECT_EQ(list().nextSelected(), -1) << "ids of another database";
    EXPECT_EQ(m_pane->albumList().sortColumn(), 8);
}

TEST_F(PaneOverviewTest, CriteriaAreStored)
{
    open();
    type("early");
    m_pane->storeState();
    EXPECT_EQ(m_commands.overviewSettings.searchCriteria, "early");
    open();
    EXPECT_EQ(box().text(), "early");
    EXPECT_EQ(m_pane->status(), "Qualified Albums: 1 out of 4");
}

TEST_F(PaneOverviewTest, RecordsAreLetGoWhenTheyAreTold)
{
    open();
    selectOnly({1});
    m_pane->clearRecords();
    m_commands.records.clear();
    EXPECT_EQ(list().count(), 0);
    EXPECT_EQ(m_pane->status(), "Nothing Qualified");
    EXPECT_FALSE(IsWindowVisible(list().handle())) << "the invitation is there instead";
    pixel(0, 0);
    clickColumn(3);
    send(10998);
    m_pane->storeState();
    m_pane->reload();
    EXPECT_TRUE(m_commands.calls.empty());
}

TEST_F(PaneOverviewTest, ListensToCoversWhileItLives)
{
    open();
    ASSERT_FALSE(m_commands.fakeCovers.listeners.empty());
    m_pane->setView(ListStyle::Icons);
    m_commands.fakeCovers.size = {120, 100};
    for (CoverListener* const listener : m_commands.fakeCovers.listeners)
        listener->imageListsRebuilt();
    EXPECT_EQ(list().send(LVM_GETITEMSPACING, FALSE), MAKELONG(140, 175));
    ValidateRect(list().handle(), nullptr);
    for (CoverListener* const listener : m_commands.fakeCovers.listeners)
        listener->coversArrived({m_commands.records.albums[2].get()});
    RECT dirty{};
    GetUpdateRect(list().handle(), &dirty, FALSE);
    EXPECT_EQ(dirty.left, 150) << "the cover alone";
    EXPECT_EQ(dirty.right, 270);
    EXPECT_EQ(dirty.bottom - dirty.top, 100);
    m_pane.reset();
    EXPECT_TRUE(m_commands.fakeCovers.listeners.empty());
}

} // namespace
} // namespace tessera
