// The details pane under a real pointer and real keys.

#include "Hands.h"
#include "Meanwhile.h"
#include "PaneAlbumDetailsFixture.h"

#include <map>

using namespace tessera;

namespace {

// Remembers the characters that reach the system's own control, which beeps at those it has no use
// for. For the controls that are made meanwhile.
class ReachingCharacters {
public:
    explicit ReachingCharacters(const char* windowClass)
        : m_sample(
              CreateWindowExA(0, windowClass, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)),
          m_original(reinterpret_cast<WNDPROC>(
              SetClassLongPtrW(m_sample, GCLP_WNDPROC, reinterpret_cast<LONG_PTR>(&listen))))
    {
        s_procedures[className(m_sample)] = m_original;
    }
    ~ReachingCharacters()
    {
        SetClassLongPtrW(m_sample, GCLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_original));
        DestroyWindow(m_sample);
    }
    ReachingCharacters(const ReachingCharacters&) = delete;
    ReachingCharacters& operator=(const ReachingCharacters&) = delete;
    static std::string take() { return std::exchange(s_characters, {}); }

private:
    static std::string className(HWND window)
    {
        char name[64] = "";
        GetClassNameA(window, name, sizeof name);
        return name;
    }
    static LRESULT CALLBACK listen(HWND window, UINT id, WPARAM wParam, LPARAM lParam)
    {
        if (id == WM_CHAR)
            s_characters += static_cast<char>(wParam);
        return CallWindowProcW(s_procedures[className(window)], window, id, wParam, lParam);
    }

    HWND m_sample;
    WNDPROC m_original;
    inline static std::map<std::string, WNDPROC> s_procedures;
    inline static std::string s_characters;
};

class HandsTest : public PaneAlbumDetailsTest {
protected:
    POINT middleOf(HTREEITEM item) const
    {
        const RECT text = tree().itemRect(item);
        return {(text.left + text.right) / 2, (text.top + text.bottom) / 2};
    }
    // Left of a node's text, the first place that the control calls so.
    POINT partOf(HTREEITEM item, UINT part) const
    {
        POINT place = middleOf(item);
        TVHITTESTINFO hit{};
        do {
            --place.x;
            hit.pt = place;
            ScreenToClient(tree().handle(), &hit.pt);
            tree().send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        } while (hit.pt.x > 0 && (hit.flags & part) == 0);
        return place;
    }
    POINT middleOfRow(int row) const
    {
        RECT text{LVIR_LABEL, 0, 0, 0};
        list().send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&text));
        POINT place{text.left + 8, (text.top + text.bottom) / 2};
        ClientToScreen(list().handle(), &place);
        return place;
    }
};

} // namespace

TEST_F(HandsTest, ADoubleClickActsOnTheItemUnderThePointerAlone)
{
    open();
    choose({"Artist/Album", "LUMEN", "Early"});
    tree().expand(node({"Artist/Album", "LUMEN"}));
    const HTREEITEM other = node({"Artist/Album", "The Harbour Quartet"});
    const RECT leaf = tree().itemRect(node({"Artist/Album", "LUMEN", "Early"}));
    hands::doubleClick(partOf(other, TVHT_ONITEMBUTTON));
    hands::doubleClick({leaf.right + 60, middleOf(node({"Artist/Album", "LUMEN", "Early"})).y});
    hands::doubleClick({leaf.left, leaf.bottom + 300});
    EXPECT_EQ(takeCalls(), Texts{}) << "a button, beside a node, below all";
    EXPECT_EQ(tree().selection(), node({"Artist/Album", "LUMEN", "Early"}));
    hands::doubleClick(middleOf(other));
    EXPECT_EQ(takeCalls(), Texts{});
    EXPECT_TRUE(tree().expanded(other));
    hands::doubleClick(middleOf(node({"Artist/Album", "LUMEN", "Early"})));
    EXPECT_EQ(takeCalls(), Texts{"play Early"});

    choose({"Artist/Album"});
    hands::doubleClick(middleOfRow(2));
    EXPECT_EQ(takeCalls(), Texts{"play Yearling"});
    selectOnly({0});
    hands::pointAt(middleOfRow(3));
    hands::hold(VK_CONTROL);
    hands::doubleClick(middleOfRow(3));
    hands::letGo(VK_CONTROL);
    EXPECT_EQ(takeCalls(), Texts{"append Tidewater"}) << "whatever else is selected";
}

