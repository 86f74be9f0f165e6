#include "ui/MyEdit.h"

#include "FakeCommands.h"
#include "tokens/TokenParser.h"
#include "ui/TokenMenu.h"
#include "windowing/Control.h"

#include <commctrl.h>
#include <gtest/gtest.h>

namespace tessera {

namespace {

class ChosenTokenEdit : public MyEdit {
public:
    using MyEdit::MyEdit;
    std::string chosen;

protected:
    std::string chooseToken(POINT) override { return chosen; }
};

class MyEditTest : public testing::Test {
protected:
    MyEditTest()
    {
        edit = make("EDIT", ES_AUTOHSCROLL, 10, 24);
        label = make("STATIC", SS_NOPREFIX, 40, 60);
        ShowWindow(parent, SW_SHOWNOACTIVATE);
    }
    ~MyEditTest() override { DestroyWindow(parent); }

    HWND make(const char* windowClass, DWORD style, int y, int height) const
    {
        return CreateWindowExA(0, windowClass, "", WS_CHILD | WS_VISIBLE | style, 10, y, 380, height, parent,
                               nullptr, GetModuleHandleA(nullptr), nullptr);
    }
    // A right click in the edit, in its client coordinates.
    void rightClick(int x, int y) const
    {
        POINT point{x, y};
        ClientToScreen(edit, &point);
        SendMessageA(edit, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(edit), MAKELPARAM(point.x, point.y));
    }
    int xOfCharacter(int index) const
    {
        return static_cast<short>(LOWORD(SendMessageA(edit, EM_POSFROMCHAR, static_cast<WPARAM>(index), 0)));
    }

    HWND parent = makeParentWindow(420, 240);
    HWND edit = nullptr;
    HWND label = nullptr;
    TokenParser tokens;
};

} // namespace

TEST_F(MyEditTest, TheLabelFollowsEveryChange)
{
    MyEdit box(tokens);
    SetWindowTextA(edit, "<Artist>");
    box.subclass(edit, MyEdit::Kind::AlbumLabel, label);
    EXPECT_EQ(windowText(label), "Harlan Voss");
    SendMessageA(edit, EM_SETSEL, 8, 8);
    SendMessageA(edit, WM_CHAR, '!', 1);
    EXPECT_EQ(windowText(label), "Harlan Voss!");
    SetWindowTextA(edit, "<album> & <NumTracksEx>");
    EXPECT_EQ(windowText(label), "Tidewater & 2 Tracks");
}

TEST_F(MyEditTest, TrackTemplatesUseTheSampleTrack)
{
    const HWND lines = make("EDIT", ES_MULTILINE, 110, 60);
    MyEdit box(tokens);
    box.subclass(lines, MyEdit::Kind::Track, label);
    SetWindowTextA(lines, "<NumberEx>. <Name> (<Duration>) <Filename>"); // a multi-line edit tells nobody
    EXPECT_EQ(windowText(label), "  1. Part One (19:22) 01 - Part One.mp3");
}

TEST_F(MyEditTest, AListItemShowsTheTile)
{
    initCommonControls();
    const HWND list = make(WC_LISTVIEWA, LVS_ICON, 110, 100);
    LVITEMA item{};
    item.mask = LVIF_TEXT;
    item.pszText = const_cast<char*>("");
    SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    MyEdit box(tokens);
    box.subclass(edit, MyEdit::Kind::AlbumListItem, list, 0);
    SetWindowTextA(edit, "<Artist> - <Album> - <Year>");
    char text[100]{};
    item.pszText = text;
    item.cchTextMax = sizeof text;
    SendMessageA(list, LVM_GETITEMTEXTA, 0, reinterpret_cast<LPARAM>(&item));
    EXPECT_STREQ(text, "Harlan Voss - Tidewater - 1975");
}

TEST_F(MyEditTest, ATokenGoesWhereTheClickWas)
{
    ChosenTokenEdit box(tokens);
    box.subclass(edit, MyEdit::Kind::AlbumLabel, label);
    box.chosen = "<Year>";

    SetWindowTextA(edit, "abcdef");
    rightClick(xOfCharacter(0), 5);
    EXPECT_EQ(windowText(edit), "<Year>abcdef");
    EXPECT_EQ(windowText(label), "1975abcdef");

    SetWindowTextA(edit, "abcdef");
    rightClick(xOfCharacter(3), 5);
    EXPECT_EQ(windowText(edit), "abc<Year>def");

    SetWindowTextA(edit, "abcdef");
    rightClick(370, 5); // behind the text
    EXPECT_EQ(windowText(edit), "abcdef<Year>");

    SetWindowTextA(edit, "");
    rightClick(100, 5);
    EXPECT_EQ(windowText(edit), "<Year>");

    SetWindowTextA(edit, "abcdef");
    SendMessageA(edit, EM_SETSEL, 2, 2);
    SendMessageA(edit, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(edit), -1); // by key: at the caret
    EXPECT_EQ(windowText(edit), "ab<Year>cdef");

    box.chosen.clear();
    rightClick(xOfCharacter(1), 5);
    EXPECT_EQ(windowText(edit), "ab<Year>cdef") << "nothing was chosen";
}

TEST_F(MyEditTest, TheMenusAnswerTheChosenText)
{
    struct {
        std::string (*show)(HWND, POINT);
        int steps;
        const char* token;
    } const cases[] = {
        {ShowAlbumTokenMenu, 1, "<Album>"},
        {ShowAlbumTokenMenu, 3, "<Artist>"},
        {ShowTrackTokenMenu, 19, "<Year>"},
        {ShowTrackTokenMenu, 0, ""}, // Escape
    };
    for (const auto& one : cases) {
        for (int step = 0; step < one.steps; ++step) {
            PostMessageA(parent, WM_KEYDOWN, VK_DOWN, 1);
        }
        PostMessageA(parent, WM_KEYDOWN, one.steps > 0 ? VK_RETURN : VK_ESCAPE, 1);
        EXPECT_EQ(one.show(parent, {50, 50}), one.token);
        pumpMessages(1);
    }
}

} // namespace tessera
