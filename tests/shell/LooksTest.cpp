// How the running plug-in looks: the host's skin, the system's colours, drop-down lists.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "ui/ids.h"
#include "windowing/Controls.h"
#include "windowing/Drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace tessera {
namespace {

std::string classOf(HWND window)
{
    std::array<char, 64> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

BOOL CALLBACK addWindow(HWND window, LPARAM list) noexcept
{
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

std::vector<HWND> descendants(HWND window)
{
    std::vector<HWND> found;
    EnumChildWindows(window, addWindow, reinterpret_cast<LPARAM>(&found));
    return found;
}

// Colours of the system that are others for a while.
class SystemColours {
public:
    explicit SystemColours(COLORREF window, COLORREF text)
    {
        const std::array<COLORREF, 2> colours{window, text};
        SetSysColors(2, kElements.data(), colours.data());
    }
    ~SystemColours() { SetSysColors(2, kElements.data(), m_before.data()); }
    SystemColours(const SystemColours&) = delete;
    SystemColours& operator=(const SystemColours&) = delete;

private:
    static constexpr std::array<INT, 2> kElements{COLOR_WINDOW, COLOR_WINDOWTEXT};
    std::array<COLORREF, 2> m_before{GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT)};
};

class LooksTest : public testing::Test {
protected:
    LooksTest() : folder("shell-looks")
    {
        forgetSettings();
        DatabaseSettings database;
        database.lastUsed = folder.file("music.ts2");
        database.loadLastAtStartup = false;
        store(database);
    }

    TemporaryFolder folder;
};

// Not the panes, and not what the system's controls are made of.
bool isChildControl(HWND window, HWND control)
{
    static const std::vector<std::string> kMadeOfParts{"ComboBoxEx32", "ComboBox", "SysListView32"};
    const HWND parent = GetParent(window);
    return parent != control && std::ranges::find(kMadeOfParts, classOf(parent)) == kMadeOfParts.end();
}

// The host keeps what it needs in the user data of the windows that it skins.
TEST_F(LooksTest, EveryChildControlIsOfferedToTheSkinOnceAndMayBeTaken)
{
    const auto script = smallLibrary();
    script->skinned = 1;
    std::map<HWND, int> offered;
    script->onSkin = [&](HWND window) {
        ++offered[window];
        SetWindowLongPtrA(window, GWLP_USERDATA, 1);
    };
    RunningPlugin plugin(script);
    plugin.start();
    ASSERT_TRUE(plugin.create());
    plugin.container.pumpFor(100);
    std::size_t controls = 0;
    for (const HWND window : descendants(plugin.window())) {
        if (!isChildControl(window, plugin.window()))
            continue;
        ++controls;
        EXPECT_EQ(offered[window], 1) << classOf(window) << " " << GetDlgCtrlID(window);
        EXPECT_EQ(GetWindowLongPtrA(window, GWLP_USERDATA), 1) << classOf(window);
    }
    EXPECT_GE(controls, 30U);
    EXPECT_EQ(offered.size(), controls);
    plugin.stop();
    EXPECT_TRUE(plugin.boxes.texts.empty());
}

HANDLE themeOf(HWND window)
{
    const HMODULE library = GetModuleHandleA("uxtheme.dll");
    using GetTheme = HANDLE(WINAPI*)(HWND);
    const auto theme =
        library
            ? reinterpret_cast<GetTheme>(reinterpret_cast<void*>(GetProcAddress(library, "GetWindowTheme")))
            : nullptr;
    return theme ? theme(window) : nullptr;
}

// A check box with a visual style writes in the style's colour on Windows.
TEST_F(LooksTest, CheckBoxesCanBeReadUnderADarkSkin)
{
    GeneralSettings general;
    general.lastPane = paneId::kOverview;
    store(general);
    const auto script = smallLibrary();
    script->skinned = 1;
    const COLORREF face = RGB(0x20, 0x28, 0x30);
    script->colours["Frame/Face3DColor"] = static_cast<std::int32_t>(face);
    RunningPlugin plugin(script);
    plugin.start();
    ASSERT_TRUE(plugin.create());
    ASSERT_EQ(plugin.shownPane(), paneId::kOverview);
    for (const int id : {controlId::kSearchArtist, controlId::kSearchAlbum, controlId::kSearchGenre}) {
        const Control box(GetDlgItem(plugin.pane(paneId::kOverview), id));
        RedrawWindow(box.handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
        const RECT area = box.clientRect();
        const WindowDc dc(box.handle());
        EXPECT_EQ(GetPixel(dc.dc(), area.right - 1, 0), face);
        int light = 0;
        for (LONG x = area.bottom; x < area.right; ++x) { // the text, beside the square
            for (LONG y = 0; y < area.bottom; ++y)
                light += GetGValue(GetPixel(dc.dc(), static_cast<int>(x), static_cast<int>(y))) > 180 ? 1 : 0;
        }
        EXPECT_GT(light, 20) << box.text();
        EXPECT_EQ(themeOf(box.handle()), nullptr);
    }
    // What shows through a control that asks its parent.
    const Control pane(plugin.pane(paneId::kOverview));
    const WindowDc screen(pane.handle());
    const DoubleBuffer printed(screen.dc(), pane.clientRect());
    pane.send(WM_ERASEBKGND, reinterpret_cast<WPARAM>(printed.dc()));
    pane.send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(printed.dc()), PRF_CLIENT);
    const RECT place = Control(GetDlgItem(pane.handle(), controlId::kSearchArtist)).rect();
    EXPECT_EQ(GetPixel(printed.dc(), place.left, place.top), face);
    plugin.stop();
    script->skinned = 0;
    plugin.start();
    EXPECT_NE(themeOf(GetDlgItem(plugin.pane(paneId::kOverview), controlId::kSearchArtist)), nullptr);
}

TEST_F(LooksTest, EveryDropDownListShowsItsItems)
{
    RunningPlugin plugin;
    plugin.start();
    ASSERT_TRUE(plugin.create());
    const ComboBoxEx panes(
        GetDlgItem(GetDlgItem(plugin.pane(paneId::kMain), controlId::kMainRebar), controlId::kViewCombo));
    panes.select(1);
    SendMessageA(plugin.pane(paneId::kMain), WM_COMMAND, MAKEWPARAM(controlId::kViewCombo, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(panes.handle()));
    ASSERT_EQ(plugin.shownPane(), paneId::kAlbumDetails);
    int opened = 0;
    for (const HWND window : descendants(plugin.window())) {
        if (classOf(window) != "ComboBoxEx32")
            continue;
        ++opened;
        const ComboBoxEx combo(window);
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        ASSERT_TRUE(GetComboBoxInfo(combo.combo(), &info));
        SendMessageA(combo.combo(), CB_SHOWDROPDOWN, TRUE, 0);
        EXPECT_TRUE(IsWindowVisible(info.hwndList)) << combo.itemText(0);
        EXPECT_FALSE(GetWindowLongA(info.hwndList, GWL_STYLE) & WS_VSCROLL) << combo.itemText(0);
        const auto row = static_cast<int>(SendMessageA(combo.combo(), CB_GETITEMHEIGHT, 0, 0));
        EXPECT_GE(Control(info.hwndList).clientRect().bottom, row * combo.count()) << combo.itemText(0);
        SendMessageA(combo.combo(), CB_SHOWDROPDOWN, FALSE, 0);
    }
    EXPECT_EQ(opened, 5);
}

// High contrast goes on and off, or a theme comes, without a word to a window inside the host's.
TEST_F(LooksTest, ColoursFollowTheSystemsWhileThePlugInRuns)
{
    RunningPlugin plugin;
    plugin.start();
    ASSERT_TRUE(plugin.create());
    const auto passes = [&] {
        return std::ranges::count(plugin.log(), "Beginning background loading of images");
    };
    ASSERT_TRUE(plugin.container.pump([&] { return passes() == 1 && plugin.log().back() == "Finished"; }));
    std::vector<ListView> lists;
    std::vector<TreeView> trees;
    for (const HWND window : descendants(plugin.window())) {
        if (classOf(window) == "SysListView32")
            lists.emplace_back(window);
        else if (classOf(window) == "SysTreeView32")
            trees.emplace_back(window);
    }
    ASSERT_EQ(lists.size(), 7U);
    ASSERT_EQ(trees.size(), 4U);
    const auto shows = [&](COLORREF background, COLORREF text) {
        const auto has = [](const Control& control, UINT question, COLORREF colour) {
            return static_cast<COLORREF>(control.send(question)) == colour;
        };
        return std::ranges::all_of(lists,
                                   [&](const ListView& list) {
                                       return has(list, LVM_GETBKCOLOR, background) &&
                                              has(list, LVM_GETTEXTCOLOR, text);
                                   }) &&
               std::ranges::all_of(trees, [&](const TreeView& tree) {
                   return has(tree, TVM_GETBKCOLOR, background) && has(tree, TVM_GETTEXTCOLOR, text);
               });
    };
    const COLORREF background = GetSysColor(COLOR_WINDOW);
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    ASSERT_TRUE(shows(background, text));
    {
        const SystemColours dark(RGB(16, 0, 48), RGB(255, 255, 0));
        EXPECT_TRUE(plugin.container.pump([&] { return shows(RGB(16, 0, 48), RGB(255, 255, 0)); }, 3000));
        EXPECT_TRUE(plugin.container.pump([&] { return passes() == 2; }, 3000)) << "covers anew";
        plugin.container.pumpFor(700);
        EXPECT_EQ(passes(), 2) << "once";
    }
    EXPECT_TRUE(plugin.container.pump([&] { return shows(background, text); }, 3000));
}

} // namespace
} // namespace tessera