TEST_F(HandsTest, EnterOpensAndClosesAGroupAndPlaysAnAlbum)
{
    open();
    SetFocus(tree().handle());
    choose({"Artist/Album"});
    hands::press(VK_RETURN);
    EXPECT_TRUE(tree().expanded(node({"Artist/Album"})));
    hands::press(VK_DOWN);
    EXPECT_EQ(tree().selection(), node({"Artist/Album", "LUMEN"}));
    hands::press(VK_RETURN);
    EXPECT_TRUE(tree().expanded(node({"Artist/Album", "LUMEN"})));
    hands::press(VK_RETURN);
    EXPECT_FALSE(tree().expanded(node({"Artist/Album", "LUMEN"})));
    EXPECT_EQ(takeCalls(), Texts{});
    hands::press(VK_RETURN);
    hands::press(VK_DOWN);
    hands::pressWith(VK_CONTROL, VK_RETURN);
    hands::press(VK_RETURN);
    EXPECT_EQ(takeCalls(), (Texts{"append Early", "play Early"}));
    EXPECT_EQ(GetFocus(), list().handle()) << "it is there when the host has begun";
    list().select(0);
    hands::press(VK_RETURN);
    EXPECT_EQ(takeCalls(), Texts{"play Early"});
}

TEST_F(HandsTest, TheMenuKeyBringsTheNodeIntoView)
{
    open();
    MoveWindow(pane->window(), 0, 0, 500, 220, TRUE);
    SetFocus(tree().handle());
    for (const char* const root : {"Artist/Album", "Genre", "Rank"})
        tree().expand(node({root}));
    for (const char* const artist : {"LUMEN", "The Harbour Quartet", "Vera Linde"})
        tree().expand(node({"Artist/Album", artist}));
    const HTREEITEM chosen = node({"Artist/Album", "LUMEN"});
    choose({"Artist/Album", "LUMEN"});
    SendMessageA(tree().handle(), WM_VSCROLL, SB_BOTTOM, 0);
    ASSERT_NE(tree().top(), tree().root());
    SetCursorPos(5, 5);
    std::string shown;
    {
        const Meanwhile user([&] {
            const HMENU menu = openMenu();
            if (!menu)
                return false;
            shown = outline(menu);
            return EndMenu() != FALSE;
        });
        hands::press(VK_APPS);
        pumpMessages(100);
    }
    EXPECT_TRUE(shown.starts_with("10998 Play: All|")) << shown;
    POINT cursor{};
    GetCursorPos(&cursor);
    EXPECT_EQ(tree().itemAt(cursor), chosen);
    EXPECT_EQ(WindowFromPoint(cursor), tree().handle());
    EXPECT_EQ(titles(), (Texts{"Early", "Rock & Roll"}));
    tree().select(nullptr);
    hands::press(VK_APPS);
    EXPECT_EQ(openMenu(), nullptr) << "nothing to open it for";
}

TEST_F(HandsTest, CharactersOfKeysThatDidSomethingGoNoFurther)
{
    const ReachingCharacters trees(WC_TREEVIEWA);
    const ReachingCharacters lists(WC_LISTVIEWA);
    open();
    commands.fakeHost.entries = {3, 0};
    chooseBelow(1);
    choose({"Artist/Album", "LUMEN", "Early"});
    list().select(0);
    for (const HWND control : {tree().handle(), list().handle(), child(controlId::kAlbumTracks)}) {
        SetFocus(control);
        hands::press(VK_RETURN);
        SetFocus(control);
        hands::pressWith(VK_CONTROL, VK_RETURN);
        if (control == list().handle()) {
            hands::pressWith(VK_CONTROL, 'A');
            hands::pressWith(VK_CONTROL, VK_BACK);
        }
        EXPECT_EQ(ReachingCharacters::take(), "");
        SetFocus(control);
        hands::press('X');
        EXPECT_EQ(ReachingCharacters::take(), "x") << "others do";
    }
}

TEST_F(HandsTest, TheHighestRankMovesNoAlbum)
{
    open();
    chooseTree(kFavourites);
    choose({"Artist/Album"}, kFavourites);
    hands::click(middleOfRow(0));
    ASSERT_EQ(list().selection(), std::vector<int>{0});
    const std::string status = pane->status();
    for (const char digit : {'1', '9', '0'})
        hands::pressWith(VK_CONTROL, static_cast<BYTE>(digit));
    EXPECT_EQ(album(1).rank, 10);
    hands::pressWith(VK_CONTROL, VK_BACK);
    EXPECT_EQ(album(1).rank, 0);
    EXPECT_EQ(list().selection(), std::vector<int>{0});
    EXPECT_EQ(tree(kFavourites).selection(), node({"Artist/Album"}, kFavourites));
    EXPECT_EQ(pane->status(), status);
}
