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

} // namespace
} // namespace tessera
