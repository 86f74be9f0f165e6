// The details pane in the real plug-in while jobs run, menus and dialogs are open, and when all ends.

#include "MarksFixture.h"

#include "library/Records.h"

#include <functional>
#include <numeric>

namespace tessera {
namespace {

bool menuIsOpen()
{
    const HWND menu = FindWindowA("#32768", nullptr);
    return menu && IsWindowVisible(menu);
}

std::function<void()> g_whileMenuIsOpen;

void CALLBACK lookForMenu(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_whileMenuIsOpen && menuIsOpen())
        g_whileMenuIsOpen();
}

class DetailsPaneTest : public MarksTest {
protected:
    DetailsPaneTest() { g_whileMenuIsOpen = nullptr; }
    ~DetailsPaneTest() override { g_whileMenuIsOpen = nullptr; }

    // Real keys for the control that has the focus, through the container's loop.
    void press(BYTE key, std::initializer_list<BYTE> modifiers = {}) const
    {
        for (const BYTE modifier : modifiers)
            keybd_event(modifier, 0, 0, 0);
        keybd_event(key, 0, 0, 0);
        keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
        plugin->container.pumpFor(30);
        for (const BYTE modifier : modifiers)
            keybd_event(modifier, 0, KEYEVENTF_KEYUP, 0);
        plugin->container.pumpFor(30);
    }
    void focus(HWND control) const
    {
        SetForegroundWindow(plugin->container.frame());
        SetFocus(control);
        plugin->container.pumpFor(50);
    }
    // With the pointer; the column must be in view.
    void clickColumn(int column) const
    {
        RECT place{};
        SendMessageA(list().header(), HDM_GETITEMRECT, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(&place));
        POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
        ClientToScreen(list().header(), &middle);
        SetCursorPos(static_cast<int>(middle.x), static_cast<int>(middle.y));
        plugin->container.pumpFor(30);
        for (const DWORD button : {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP})
            mouse_event(button, 0, 0, 0, 0);
        plugin->container.pumpFor(50);
    }
    Texts titles() const
    {
        Texts titles;
        for (int row = 0; row < list().count(); ++row)
            titles.push_back(list().text(row, 0));
        return titles;
    }

