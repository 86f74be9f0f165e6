#include "ui/ListBoxEx.h"

#include "FakeCommands.h"
#include "ui/ListBoxExBuddy.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <functional>
#include <gtest/gtest.h>

namespace tessera {

namespace {

using Rows = std::vector<std::string>;

// The list's parent; remembers what the list tells it.
class Owner : public Subclass {
public:
    Handled route(const Message& message) override
    {
        if (message.id == endEditMessage()) {
            edits.emplace_back(static_cast<int>(message.wParam),
                               reinterpret_cast<const char*>(message.lParam));
        } else if (message.id == browseMessage()) {
            browsedRow = static_cast<int>(message.wParam);
            if (onBrowse) {
                onBrowse();
            }
        } else if (message.id == WM_COMMAND && HIWORD(message.wParam) == LBN_SELCHANGE) {
            ++selections;
        }
        return kDefault;
    }

    std::vector<std::pair<int, std::string>> edits;
    int browsedRow = -1;
    int selections = 0;
    std::function<void()> onBrowse;
};

class PickyList : public CListBoxEx {
public:
    bool allowEdit = true;
    bool keepText = true;
    int cancelledEdits = 0;
    int cancelledDrags = 0;

protected:
    bool canEdit(int) override { return allowEdit; }
    bool endOfEdit(int row, bool cancelled) override
    {
        cancelledEdits += cancelled ? 1 : 0;
        return CListBoxEx::endOfEdit(row, cancelled) && keepText;
    }
    void dragCancelled(POINT) override { ++cancelledDrags; }
};

class ListBoxExTest : public testing::Test {
protected:
    static constexpr int kId = 77;

    explicit ListBoxExTest(DWORD style = 0) : m_parent(makeParentWindow(320, 200))
    {
        owner.attach(m_parent);
        other = CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE, 10, 170, 100, 20, m_parent, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
        list.create(m_parent, kId, {10, 40, 250, 160}, WS_VISIBLE | style);
        list.setRows({"one", "two", "three"});
        for (int row = 0; row < 3; ++row) {
            SendMessageA(list.handle(), LB_SETITEMDATA, row, 100 + row);
        }
        ShowWindow(m_parent, SW_SHOWNOACTIVATE);
        SetForegroundWindow(m_parent);
        SetFocus(list.handle());
        pumpMessages(1);
    }
    ~ListBoxExTest() override { DestroyWindow(m_parent); }

