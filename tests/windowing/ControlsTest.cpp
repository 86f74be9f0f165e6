#include "windowing/Controls.h"
#include "windowing/Drawing.h"
#include "windowing/Menu.h"
#include "windowing/MessageLoop.h"
#include "windowing/Window.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

constexpr RECT kPlace{0, 0, 400, 300};

// The parent of the controls; answers for a virtual list.
class Parent : public Mapped<Parent> {
public:
    static std::span<const MapEntry<Parent>> messageMap()
    {
        static constexpr MapEntry<Parent> map[] = {
            {IdRange{0, 0xFFFF}, LVN_GETDISPINFOA, &Parent::onDisplay}};
        return map;
    }

private:
    Handled onDisplay(NMHDR& header)
    {
        LVITEMA& item = notificationAs<NMLVDISPINFOA>(header).item;
        if (item.mask & LVIF_TEXT) {
            m_text =
                std::string(static_cast<std::size_t>(item.iSubItem) * 1000, 'x') + std::to_string(item.iItem);
            lstrcpynA(item.pszText, m_text.c_str(), item.cchTextMax);
        }
        return 0;
    }
    std::string m_text;
};

class Controls : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(parent.create(nullptr, 0, kPlace, {WS_POPUP, 0})); }
    Parent parent;
};

} // namespace

TEST_F(Controls, ListViewKeepsRowsColumnsAndLongTexts)
{
    ListView list;
    ASSERT_TRUE(list.create(parent.handle(), 1, kPlace));
    EXPECT_EQ(list.addColumn("Time", 100), 0);
    EXPECT_EQ(list.addColumn("Progress", 75), 1);
    EXPECT_EQ(list.columnCount(), 2);
    EXPECT_EQ(list.columnWidth(1), 75);
    for (const std::size_t length : {0u, 10u, 511u, 512u, 1023u, 5000u}) {
        const std::string text(length, 'y');
        const int row = list.addRow({"first", text});
        EXPECT_EQ(list.text(row, 1), text);
    }
    EXPECT_EQ(list.text(0, 0), "first");
    EXPECT_EQ(list.text(99, 0), "");
    EXPECT_EQ(list.count(), 6);
    list.select(1);
    list.select(4);
    EXPECT_EQ(list.selection(), (std::vector<int>{1, 4}));
    list.clear();
    EXPECT_EQ(list.count(), 0);
}

TEST_F(Controls, VirtualListAsksItsParentAndSelectsAll)
{
    ListView list;
    ASSERT_TRUE(list.create(parent.handle(), 1, kPlace, ListView::kReport | LVS_OWNERDATA));
    for (int i = 0; i < 3; ++i) {
        list.addColumn("Column", 100);
    }
    list.setVirtualCount(5000);
    EXPECT_EQ(list.count(), 5000);
    EXPECT_EQ(list.text(4321, 0), "4321");
    EXPECT_EQ(list.text(7, 2), std::string(2000, 'x') + "7");
    list.select(-1);
    EXPECT_EQ(list.selection().size(), 5000u);
}

TEST_F(Controls, TreesListBoxesCombosAndHeadersAnswerWhatTheyWereGiven)
{
    TreeView tree;
    ASSERT_TRUE(tree.create(parent.handle(), 1, kPlace));
    const HTREEITEM root = tree.add(TVI_ROOT, "Root", -1, 5);
    const HTREEITEM leaf = tree.add(root, "Leaf");
    EXPECT_EQ(tree.text(leaf), "Leaf");
    EXPECT_EQ(tree.data(root), 5);
    EXPECT_EQ(tree.parent(leaf), root);
    tree.select(leaf);
    EXPECT_EQ(tree.selection(), leaf);
    tree.remove(root);
    EXPECT_EQ(tree.count(), 0);

    ListBox box;
    ASSERT_TRUE(box.create(parent.handle(), 2, kPlace));
    box.add("b");
    box.insert(0, "");
    box.select(1);
    box.setItemText(1, "changed");
    EXPECT_EQ(box.selection(), 1);
    EXPECT_EQ(box.itemText(1), "changed");
    EXPECT_EQ(box.itemText(0), "");
    EXPECT_EQ(box.itemText(9), "");

    ComboBoxEx combo;
    ASSERT_TRUE(combo.create(parent.handle(), 3, kPlace));
    EXPECT_EQ(combo.selection(), -1);
    EXPECT_EQ(combo.add("75x75", -1, 75), 0);
    EXPECT_EQ(combo.add("100x100", -1, 100), 1);
    combo.select(1);
    EXPECT_EQ(combo.selection(), 1);
    EXPECT_EQ(combo.itemText(0), "75x75");
    EXPECT_EQ(combo.data(1), 100);

    Header header;
    ASSERT_TRUE(header.create(parent.handle(), 4, kPlace));
    EXPECT_EQ(header.add("Directories:", 200), 0);
    EXPECT_EQ(header.itemText(0), "Directories:");
}