    // True when the menu came up.
    bool openMenuAnd(const std::function<void()>& action)
    {
        int ticks = 0;
        g_whileMenuIsOpen = [&] {
            if (ticks++ == 0)
                action();
        };
        const UINT_PTR timer = SetTimer(nullptr, 0, 20, &lookForMenu);
        NMITEMACTIVATE header{};
        header.hdr = {list().handle(), controlId::kDetailsAlbums, static_cast<UINT>(NM_RCLICK)};
        SendMessageA(pane(), WM_NOTIFY, header.hdr.idFrom, reinterpret_cast<LPARAM>(&header));
        KillTimer(nullptr, timer);
        return ticks > 0;
    }
};

// Everything that the pane can be sent, while a worker is in the build and in the load.
TEST_F(DetailsPaneTest, NothingIsMarkedWhileAJobRuns)
{
    start();
    chooseRows({"Album 2"});
    for (const int call : {10, 200, 330}) {
        plugin->script->calls = 0;
        WorkerStop stop(*plugin->script, call);
        ASSERT_TRUE(plugin->beginCreating());
        ASSERT_TRUE(plugin->container.pump([&] { return stop.reached.isSet(); })) << call;
        for (int id = albumCommand::kNewToday; id <= albumCommand::kPlay; ++id)
            PostMessageA(pane(), WM_COMMAND, static_cast<WPARAM>(id), 0);
        for (int id = controlId::kTreeLibrary; id <= controlId::kTreeCompleted; ++id) {
            for (HTREEITEM root = tree(id).root(); root; root = tree(id).next(root)) {
                tree(id).expand(root);
                tree(id).select(tree(id).child(root));
                tree(id).select(root);
            }
            for (const UINT code : {UINT(NM_RCLICK), UINT(NM_DBLCLK), UINT(NM_RETURN)}) {
                NMHDR header{tree(id).handle(), static_cast<UINT_PTR>(id), code};
                SendMessageA(pane(), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
            }
        }
        for (const int combo :
             {controlId::kTreeCombo, controlId::kAlbumInfoCombo, controlId::kTrackDetailsCombo}) {
            const HWND control = GetDlgItem(pane(), combo);
            for (WPARAM entry : {2u, 1u, 0u}) {
                SendMessageA(control, CB_SETCURSEL, entry, 0);
                SendMessageA(pane(), WM_COMMAND, MAKEWPARAM(static_cast<WORD>(combo), CBN_SELCHANGE),
                             reinterpret_cast<LPARAM>(control));
            }
        }
        for (const UINT code : {UINT(NM_RCLICK), UINT(NM_DBLCLK), UINT(NM_RETURN)}) {
            NMITEMACTIVATE header{};
            header.hdr = {list().handle(), controlId::kDetailsAlbums, code};
            SendMessageA(pane(), WM_NOTIFY, header.hdr.idFrom, reinterpret_cast<LPARAM>(&header));
        }
        RedrawWindow(pane(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        plugin->container.pumpFor(30);
        stop.letGo();
        ASSERT_TRUE(plugin->waitForJob());
        plugin->script->onCall = nullptr;
        EXPECT_TRUE(plugin->boxes.texts.empty());
        EXPECT_TRUE(file() == model) << call; // built anew, without marks
        EXPECT_EQ(leaves(tree()), 6);
        const auto journal = plugin->script->journal();
        EXPECT_EQ(std::ranges::count(journal, "clear"), 0);
        chooseRows({"Album 2"});
        EXPECT_EQ(list().count(), 6);
    }
}

TEST_F(DetailsPaneTest, SortingKnowsTheMarksOfThisMoment)
{
    constexpr int kArtist = 1;
    constexpr int kRank = 10;
    constexpr int kFavourite = 11;
    constexpr int kNew = 12;
    start();
    for (int column = 0; column < list().columnCount(); ++column)
        list().setColumnWidth(column, column == kArtist || column >= kRank ? 40 : 5);
    chooseAll();
    for (const int column : {kRank, kFavourite, kNew}) // once before, so that nothing of it is kept
        clickColumn(column);
    const auto mark = [&](const char* title, BYTE key, std::initializer_list<BYTE> modifiers) {
        chooseRows({title});
        focus(list().handle());
        press(key, modifiers);
    };
    mark("Album 4", '2', {VK_CONTROL});
    mark("Album 2", '0', {VK_CONTROL});
    mark("Album 5", 'B', {VK_CONTROL});
    mark("Album 3", 'N', {VK_CONTROL, VK_SHIFT});
    chooseAll();
    clickColumn(kArtist);
    clickColumn(kRank);
    EXPECT_EQ((Texts{titles()[4], titles()[5]}), (Texts{"Album 4", "Album 2"}));
    clickColumn(kFavourite);
    EXPECT_EQ(titles()[5], "Album 5");
    clickColumn(kNew);
    EXPECT_EQ(titles()[5], "Album 3");
    mark("Album 5", '1', {VK_CONTROL});
    mark("Album 2", VK_BACK, {VK_CONTROL});
    clickColumn(kRank);
    EXPECT_EQ((Texts{titles()[4], titles()[5]}), (Texts{"Album 5", "Album 4"}));
}

TEST_F(DetailsPaneTest, AnotherIconSizeLeavesNodeRowsAndFocusAlone)
{
    start();
    plugin->command(commandId::kViewIcons);
    chooseRows({"Album 3", "Album 5"});
    list().setFocused(4);
    const HTREEITEM node = tree().selection();
    const std::vector<int> rows = list().selection();
    const std::string before = status();
    const HWND rebar = GetDlgItem(plugin->pane(paneId::kMain), controlId::kMainRebar);
    const HWND sizes = GetDlgItem(rebar, controlId::kImageSizeCombo);
    const auto turnWheel = [&] {
        PostMessageA(list().handle(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, WHEEL_DELTA), 0);
    };
    const auto pickSize = [&] {
        SendMessageA(sizes, CB_SETCURSEL, 3, 0);
        PostMessageA(plugin->pane(paneId::kMain), WM_COMMAND,
                     MAKEWPARAM(controlId::kImageSizeCombo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(sizes));
    };
    const struct {
        HWND focused;
        std::function<void()> change;
    } cases[] = {{list().handle(), turnWheel}, {tree().handle(), turnWheel}, {sizes, pickSize}};
    for (const auto& each : cases) {
        ASSERT_TRUE(plugin->container.pump([&] { return plugin->log().back() == "Finished"; }));
        focus(each.focused);
        const LRESULT cell = list().send(LVM_GETITEMSPACING, FALSE);
        each.change();
        ASSERT_TRUE(plugin->container.pump([&] { return list().send(LVM_GETITEMSPACING, FALSE) != cell; }));
        plugin->container.pumpFor(100);
        EXPECT_EQ(tree().selection(), node);
        EXPECT_EQ(list().count(), 6);
        EXPECT_EQ(list().selection(), rows);
        EXPECT_EQ(list().focused(), 4);
        EXPECT_EQ(status(), before);
        if (each.focused == sizes) // which must not be used while covers are loaded
            EXPECT_TRUE(IsChild(pane(), GetFocus()));
        else
            EXPECT_EQ(GetFocus(), each.focused);
    }
}

// Inside the calls that playing makes, and those of the list of what plays then.
TEST_F(DetailsPaneTest, TheHostMayEndThePlugInWhileAlbumsArePlayed)
{
    int total = 0;
    for (int call = 0; call <= total; call += call < 8 ? 1 : 7) {
        start(smallLibrary());
        SendMessageA(GetDlgItem(pane(), controlId::kAlbumInfoCombo), CB_SETCURSEL, 2, 0);
        SendMessageA(pane(), WM_COMMAND, MAKEWPARAM(controlId::kAlbumInfoCombo, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(GetDlgItem(pane(), controlId::kAlbumInfoCombo)));
        chooseRows({"Album 2", "Album 4"});
        plugin->script->calls = 0;
        plugin->script->onCall = [&](int number) {
            if (number == call)
                plugin->stop();
        };
        command(albumCommand::kPlay);
        plugin->script->onCall = nullptr;
        if (call == 0) {
            total = plugin->script->calls;
            ASSERT_GT(total, 15);
            EXPECT_EQ(std::ranges::count(plugin->script->journal(), "clear"), 1);
            plugin->stop();
        }
        plugin->container.pumpFor(30);
        EXPECT_FALSE(plugin->pane(paneId::kMain)) << call;
        EXPECT_EQ(plugin->script->live, 1) << call;
        EXPECT_EQ(plugin->script->strayReleases, 0) << call;
        plugin.reset();
    }
}

// What is below on the stack keeps the module; no dialog opens on top of it.
TEST_F(DetailsPaneTest, ThePlugInMayEndWhileAMenuIsOpen)
{
    for (const bool wholeControl : {false, true}) {
        start();
        chooseRows({"Album 2"});
        int dialogs = 0;
        plugin->boxes.onDialog = [&](HWND) { ++dialogs; };
        EXPECT_TRUE(openMenuAnd([&] {
            plugin->command(commandId::kNewDatabase);
            plugin->container.pumpFor(60);
            plugin->stop();
            if (wholeControl) {
                plugin->container.drop();
                plugin->control.reset();
            }
            plugin->container.pumpFor(60);
            EXPECT_FALSE(plugin->module.canUnload());
        }));
        EXPECT_EQ(dialogs, 0);
        plugin->container.pumpFor(60);
        EXPECT_FALSE(menuIsOpen());
        EXPECT_EQ(plugin->script->live, 1);
        plugin->container.drop();
        plugin->control.reset();
        plugin->container.pumpFor(60);
        EXPECT_TRUE(plugin->module.canUnload());
        plugin.reset();
    }
}

// A library that cannot be loaded leaves nothing of the one before.
TEST_F(DetailsPaneTest, AfterALoadThatFailsThereAreTheRootsOnly)
{
    start();
    tree().expand(tree().root());
    chooseRows({"Album 2"});
    plugin->script->knowsFiles = false;
    ASSERT_TRUE(plugin->create());
    EXPECT_EQ(plugin->boxes.texts.size(), 1u);
    for (int id = controlId::kTreeLibrary; id <= controlId::kTreeCompleted; ++id) {
        EXPECT_EQ(tree(id).count(), 3);
        EXPECT_EQ(tree(id).selection(), nullptr);
        for (HTREEITEM root = tree(id).root(); root; root = tree(id).next(root))
            tree(id).select(root);
    }
    settle();
    EXPECT_EQ(list().count(), 0);
    EXPECT_EQ(status(), "Rank - Nothing Selected"); // of the root that was selected last
    for (const int id : {albumCommand::kFavourite, albumCommand::kPlay, albumCommand::kGoToDirectory})
        command(id);
    EXPECT_TRUE(file() == model);
    plugin->script->knowsFiles = true;
    ASSERT_TRUE(plugin->create());
    EXPECT_EQ(leaves(tree()), 6);
    EXPECT_TRUE(tree().expanded(tree().root()));
}

TEST_F(DetailsPaneTest, TheDateDialogKeepsTheDatabaseAndMarksWhenItIsDone)
{
    start();
    chooseRows({"Album 2", "Album 3"});
    int seen = 0;
    Texts captions;
    plugin->boxes.onDialog = [&](HWND dialog) {
        char caption[100] = "";
        GetWindowTextA(dialog, caption, sizeof caption);
        captions.emplace_back(caption);
        if (++seen == 1) {
            plugin->command(commandId::kNewDatabase);
            command(albumCommand::kNewDate); // a second one is refused
        } else if (seen == 4) {
            const HWND calendar = GetDlgItem(dialog, 32999);
            SendMessageA(calendar, WM_KEYDOWN, VK_LEFT, 0);
            SendMessageA(dialog, WM_COMMAND, IDOK, 0);
        }
    };
    command(albumCommand::kNewDate);
    ASSERT_TRUE(plugin->container.pump([&] { return seen >= 4; }));
    plugin->container.pumpFor(50);
    EXPECT_EQ(captions, Texts(4, "Select the date"));
    SYSTEMTIME now{};
    GetLocalTime(&now);
    FILETIME ticks{};
    SystemTimeToFileTime(&now, &ticks);
    ULARGE_INTEGER day{{ticks.dwLowDateTime, ticks.dwHighDateTime}};
    day.QuadPart -= 24ULL * 3600 * 10000000;
    ticks = {day.LowPart, day.HighPart};
    FileTimeToSystemTime(&ticks, &now);
    for (const char* const title : {"Album 2", "Album 3"}) {
        putFlag(title, kAlbumNew, true);
        putDate(title, now.wYear * 10000 + now.wMonth * 100 + now.wDay);
    }
    EXPECT_TRUE(file() == model);
    EXPECT_FALSE(plugin->logged("Creating Database"));
}

TEST_F(DetailsPaneTest, TheEndInsideTheDateDialogMarksNothing)
{
    start();
    chooseRows({"Album 2"});
    bool ended = false;
    plugin->boxes.onDialog = [&](HWND) {
        if (!std::exchange(ended, true))
            plugin->stop();
    };
    command(albumCommand::kNewDate);
    ASSERT_TRUE(plugin->container.pump([&] { return ended; }));
    plugin->container.pumpFor(60);
    EXPECT_FALSE(plugin->pane(paneId::kMain));
    EXPECT_TRUE(file() == model);
    EXPECT_EQ(plugin->script->live, 1);
}

// The texts come from the records, whatever the view shows, in the order of the header.
TEST_F(DetailsPaneTest, TheListIsExportedWithItsMarks)
{
    start();
    chooseRows({"Album 2"});
    command(albumCommand::kRankNone + 9);
    command(albumCommand::kFavourite);
    std::vector<int> order(kColumnCount);
    std::iota(order.rbegin(), order.rend(), 0);
    list().send(LVM_SETCOLUMNORDERARRAY, order.size(), reinterpret_cast<LPARAM>(order.data()));
    plugin->command(commandId::kViewTiles);
    const std::string exported = folder.file("out.txt");
    int seen = 0;
    plugin->boxes.onDialog = [&](HWND dialog) {
        if (++seen != 3)
            return;
        SendMessageA(GetDlgItem(dialog, 0x47c), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(exported.c_str()));
        PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    };
    plugin->command(commandId::kExportList);
    ASSERT_TRUE(plugin->container.pump([&] { return !plugin->boxes.texts.empty(); }));
    EXPECT_TRUE(plugin->boxes.texts.front().starts_with("Finished writing to " + exported));
    const Bytes bytes = systemFiles().readAll(exported).value_or(Bytes());
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(std::ranges::count(text, '\n'), 6);
    // Thumbnail, path, compilation, new; then favourite, rank, type.
    EXPECT_NE(text.find("\tC:\\Music\\Album 2\t\t\tYes\t9\tMP3\t"), std::string::npos) << text;
    EXPECT_NE(text.find("\tArtist 3\tAlbum 2\n"), std::string::npos) << text;
}

} // namespace
} // namespace tessera