    static void press(HWND window, WPARAM key)
    {
        PostMessageA(window, WM_KEYDOWN, key, 1);
        PostMessageA(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
        pumpMessages(1);
    }
    void press(WPARAM key) const { press(list.handle(), key); }
    void pressWithAlt(WPARAM key) const
    {
        PostMessageA(list.handle(), WM_SYSKEYDOWN, key, 1 | (1 << 29));
        pumpMessages(1);
    }
    HWND edit() const { return FindWindowExA(list.handle(), nullptr, "Edit", nullptr); }
    HWND button() const { return FindWindowExA(list.handle(), nullptr, "Button", nullptr); }
    void type(const std::string& text) const { SetWindowTextA(edit(), text.c_str()); }
    Rows data() const
    {
        Rows all;
        for (int row = 0; row < list.count(); ++row) {
            all.push_back(std::to_string(SendMessageA(list.handle(), LB_GETITEMDATA, row, 0)));
        }
        return all;
    }

    POINT pointInRow(int row) const
    {
        RECT rect{};
        SendMessageA(list.handle(), LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
        POINT point{rect.left + 20, (rect.top + rect.bottom) / 2};
        ClientToScreen(list.handle(), &point);
        return point;
    }
    // The mouse over the list; what the list answered to the system's question about the drag.
    LRESULT drag(UINT mouse, POINT point)
    {
        if (!m_answers.handle()) {
            m_answers.attach(m_parent);
        }
        m_answers.last = 0;
        SetCursorPos(point.x, point.y); // which the system looks at, too
        ScreenToClient(list.handle(), &point);
        SendMessageA(list.handle(), mouse, MK_LBUTTON, MAKELPARAM(point.x, point.y));
        return m_answers.last;
    }

    // Hears the question before the list and its answer.
    class Answers : public Subclass {
    public:
        Handled route(const Message& message) override
        {
            static const UINT question = RegisterWindowMessageA("commctrl_DragListMsg");
            if (message.id != question) {
                return kDefault;
            }
            last = defaultProcessing(message);
            return last;
        }
        LRESULT last = 0;
    };

    HWND m_parent;
    Owner owner;
    Answers m_answers;
    HWND other = nullptr;
    PickyList list;
};

class BrowsingListTest : public ListBoxExTest {
protected:
    BrowsingListTest() : ListBoxExTest(CListBoxEx::kBrowseButton) {}
};

std::vector<COLORREF> pixels(HWND window)
{
    RECT client{};
    GetClientRect(window, &client);
    const WindowDc dc(window);
    std::vector<COLORREF> all;
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x) {
            all.push_back(GetPixel(dc.dc(), x, y));
        }
    }
    return all;
}

} // namespace

// Another program can register the same names and send what it likes.
TEST_F(ListBoxExTest, PointersOfOthersAreNotFollowed)
{
    list.enableEditing(true);
    list.enableDragging(true);
    list.beginEdit(1);
    const LPARAM nowhere = 0x10;
    for (const HWND window : {list.handle(), m_parent}) {
        for (const char* name : {"ipc_CtrlMsg", "commctrl_DragListMsg"}) {
            PostMessageA(window, RegisterWindowMessageA(name), kId, nowhere);
            SendMessageA(window, RegisterWindowMessageA(name), kId, nowhere);
        }
    }
    pumpMessages(1);
    EXPECT_EQ(list.editedRow(), 1);
    EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"}));
}

TEST_F(ListBoxExTest, InsertAppendsARowAndEscapeTakesItAway)
{
    for (const char* const typed : {"", "abc"}) {
        press(VK_INSERT);
        EXPECT_EQ(list.editedRow(), 3);
        EXPECT_EQ(GetFocus(), edit());
        for (const char* key = typed; *key; ++key)
            PostMessageA(edit(), WM_CHAR, static_cast<WPARAM>(*key), 1);
        press(edit(), VK_ESCAPE);
        EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"})) << typed;
        EXPECT_EQ(list.editedRow(), -1);
        EXPECT_EQ(GetFocus(), list.handle());
        EXPECT_EQ(list.currentRow(), 2);
    }
    EXPECT_TRUE(owner.edits.empty());
    EXPECT_EQ(list.cancelledEdits, 2);
}

TEST_F(ListBoxExTest, ARowOutOfViewIsEditedInView)
{
    Rows many;
    for (int row = 0; row < 30; ++row)
        many.push_back("row " + std::to_string(row));
    list.setRows(many);
    RECT client{};
    GetClientRect(list.handle(), &client);
    const auto openEdit = [&](int row, UINT scroll) {
        list.selectRow(row);
        SendMessageA(list.handle(), WM_VSCROLL, scroll, 0);
        press(VK_F2);
        EXPECT_EQ(list.editedRow(), row);
        EXPECT_EQ(windowText(edit()), "row " + std::to_string(row));
        RECT place{};
        RECT rect{};
        GetWindowRect(edit(), &place);
        MapWindowPoints(nullptr, list.handle(), reinterpret_cast<POINT*>(&place), 2);
        SendMessageA(list.handle(), LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
        EXPECT_GE(rect.top, 0) << row;
        EXPECT_LE(rect.bottom, client.bottom) << row;
        EXPECT_EQ(place.bottom, rect.bottom + 2) << row;
        press(edit(), VK_ESCAPE);
    };
    openEdit(20, SB_TOP);
    openEdit(3, SB_BOTTOM);
    openEdit(29, SB_TOP);
    const auto cut = static_cast<int>(client.bottom / SendMessageA(list.handle(), LB_GETITEMHEIGHT, 0, 0));
    openEdit(cut, SB_TOP); // of which only a part is in view, if anything
    EXPECT_EQ(list.rows(), many);
}

TEST_F(ListBoxExTest, ReturnAcceptsAndKeepsData)
{
    list.selectRow(1);
    press(VK_F2);
    EXPECT_EQ(windowText(edit()), "two");
    DWORD first = 1, last = 0;
    SendMessageA(edit(), EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&last));
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(last, 3u);
    type("second");
    press(edit(), VK_RETURN);
    EXPECT_EQ(list.rows(), (Rows{"one", "second", "three"}));
    EXPECT_EQ(data(), (Rows{"100", "101", "102"}));
    EXPECT_EQ(list.currentRow(), 1);
    ASSERT_EQ(owner.edits.size(), 1u);
    EXPECT_EQ(owner.edits[0], std::make_pair(1, std::string("second")));
}

TEST_F(ListBoxExTest, AClearedTextDeletesItsRow)
{
    for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
        list.selectRow(1);
        press(VK_F2);
        type("");
        press(edit(), key);
    }
    EXPECT_EQ(list.rows(), (Rows{"one"}));
    EXPECT_EQ(list.currentRow(), 0);
}

