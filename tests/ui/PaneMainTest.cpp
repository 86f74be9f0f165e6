#include "ui/PaneMain.h"
#include "FakeCommands.h"
#include "ui/ids.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tessera {
namespace {

class PaneMainTest : public testing::Test {
protected:
    PaneMainTest()
    {
        initCommonControls();
        m_commands.icons = ImageList_Create(16, 16, ILC_COLOR32, 25, 0);
        ImageList_SetImageCount(m_commands.icons, 25);
        m_hParent = makeParentWindow(800, 600);
        m_commands.owner = m_hParent;
        m_commands.artworkSettings.imageSizeIndex = 3;
        m_pane.createPane(m_hParent);
        MoveWindow(m_pane.window(), 0, 0, 800, 32, TRUE);
    }
    ~PaneMainTest() override
    {
        m_pane.destroy();
        DestroyWindow(m_hParent);
        ImageList_Destroy(m_commands.icons);
    }

    HWND rebar() const { return GetDlgItem(m_pane.window(), controlId::kMainRebar); }
    ToolBar toolbar() const { return ToolBar(GetDlgItem(rebar(), controlId::kMainToolbar)); }
    ComboBoxEx viewCombo() const { return ComboBoxEx(GetDlgItem(rebar(), controlId::kViewCombo)); }
    ComboBoxEx sizeCombo() const { return ComboBoxEx(GetDlgItem(rebar(), controlId::kImageSizeCombo)); }

