// Keys in two containers that want them, too.

#include "MarksFixture.h"

#include "base/Text.h"
#include "options/ids.h"
#include "shell/Identifiers.h"
#include "ui/ids.h"
#include "windowing/ComboBoxEx.h"
#include "windowing/MessageLoop.h"
#include "windowing/Window.h"

#include <functional>
#include <prsht.h>
#include <ranges>
#include <set>

namespace tessera {
namespace {

using Eaten = std::vector<std::string>;

// Hears the keys that reach a control.
class KeyListener final : public Subclass {
public:
    Handled route(const Message& message) override
    {
        if (message.id == WM_KEYDOWN) {
            keys.push_back(message.wParam);
        }
        return kDefault;
    }
    std::vector<WPARAM> keys;
};

const std::vector<WPARAM> kKeys{VK_DOWN,   VK_UP,     VK_LEFT,  VK_RIGHT, VK_HOME,
                                VK_RETURN, VK_ESCAPE, VK_SPACE, 'A'};

void postKeys(HWND window)
{
    for (const WPARAM key : kKeys) {
        PostMessageA(window, WM_KEYDOWN, key, 1);
        PostMessageA(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    }
}

TEST(Keys, GoToTheFocusedControlInAContainerWithAccelerators)
{
    forgetSettings();
    RunningPlugin plugin;
    plugin.start();
    const HWND list = GetDlgItem(plugin.pane(paneId::kLog), controlId::kLogList);
    SetForegroundWindow(plugin.container.frame());
    SetFocus(plugin.window());
    EXPECT_EQ(GetFocus(), list); // the control hands it on
    EXPECT_EQ(plugin.container.uiActivations, 1);
    ASSERT_TRUE(plugin.container.activeObject);

    KeyListener listener;
    listener.attach(list);
    postKeys(list);
    plugin.container.pumpFor(100);
    EXPECT_EQ(listener.keys, kKeys);
    EXPECT_EQ(plugin.container.eaten, Eaten{});

    // The focus elsewhere: the container has its keys back.
    SetFocus(plugin.container.frame());
    plugin.container.pumpFor(30);
    PostMessageA(plugin.container.frame(), WM_KEYDOWN, VK_RETURN, 1);
    plugin.container.pumpFor(30);
    EXPECT_EQ(plugin.container.eaten, Eaten{"#13"});
}

// The text of the first entry of the menu that is open; closes it.
std::string g_menuEntry;

void CALLBACK closeMenu(HWND, UINT, UINT_PTR, DWORD)
{
    const HWND window = FindWindowA("#32768", nullptr);
    if (window && IsWindowVisible(window)) {
        char text[100] = "";
        const auto menu = reinterpret_cast<HMENU>(SendMessageA(window, MN_GETHMENU, 0, 0));
        GetMenuStringA(menu, 0, text, sizeof text, MF_BYPOSITION);
        g_menuEntry = text;
        EndMenu();
    }
}

// With the database of six albums.
class KeysTest : public MarksTest {
protected:
    void start(std::shared_ptr<HostScript> script = smallLibrary())
    {
        MarksTest::start(std::move(script));
        SetForegroundWindow(plugin->container.frame());
        settle();
    }
    void press(std::initializer_list<BYTE> keys) const { plugin->container.press(keys); }
    // What the container took since the last question.
    Eaten eaten() const { return std::exchange(plugin->container.eaten, {}); }
    void showPane(int id) const
    {
        const ComboBoxEx combo(goTo());
        combo.select(id / 1000 - 1);
        SendMessageA(plugin->pane(paneId::kMain), WM_COMMAND,
                     MAKEWPARAM(controlId::kViewCombo, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo.handle()));
        settle();
        ASSERT_EQ(plugin->shownPane(), id);
    }
    // The first entry of the menu that a key opens.
    std::string menuOf(BYTE key) const
    {
        g_menuEntry.clear();
        const UINT_PTR timer = SetTimer(nullptr, 0, 20, &closeMenu);
        press({key});
        KillTimer(nullptr, timer);
        return g_menuEntry.substr(0, g_menuEntry.find('\t'));
    }
    HWND goTo() const
    {
        const HWND rebar = GetDlgItem(plugin->pane(paneId::kMain), controlId::kMainRebar);
        return GetDlgItem(rebar, controlId::kViewCombo);
    }
    HWND overview(int id) const { return GetDlgItem(plugin->pane(paneId::kOverview), id); }
};

TEST_F(KeysTest, OfTheAlbumListGoThereAndTheOthersToTheContainer)
{
    start();
    chooseRows({"Album 2"});
    SetFocus(list().handle());
    for (BYTE digit = 1; digit <= 10; ++digit) {
        press({VK_CONTROL, static_cast<BYTE>('0' + digit % 10)});
        EXPECT_EQ(cell("Album 2", 10), std::to_string(digit));
    }
    press({VK_CONTROL, VK_BACK});
    EXPECT_EQ(cell("Album 2", 10), "");
    press({VK_CONTROL, 'B'});
    EXPECT_EQ(cell("Album 2", 11), "Yes");
    press({VK_CONTROL, VK_SHIFT, 'N'});
    EXPECT_NE(cell("Album 2", 12), "");
    press({VK_CONTROL, 'Z'});
    press({VK_CONTROL, 'Z'});
    press({VK_CONTROL, 'Z'});
    EXPECT_EQ(cell("Album 2", 12), "");
    EXPECT_EQ(cell("Album 2", 11), "");
    EXPECT_EQ(cell("Album 2", 10), "10");
    press({VK_CONTROL, 'A'});
    EXPECT_EQ(list().selection().size(), 6u);
    press({VK_CONTROL, VK_RETURN});
    press({VK_CONTROL, VK_HOME});
    press({VK_DOWN});
    auto journal = plugin->script->journal();
    EXPECT_EQ(std::ranges::count(journal, "clear"), 0) << "appended";
    EXPECT_EQ(eaten(), Eaten{});
    // No container takes Alt+Enter here, which plays nothing.
    for (const auto& [modifier, key] : {std::pair<BYTE, BYTE>{VK_CONTROL, 'P'},
                                        {VK_CONTROL, 'F'},
                                        {VK_CONTROL, 'N'},
                                        {VK_CONTROL, VK_TAB},
                                        {VK_MENU, VK_RETURN}})
        press({modifier, key});
    press({VK_F6});
    EXPECT_EQ(eaten(), (Eaten{"Ctrl+P", "Ctrl+F", "Ctrl+N", "Ctrl+#9", "#117"}));
    EXPECT_EQ(plugin->script->journal().size(), journal.size());
    EXPECT_EQ(GetFocus(), list().handle());
}

TEST_F(KeysTest, OfTreesBoxesAndTheLogAreTheirOwn)
{
    start();
    chooseRows({"Album 2"});
    SetFocus(list().handle());
    press({VK_CONTROL, '7'});
    SetFocus(tree().handle());
    press({VK_CONTROL, 'Z'});
    EXPECT_EQ(cell("Album 2", 10), "") << "a change is taken back from a tree as well";
    EXPECT_EQ(eaten(), Eaten{});
    SetFocus(tree().handle());
    press({VK_CONTROL, '7'});
    press({VK_CONTROL, 'B'});
    EXPECT_EQ(eaten(), (Eaten{"Ctrl+7", "Ctrl+B"}));
    const HWND below = GetDlgItem(pane(), controlId::kAlbumTracks);
    SetFocus(below);
    press({VK_CONTROL, 'A'});
    press({VK_DOWN});
    EXPECT_EQ(eaten(), Eaten{"Ctrl+A"});

    showPane(paneId::kOverview);
    const HWND box = overview(controlId::kCriteria);
    SetFocus(overview(controlId::kOverviewList));
    press({VK_CONTROL, 'B'});
    press({VK_CONTROL, 'F'});
    EXPECT_EQ(GetFocus(), box);
    press({'4'});
    press({VK_CONTROL, 'A'});
    press({VK_CONTROL, 'C'});
    press({'5'});
    EXPECT_EQ(windowText(box), "5");
    press({VK_CONTROL, 'B'});
    press({VK_CONTROL, 'V'});
    EXPECT_EQ(windowText(box), "54");
    press({VK_CONTROL, VK_TAB});
    EXPECT_EQ(eaten(), (Eaten{"Ctrl+B", "Ctrl+B", "Ctrl+#9"}));
    press({VK_ESCAPE});
    EXPECT_EQ(windowText(box), "");
    SetFocus(overview(controlId::kSearchAlbum));
    press({VK_SPACE});
    EXPECT_EQ(Button(overview(controlId::kSearchAlbum)).checked(), false);
    press({VK_LEFT});
    press({VK_CONTROL, 'F'});
    EXPECT_EQ(GetFocus(), box);
    EXPECT_EQ(eaten(), Eaten{"#37"}) << "a check box has no use for an arrow";

    showPane(paneId::kLog);
    SetFocus(plugin->window());
    press({VK_CONTROL, 'F'});
    press({VK_CONTROL, 'Z'});
    press({VK_CONTROL, VK_END});
    EXPECT_EQ(eaten(), (Eaten{"Ctrl+F", "Ctrl+Z"}));
}

TEST_F(KeysTest, TheFirstHitOfASearchIsPlayedWhateverHadTheFocus)
{
    start(smallLibrary(600));
    ASSERT_TRUE(plugin->create());
    showPane(paneId::kOverview);
    const ListView albums(overview(controlId::kOverviewList));
    const auto played = [&] {
        for (const std::string& line : plugin->script->journal() | std::views::reverse) {
            if (line.starts_with("add C:\\Music\\") && line.find("\\01.mp3") != std::string::npos)
                return line.substr(13, line.find("\\01.mp3") - 13);
        }
        return std::string();
    };
    for (const int view : {commandId::kViewIcons, commandId::kViewTiles, commandId::kViewDetails}) {
        plugin->command(view);
        settle();
        const auto search = [&](std::initializer_list<BYTE> keys) {
            SetFocus(albums.handle());
            press({VK_CONTROL, VK_END});
            press({VK_CONTROL, 'F'});
            for (const BYTE key : keys)
                press({key});
            RECT first{LVIR_BOUNDS, 0, 0, 0};
            albums.send(LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
            return first.top >= 0;
        };
        EXPECT_TRUE(search({'3'})) << "a result begins at its top " << view;
        press({'3'});
        press({VK_DOWN});
        press({VK_RETURN});
        EXPECT_EQ(played(), "Album 33") << view;
        press({VK_ESCAPE});
        search({'U'}); // which all titles hold
        press({VK_RETURN});
        EXPECT_EQ(albums.selection(), std::vector<int>{0}) << view;
        EXPECT_EQ(menuOf(VK_APPS), "Play: Album 1") << view;
        press({VK_RETURN});
        EXPECT_EQ(played(), "Album 1") << view;
        press({VK_ESCAPE});
        search({'Q'});
        press({VK_DOWN});
        EXPECT_EQ(GetFocus(), overview(controlId::kCriteria)) << "nothing found: the text can be mended";
        EXPECT_NE(menuOf(VK_APPS), "") << "that of the box";
        press({VK_ESCAPE});
    }
    EXPECT_EQ(eaten(), Eaten{});
}

// With the keys of the box; the same for a load that fails.
TEST_F(KeysTest, APaneChosenWhileADatabaseLoadsIsShownWhenThatEnds)
{
    start();
    const ComboBoxEx combo(goTo());
    for (const bool known : {true, false}) {
        plugin->script->calls = 0;
        WorkerStop stop(*plugin->script, 20);
        ASSERT_TRUE(plugin->beginOpening(path));
        ASSERT_TRUE(plugin->container.pump([&] { return stop.reached.isSet(); }));
        plugin->script->knowsFiles = known;
        SetFocus(combo.handle());
        press({VK_UP});
        press({VK_UP});
        EXPECT_EQ(combo.itemText(combo.selection()), "Overview");
        EXPECT_EQ(plugin->shownPane(), paneId::kLog);
        EXPECT_EQ(GetFocus(), combo.combo());
        stop.letGo();
        ASSERT_TRUE(plugin->waitForJob());
        plugin->script->onCall = nullptr;
        EXPECT_EQ(plugin->shownPane(), paneId::kOverview) << known;
        EXPECT_EQ(combo.itemText(combo.selection()), "Overview");
    }
    plugin->stop();
    EXPECT_EQ(storedGeneral().lastPane, paneId::kOverview);
}

// A choice inside a call of ours to the host is refused.
TEST_F(KeysTest, BoxesShowWhatIsWhenAChoiceWasRefused)
{
    start();
    chooseRows({"Album 2"});
    const HWND rebar = GetParent(goTo());
    const ComboBoxEx sizes(GetDlgItem(rebar, controlId::kImageSizeCombo));
    const int size = sizes.selection();
    const int other = size == 0 ? 2 : 0;
    bool called = false;
    plugin->script->onCall = [&](int) {
        if (GetCurrentThreadId() != plugin->script->uiThread || std::exchange(called, true))
            return;
        for (const HWND combo : {goTo(), sizes.handle()}) {
            ComboBoxEx(combo).select(combo == sizes.handle() ? other : 0);
            SendMessageA(plugin->pane(paneId::kMain), WM_COMMAND,
                         MAKEWPARAM(GetDlgCtrlID(combo), CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
        }
    };
    command(albumCommand::kPlay);
    plugin->script->onCall = nullptr;
    EXPECT_TRUE(called);
    EXPECT_EQ(ComboBoxEx(goTo()).selection(), 1);
    EXPECT_EQ(sizes.selection(), size);
}

TEST_F(KeysTest, ABoxOverTheWizardIsTheWizards)
{
    start();
    bool seen = false;
    plugin->boxes.onDialog = [&](HWND wizard) {
        if (seen)
            return static_cast<void>(PropSheet_PressButton(wizard, PSBTN_CANCEL));
        if (windowText(wizard).starts_with("Step 2")) {
            const HWND page = PropSheet_GetCurrentPageHwnd(wizard);
            SetWindowTextA(GetDlgItem(page, IDC_DATABASE_FILE), "");
            plugin->boxes.onBox = [&, wizard](HWND box) {
                seen = true;
                EXPECT_EQ(::GetWindow(box, GW_OWNER), wizard);
                EXPECT_FALSE(IsWindowEnabled(wizard));
                SendMessageA(box, WM_COMMAND, IDOK, 0);
            };
        }
        PropSheet_PressButton(wizard, PSBTN_NEXT);
    };
    plugin->command(commandId::kNewDatabase);
    EXPECT_TRUE(plugin->container.pump([&] { return seen && IsWindowEnabled(plugin->container.frame()); }));
}

// Tab leads to them, in front of the lists.
TEST_F(KeysTest, OpenTheCaptionsMenuAndTakeItsOffer)
{
    start();
    chooseRows({"Album 2", "Album 3"});
    command(albumCommand::kRankNone + 7);
    SetFocus(GetDlgItem(pane(), controlId::kCaptionMenu));
    EXPECT_EQ(menuOf(VK_DOWN), "Undo: Rank 7, 2 albums");
    EXPECT_EQ(menuOf(VK_RETURN), "Undo: Rank 7, 2 albums");
    EXPECT_EQ(menuOf(VK_SPACE), "Undo: Rank 7, 2 albums");
    EXPECT_EQ(menuOf(VK_APPS), "Undo: Rank 7, 2 albums");
    ASSERT_TRUE(plugin->create());
    SetFocus(GetDlgItem(pane(), controlId::kCaptionMenu));
    EXPECT_EQ(menuOf(VK_DOWN), "Undo") << "another database";
    press({VK_TAB});
    EXPECT_EQ(windowText(GetFocus()), "The previous database holds marks of 2 albums. Take them...");
    EXPECT_EQ(menuOf(VK_APPS), "Undo");
    for (const BYTE key : {VK_RETURN, VK_SPACE}) {
        int seen = 0;
        plugin->boxes.onDialog = [&](HWND dialog) {
            seen += windowText(dialog) == "Take marks from another database" ? 1 : 0;
            PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        };
        SetFocus(GetDlgItem(pane(), controlId::kCaptionOffer));
        press({key});
        EXPECT_TRUE(plugin->container.pump([&] { return seen > 0; })) << key;
        settle();
        plugin->boxes.onDialog = nullptr;
    }
    EXPECT_EQ(eaten(), Eaten{});
}

// Whatever the plug-in does, a box of the container's goes on being typed into.
TEST_F(KeysTest, StayWithTheContainerWhereTheFocusIsItsOwn)
{
    start();
    const HWND edit = CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 0, 0, 50, 20,
                                      plugin->container.frame(), nullptr, nullptr, nullptr);
    const Control combo(goTo());
    const auto choosePane = [&](WPARAM entry) {
        combo.send(CB_SETCURSEL, entry);
        SendMessageA(plugin->pane(paneId::kMain), WM_COMMAND,
                     MAKEWPARAM(controlId::kViewCombo, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo.handle()));
    };
    const std::function<void()> actions[] = {
        [&] { chooseRows({"Album 2"}); },
        [&] { command(albumCommand::kFavourite); },
        [&] { command(albumCommand::kTakeBack); },
        [&] { command(albumCommand::kPlay); },
        [&] { plugin->command(commandId::kViewTiles); },
        [&] { choosePane(0); },
        [&] { SendMessageA(plugin->pane(paneId::kOverview), WM_COMMAND, albumCommand::kPlay, 0); },
        [&] { choosePane(2); },
        [&] { choosePane(1); },
        [&] { EXPECT_TRUE(plugin->open(path)); },
        [&] { EXPECT_TRUE(plugin->create()); },
    };
    std::string typed;
    for (std::size_t i = 0; i < std::size(actions); ++i) {
        SetFocus(edit);
        actions[i]();
        settle();
        EXPECT_FALSE(IsChild(plugin->window(), GetFocus())) << i;
        press({VK_CONTROL, '7'});
        EXPECT_EQ(eaten(), Eaten{"Ctrl+7"}) << i;
        const bool dialogWasOpen = GetFocus() != edit; // which leaves the focus to the frame
        EXPECT_EQ(dialogWasOpen, i >= std::size(actions) - 2) << i;
        press({'X'});
        typed += dialogWasOpen ? "" : "x";
        EXPECT_EQ(windowText(edit), typed) << i;
    }
}

TEST_F(KeysTest, TabWalksThroughThePlugInAndLeavesAtItsEnds)
{
    start();
    for (const int id : {paneId::kOverview, paneId::kAlbumDetails, paneId::kLog}) {
        showPane(id);
        plugin->container.tabsOffered = 0;
        const auto walk = [&](bool back) {
            std::vector<HWND> visited;
            const int offered = plugin->container.tabsOffered;
            while (plugin->container.tabsOffered == offered && visited.size() < 30) {
                visited.push_back(GetFocus());
                if (back)
                    press({VK_SHIFT, VK_TAB});
                else
                    press({VK_TAB});
            }
            return visited;
        };
        SetFocus(plugin->window());
        walk(true); // to the first
        const std::vector<HWND> forward = walk(false);
        std::vector<HWND> back = walk(true);
        std::ranges::reverse(back);
        EXPECT_EQ(forward, back) << id;
        EXPECT_EQ(plugin->container.tabsOffered, 3) << id;
        EXPECT_EQ(std::set(forward.begin(), forward.end()).size(), forward.size()) << id;
        EXPECT_GE(forward.size(), id == paneId::kLog ? 3u : 6u) << id;
        for (const HWND window : forward)
            EXPECT_TRUE(IsChild(plugin->window(), window));
    }
    EXPECT_EQ(eaten(), Eaten{});
}

// The system's own container; a dialog loop outside of it takes Tab, arrows, Enter and Escape
// unless the control wants them.
TEST(Keys, GoToTheFocusedControlInTheSystemsContainer)
{
    forgetSettings();
    const ModuleHandle atl(LoadLibraryA("atl.dll"));
    ASSERT_TRUE(atl);
    using InitHosting = BOOL(WINAPI*)();
    using CreateControl =
        HRESULT(WINAPI*)(LPCOLESTR, HWND, IStream*, IUnknown**, IUnknown**, REFIID, IUnknown*);
    const auto find = [&](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(atl.get(), name));
    };
    ASSERT_TRUE(reinterpret_cast<InitHosting>(find("AtlAxWinInit"))());

    const PluginModule module;
    ASSERT_EQ(module.call("DllRegisterServer"), S_OK);
    const HWND frame = CreateWindowExA(0, "AtlAxWin", "", WS_POPUP | WS_CLIPCHILDREN, 50, 50, 500, 400,
                                       nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(frame);
    ShowWindow(frame, SW_SHOWNOACTIVATE);
    {
        const auto script = smallLibrary();
        const ComPtr<IDispatch> host = makeFakeHost(script);
        ComPtr<IUnknown> container;
        ComPtr<IUnknown> unknown;
        ASSERT_EQ(
            reinterpret_cast<CreateControl>(find("AtlAxCreateControlEx"))(
                L"Tessera2.Interface", frame, nullptr, container.put(), unknown.put(), IID_NULL, nullptr),
            S_OK);
        const ComPtr<IDispatch> control = unknown.query<IDispatch>();
        init(control, host.get());
        const HWND window = GetWindow(frame, GW_CHILD);
        const HWND list = GetDlgItem(GetDlgItem(window, paneId::kLog), controlId::kLogList);
        ASSERT_TRUE(list);
        RECT place{};
        GetClientRect(window, &place);
        EXPECT_EQ(place.right, 500);
        EXPECT_EQ(place.bottom, 400);
        MoveWindow(frame, 50, 50, 600, 300, TRUE);
        pumpWaiting();
        GetClientRect(window, &place);
        EXPECT_EQ(place.right, 600);

        SetForegroundWindow(frame);
        SetFocus(window);
        EXPECT_EQ(GetFocus(), list);
        KeyListener listener;
        listener.attach(list);
        postKeys(list);
        const auto active = control.query<IOleInPlaceActiveObject>();
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
            const bool taken = isKey && active->TranslateAccelerator(&message) == S_OK;
            if (!taken && !IsDialogMessageA(frame, &message)) {
                TranslateMessage(&message);
                DispatchMessageA(&message);
            }
        }
        EXPECT_EQ(listener.keys, kKeys);
        terminate(control);
    }
    DestroyWindow(frame);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_TRUE(module.canUnload());
    EXPECT_EQ(module.call("DllUnregisterServer"), S_OK);
}

} // namespace
} // namespace tessera