TEST_F(ListBoxExTest, ARefusedTextIsNotKept)
{
    list.keepText = false;
    list.beginEdit(0);
    type("other");
    press(edit(), VK_RETURN);
    EXPECT_EQ(list.rowText(0), "one");
    EXPECT_EQ(list.editedRow(), -1);
    press(VK_INSERT);
    type("new");
    press(edit(), VK_RETURN);
    EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"}));
}

TEST_F(ListBoxExTest, FocusElsewhereAcceptsAndStaysThere)
{
    list.beginEdit(2);
    type("third");
    SetFocus(other);
    EXPECT_EQ(list.rowText(2), "third");
    EXPECT_EQ(list.editedRow(), -1);
    EXPECT_EQ(GetFocus(), other);
    SetFocus(edit()); // as a dialog does that remembers the hidden edit
    EXPECT_EQ(GetFocus(), list.handle());
}

TEST_F(ListBoxExTest, OnlyOneEditAndOnlyWhereAllowed)
{
    list.beginEdit(0);
    list.beginEdit(1);
    EXPECT_EQ(list.editedRow(), 0);
    list.endEdit(true);

    list.selectRow(0);
    list.allowEdit = false;
    press(VK_F2);
    EXPECT_EQ(list.editedRow(), -1);
    list.allowEdit = true;
    list.enableEditing(false);
    press(VK_F2);
    press(VK_INSERT);
    EXPECT_EQ(list.editedRow(), -1);
    EXPECT_EQ(list.count(), 3);
}

TEST_F(ListBoxExTest, TheEditStandsOverItsRow)
{
    list.beginEdit(1);
    RECT row{}, place{};
    SendMessageA(list.handle(), LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&row));
    GetWindowRect(edit(), &place);
    MapWindowPoints(nullptr, list.handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.left, row.left + 5);
    EXPECT_EQ(place.right, row.right - 5);
    EXPECT_EQ(place.top, row.top - 2);
    EXPECT_EQ(place.bottom, row.bottom + 2);
    EXPECT_EQ(SendMessageA(edit(), EM_GETMARGINS, 0, 0), MAKELONG(1, 2));
    SendMessageA(list.handle(), WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_EQ(list.editedRow(), -1) << "the row moves, the edit would stay";
}

TEST_F(ListBoxExTest, DeleteTakesTheCurrentRow)
{
    press(VK_DELETE);
    EXPECT_EQ(list.count(), 3) << "there is no current row";
    list.selectRow(1);
    press(VK_DELETE);
    EXPECT_EQ(list.rows(), (Rows{"one", "three"}));
    EXPECT_EQ(list.currentRow(), 1);
    press(VK_DELETE);
    EXPECT_EQ(list.currentRow(), 0) << "the last row when none is left at the place";
    press(VK_DELETE);
    press(VK_DELETE);
    EXPECT_EQ(list.count(), 0);
    press(VK_F2);
    EXPECT_EQ(list.editedRow(), -1);
    EXPECT_GE(owner.selections, 3);
}

