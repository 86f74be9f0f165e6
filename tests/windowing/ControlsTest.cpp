#include "windowing/Controls.h"
#include "windowing/Drawing.h"
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