TEST_F(Controls, ToolBarInAReBar)
{
    const ToolBarButton buttons[] = {{57600}, {0}, {57601, 0, BTNS_CHECK}, {57602, 0, BTNS_BUTTON, 0}};
    ReBar rebar;
    ASSERT_TRUE(rebar.create(parent.handle(), 1, {0, 0, 400, 32}));
    ToolBar bar;
    ASSERT_TRUE(bar.create(rebar.handle(), 2, buttons, nullptr));
    ASSERT_TRUE(rebar.addBand(
        {.child = bar.handle(), .title = "Go To", .width = 200, .minimumWidth = 100, .height = 22}));
    EXPECT_EQ(rebar.bandCount(), 1);
    EXPECT_GT(rebar.height(), 20);
    EXPECT_EQ(bar.buttonCount(), 4);
    EXPECT_TRUE(bar.buttonEnabled(57600));
    EXPECT_FALSE(bar.buttonEnabled(57602));
    bar.enableButton(57602, true);
    EXPECT_TRUE(bar.buttonEnabled(57602));
    bar.checkButton(57601, true);
    EXPECT_TRUE(bar.buttonChecked(57601));
}

TEST(Menu, BuildsChecksAndHandsSubMenusOver)
{
    Menu menu = Menu::popup();
    ASSERT_TRUE(menu);
    Menu sub = Menu::popup();
    sub.add(10, "Ten").add(11, "Eleven");
    menu.add(1, "One").addSeparator().addSubMenu(std::move(sub), "More").add(2, "Two", MF_GRAYED);
    EXPECT_EQ(menu.count(), 4);
    menu.check(1, true);
    menu.enable(2, true);
    menu.checkRadio({10, 11}, 11);
    EXPECT_EQ(GetMenuState(menu.get(), 1, MF_BYCOMMAND) & MF_CHECKED, static_cast<UINT>(MF_CHECKED));
    EXPECT_EQ(GetMenuState(menu.get(), 2, MF_BYCOMMAND) & MF_GRAYED, 0u);
    EXPECT_EQ(GetMenuState(menu.get(), 11, MF_BYCOMMAND) & MF_CHECKED, static_cast<UINT>(MF_CHECKED));
    EXPECT_EQ(menu.itemText(11), "Eleven");
}

TEST_F(Controls, RedrawOffLeavesHiddenWindowsHidden)
{
    {
        const RedrawOff hidden(parent.handle());
    }
    EXPECT_FALSE(GetWindowLongA(parent.handle(), GWL_STYLE) & WS_VISIBLE);
    ShowWindow(parent.handle(), SW_SHOWNA);
    pumpWaiting();
    {
        const RedrawOff shown(parent.handle());
        InvalidateRect(parent.handle(), nullptr, TRUE);
        EXPECT_FALSE(GetUpdateRect(parent.handle(), nullptr, FALSE));
    }
    EXPECT_TRUE(GetWindowLongA(parent.handle(), GWL_STYLE) & WS_VISIBLE);
    EXPECT_TRUE(GetUpdateRect(parent.handle(), nullptr, FALSE));
}

TEST(Drawing, ScopesRestoreAndTheBufferArrives)
{
    const MemoryDc target;
    const BitmapHandle bitmap(CreateBitmap(40, 20, 1, 32, nullptr));
    const SelectScope selected(target.dc(), bitmap.get());
    fillRect(target.dc(), {0, 0, 40, 20}, RGB(255, 255, 255));
    {
        const DcScope state(target.dc());
        SetTextColor(target.dc(), RGB(1, 2, 3));
        const DoubleBuffer buffer(target.dc(), {10, 5, 30, 15});
        fillRect(buffer.dc(), {10, 5, 30, 15}, RGB(10, 20, 30));
        EXPECT_EQ(GetPixel(target.dc(), 15, 10), RGB(255, 255, 255)); // not yet
    }
    EXPECT_EQ(GetTextColor(target.dc()), RGB(0, 0, 0));
    EXPECT_EQ(GetPixel(target.dc(), 10, 5), RGB(10, 20, 30));
    EXPECT_EQ(GetPixel(target.dc(), 29, 14), RGB(10, 20, 30));
    EXPECT_EQ(GetPixel(target.dc(), 9, 5), RGB(255, 255, 255));
    EXPECT_EQ(GetPixel(target.dc(), 30, 14), RGB(255, 255, 255));
}

TEST(MessageLoop, PumpsUntilTheConditionOrTheTime)
{
    EXPECT_FALSE(pumpUntil([] { return false; }, 30));
    const DWORD start = GetTickCount();
    EXPECT_TRUE(pumpUntil([start] { return GetTickCount() - start > 20; }, 5000));
}