TEST_F(ListBoxExTest, AltMovesTheRowWithItsData)
{
    list.selectRow(0);
    pressWithAlt(VK_UP);
    EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"}));
    pressWithAlt(VK_DOWN);
    EXPECT_EQ(list.rows(), (Rows{"two", "one", "three"}));
    pressWithAlt(VK_RIGHT);
    EXPECT_EQ(list.rows(), (Rows{"two", "three", "one"}));
    EXPECT_EQ(data(), (Rows{"101", "102", "100"}));
    EXPECT_EQ(list.currentRow(), 2);
    pressWithAlt(VK_DOWN);
    EXPECT_EQ(list.rows(), (Rows{"two", "three", "one"}));
    pressWithAlt(VK_LEFT);
    EXPECT_EQ(list.rows(), (Rows{"two", "one", "three"}));
    EXPECT_EQ(list.currentRow(), 1);
}

TEST_F(ListBoxExTest, TakesAVeryLongText)
{
    const std::string longText(10000, 'x');
    list.beginEdit(1);
    SendMessageA(edit(), EM_SETSEL, 0, -1);
    SendMessageA(edit(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(longText.c_str()));
    press(edit(), VK_RETURN);
    EXPECT_EQ(list.rowText(1), longText);
    UpdateWindow(list.handle());
}

TEST_F(ListBoxExTest, ADropMovesTheRowBeforeTheTarget)
{
    struct {
        int from, target;
        Rows rows;
    } const cases[] = {
        {0, 2, {"two", "one", "three"}}, {2, 0, {"three", "one", "two"}}, {0, 3, {"two", "three", "one"}},
        {1, 1, {"one", "two", "three"}}, {1, 2, {"one", "two", "three"}}, {2, 3, {"one", "two", "three"}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(std::to_string(one.from) + " to " + std::to_string(one.target));
        list.setRows({"one", "two", "three"});
        list.selectRow(1); // the press on a row need not have selected it yet
        ASSERT_TRUE(drag(WM_LBUTTONDOWN, pointInRow(one.from)));
        EXPECT_EQ(list.count(), 4);
        EXPECT_EQ(list.rows().size(), 3u);
        EXPECT_EQ(drag(WM_MOUSEMOVE, pointInRow(one.target)), DL_MOVECURSOR);
        drag(WM_LBUTTONUP, pointInRow(one.target));
        EXPECT_EQ(list.count(), 3);
        EXPECT_EQ(list.rows(), one.rows);
        if (one.rows != Rows{"one", "two", "three"}) {
            EXPECT_EQ(list.rowText(list.currentRow()), (Rows{"one", "two", "three"})[one.from]);
        }
    }
}

TEST_F(ListBoxExTest, ADragThatEndsElsewhereChangesNothing)
{
    list.selectRow(0);
    ASSERT_TRUE(drag(WM_LBUTTONDOWN, pointInRow(0)));
    press(VK_DELETE);
    press(VK_INSERT);
    EXPECT_EQ(list.count(), 4) << "no editing during a drag";
    EXPECT_EQ(drag(WM_MOUSEMOVE, {1, 1}), DL_STOPCURSOR);
    drag(WM_LBUTTONUP, {1, 1});
    EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"}));
    EXPECT_EQ(list.count(), 3);

    ASSERT_TRUE(drag(WM_LBUTTONDOWN, pointInRow(0)));
    drag(WM_RBUTTONDOWN, pointInRow(2));
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.cancelledDrags, 1);
    EXPECT_EQ(data(), (Rows{"100", "101", "102"}));
}

TEST_F(ListBoxExTest, NoDragWhenForbiddenOrBesideTheRows)
{
    list.enableDragging(false);
    EXPECT_FALSE(drag(WM_LBUTTONDOWN, pointInRow(0)));
    list.enableDragging(true);
    list.selectRow(-1);
    EXPECT_FALSE(drag(WM_LBUTTONDOWN, {1, 1}));
    EXPECT_EQ(list.count(), 3);
}

TEST_F(ListBoxExTest, TheInsertionMarkErasesItself)
{
    list.selectRow(0);
    UpdateWindow(list.handle());
    drag(WM_LBUTTONDOWN, pointInRow(0));
    UpdateWindow(list.handle());
    const auto before = pixels(list.handle());
    drag(WM_MOUSEMOVE, pointInRow(1));
    const auto marked = pixels(list.handle());
    EXPECT_NE(marked, before);
    InvalidateRect(list.handle(), nullptr, TRUE); // a repaint under the mark
    UpdateWindow(list.handle());
    EXPECT_EQ(pixels(list.handle()), marked);
    drag(WM_MOUSEMOVE, pointInRow(2));
    EXPECT_NE(pixels(list.handle()), marked);
    drag(WM_MOUSEMOVE, {1, 1});
    EXPECT_EQ(pixels(list.handle()), before);
    drag(WM_RBUTTONDOWN, {1, 1});
}

TEST_F(BrowsingListTest, ABrowseLeavesTheEditOpenAndFillsIt)
{
    list.appendAndEdit();
    owner.onBrowse = [&] {
        SetFocus(other); // the owner's dialog
        EXPECT_EQ(list.editedRow(), 3);
        list.setEditText("C:\\Covers");
    };
    SendMessageA(button(), BM_CLICK, 0, 0);
    EXPECT_EQ(owner.browsedRow, 3);
    EXPECT_EQ(GetFocus(), edit());
    press(edit(), VK_RETURN);
    EXPECT_EQ(list.rowText(3), "C:\\Covers");

    list.beginEdit(3);
    owner.onBrowse = [&] { SetFocus(other); }; // cancelled
    SendMessageA(button(), BM_CLICK, 0, 0);
    EXPECT_EQ(list.editedRow(), 3);
    EXPECT_EQ(GetFocus(), edit());
}

TEST_F(BrowsingListTest, EscapeAndReturnWorkOnTheButtonToo)
{
    for (const WPARAM key : {VK_ESCAPE, VK_RETURN}) {
        list.beginEdit(0);
        type("uno");
        press(edit(), VK_TAB);
        EXPECT_EQ(GetFocus(), button());
        EXPECT_EQ(list.editedRow(), 0);
        press(button(), key);
        EXPECT_EQ(list.editedRow(), -1);
        EXPECT_EQ(list.rowText(0), key == VK_RETURN ? "uno" : "one");
    }
}

TEST_F(ListBoxExTest, TheStripsButtonsActOnTheList)
{
    const HWND strip = CreateWindowExA(0, "STATIC", "Directories:", WS_CHILD | WS_VISIBLE, 10, 15, 240, 24,
                                       m_parent, nullptr, GetModuleHandleA(nullptr), nullptr);
    CListBoxExBuddy buddy(list);
    buddy.subclass(strip);
    EXPECT_EQ(buddy.buttonRect(0).left, 240 - 90);
    const auto at = [&](int button) {
        const RECT rect = buddy.buttonRect(button);
        return MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
    };
    const auto click = [&](int down, int up) {
        SendMessageA(strip, WM_MOUSEMOVE, 0, at(down));
        SendMessageA(strip, WM_LBUTTONDOWN, MK_LBUTTON, at(down));
        SendMessageA(strip, WM_MOUSEMOVE, MK_LBUTTON, at(up));
        SendMessageA(strip, WM_LBUTTONUP, 0, at(up));
    };

    list.selectRow(0);
    click(3, 3);
    EXPECT_EQ(list.rows(), (Rows{"two", "one", "three"}));
    click(2, 2);
    click(2, 1); // released on another button
    EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"}));
    click(0, 0);
    EXPECT_EQ(list.editedRow(), 3);
    click(1, 1); // takes the row under the open edit only
    EXPECT_EQ(list.rows(), (Rows{"one", "two", "three"}));
    click(1, 1);
    EXPECT_EQ(list.rows(), (Rows{"one", "two"}));

    SendMessageA(strip, WM_MOUSEMOVE, 0, at(2));
    EXPECT_EQ(buddy.hotButton(), 2);
    EXPECT_EQ(GetCapture(), strip);
    SendMessageA(strip, WM_LBUTTONDOWN, MK_LBUTTON, at(2));
    EXPECT_TRUE(buddy.isPressed());
    SendMessageA(strip, WM_MOUSEMOVE, 0, MAKELPARAM(2, 2));
    EXPECT_EQ(buddy.hotButton(), CListBoxExBuddy::kButtons);
    EXPECT_FALSE(buddy.isPressed());
    EXPECT_NE(GetCapture(), strip);
}

} // namespace tessera