    void press(UINT id) { SendMessageA(m_pane.window(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
    void choose(const ComboBoxEx& combo, UINT id, int index)
    {
        combo.select(index);
        SendMessageA(m_pane.window(), WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo.handle()));
    }

    FakeCommands m_commands;
    HWND m_hParent = nullptr;
    PaneMain m_pane{m_commands};
};

TEST_F(PaneMainTest, BandsFitIntoTheStripAndShowTheirChildrenWhole)
{
    for (const int width : {440, 560, 800, 1200, 1920}) {
        MoveWindow(m_pane.window(), 0, 0, width, 32, TRUE);
        RECT strip{};
        GetWindowRect(m_pane.window(), &strip);
        const RECT last = toolbar().buttonRect(commandId::kAbout);
        RECT tools{};
        GetWindowRect(toolbar().handle(), &tools);
        EXPECT_TRUE(width < 560 || last.right <= tools.right - tools.left) << width;
        LONG right = tools.right;
        for (const HWND combo : {sizeCombo().handle(), viewCombo().handle()}) {
            RECT place{};
            GetWindowRect(combo, &place);
            EXPECT_GT(place.left, right) << width;
            EXPECT_LE(place.right, strip.right) << width;
            EXPECT_LE(place.right - place.left, 160) << width;
            EXPECT_GE(place.right - place.left, width >= 700 ? 100 : 64) << width;
            EXPECT_GE(place.top, strip.top) << width;
            EXPECT_LE(place.bottom, strip.bottom) << width;
            right = place.right;
        }
    }
    char label[64] = "";
    REBARBANDINFOA band{};
    band.cbSize = REBARBANDINFOA_V3_SIZE;
    band.fMask = RBBIM_TEXT;
    band.lpText = label;
    band.cch = sizeof(label);
    SendMessageA(rebar(), RB_GETBANDINFOA, 1, reinterpret_cast<LPARAM>(&band));
    EXPECT_STREQ(label, "Icon Image Size");
    SendMessageA(rebar(), RB_GETBANDINFOA, 2, reinterpret_cast<LPARAM>(&band));
    EXPECT_STREQ(label, "Go To");
}

TEST_F(PaneMainTest, CommandsReachTheController)
{
    for (const UINT id : {57600, 57601, 57602, 57604, 57605, 57603})
        press(id);
    choose(viewCombo(), controlId::kViewCombo, 0);
    choose(sizeCombo(), controlId::kImageSizeCombo, 6);
    // What a combo says besides is no choice.
    for (const UINT code : {CBN_SETFOCUS, CBN_DROPDOWN, CBN_SELENDCANCEL, CBN_CLOSEUP})
        SendMessageA(m_pane.window(), WM_COMMAND, MAKEWPARAM(controlId::kViewCombo, code), 0);
    press(commandId::kReserved);
    EXPECT_EQ(m_commands.calls, (std::vector<std::string>{"new", "open", "view 0", "view 3", "view 1",
                                                          "export", "pane 1000", "size 6"}));
}

TEST_F(PaneMainTest, NothingIsDoneWhileBusy)
{
    m_commands.pane = paneId::kLog;
    m_commands.busy = true;
    m_pane.refreshCommands();
    EXPECT_FALSE(toolbar().buttonEnabled(57600));
    for (UINT id = 57600; id <= 57606; ++id)
        press(id);
    choose(viewCombo(), controlId::kViewCombo, 0);
    choose(sizeCombo(), controlId::kImageSizeCombo, 0);
    SendMessageA(m_pane.window(), WM_TIMER, 1, 0);
    EXPECT_EQ(m_commands.calls, std::vector<std::string>{"pane 1000"}) << "for the end of the job";
    EXPECT_TRUE(m_commands.cursorMoved.empty());
    EXPECT_EQ(m_commands.libraryLooks, 0);
    EXPECT_EQ(viewCombo().selection(), 0);
    EXPECT_EQ(sizeCombo().selection(), 3);

    m_commands.busy = false;
    SendMessageA(m_pane.window(), WM_TIMER, 1, 0);
    EXPECT_TRUE(toolbar().buttonEnabled(57600));
    EXPECT_FALSE(toolbar().buttonEnabled(57606));
}

TEST_F(PaneMainTest, ViewButtonsFollowTheCurrentPane)
{
    const auto checked = [this] {
        std::string on;
        for (const UINT id : {57602, 57604, 57605})
            on += toolbar().buttonChecked(id) ? '1' : '0';
        return on;
    };
    EXPECT_EQ(checked(), "000") << "the log has one view only";
    m_commands.pane = paneId::kOverview;
    m_pane.refreshCommands();
    EXPECT_EQ(checked(), "010");
    press(57605);
    EXPECT_EQ(checked(), "001");
    m_commands.albumDetailsSettings.listviewStyle = 0;
    m_commands.pane = paneId::kAlbumDetails;
    m_pane.refreshCommands();
    EXPECT_EQ(checked(), "100");
    m_pane.showCurrentPane(paneId::kAlbumDetails);
    EXPECT_EQ(viewCombo().selection(), 1);
    EXPECT_TRUE(std::none_of(m_commands.calls.begin(), m_commands.calls.end(),
                             [](const std::string& call) { return call.starts_with("pane"); }));
}

TEST_F(PaneMainTest, TimerTellsWhetherThePointerMoved)
{
    SetCursorPos(100, 100);
    SendMessageA(m_pane.window(), WM_TIMER, 1, 0);
    SendMessageA(m_pane.window(), WM_TIMER, 1, 0);
    SetCursorPos(101, 100);
    SendMessageA(m_pane.window(), WM_TIMER, 1, 0);
    SendMessageA(m_pane.window(), WM_TIMER, 2, 0); // somebody else's
    EXPECT_EQ(m_commands.cursorMoved, (std::vector<bool>{true, false, true}));

    m_commands.cursorMoved.clear();
    pumpMessages(900);
    EXPECT_GE(m_commands.cursorMoved.size(), 2u);
    EXPECT_LE(m_commands.cursorMoved.size(), 3u);
}

TEST_F(PaneMainTest, EndLeavesTheImagesToTheirOwner)
{
    const HWND window = m_pane.window();
    m_pane.destroy();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(ImageList_GetImageCount(m_commands.icons), 25);
    m_commands.cursorMoved.clear();
    pumpMessages(400);
    EXPECT_TRUE(m_commands.cursorMoved.empty());
}

} // namespace
} // namespace tessera
