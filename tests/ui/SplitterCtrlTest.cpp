#include "ui/SplitterCtrl.h"

#include "support/GdiObjects.h"
#include "windowing/Drawing.h"
#include "windowing/MessageLoop.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace tessera {

namespace {

using Sides = std::array<LONG, 4>; // left, top, right, bottom

constexpr UINT kId = 2003;
constexpr COLORREF kBar = RGB(40, 90, 160);
constexpr COLORREF kGround = RGB(255, 255, 255);

// A pane with one bar; lays out when it is told to, as panes do.
class SplitPane final : public Mapped<SplitPane> {
public:
    ~SplitPane() override { destroy(); }
    static std::span<const MapEntry<SplitPane>> messageMap()
    {
        static constexpr MapEntry<SplitPane> map[] = {
            {WM_PAINT, &SplitPane::onPaint}, {WM_SIZE, &SplitPane::onSize}, {kId, 0, &SplitPane::onMoved}};
        return map;
    }
    SplitterCtrl bar;
    int notified = 0;

private:
    Handled onMoved(NMHDR&)
    {
        ++notified;
        return onSize({});
    }
    Handled onSize(const Message&)
    {
        if (bar.handle()) {
            bar.layout(clientRect());
        }
        return 0;
    }
    Handled onPaint(const Message&)
    {
        const PaintScope paint(handle());
        fillRect(paint.dc(), clientRect(), kGround);
        return 0;
    }
};

class SplitterCtrlTest : public testing::Test {
protected:
    SplitterCtrlTest()
    {
        SetCursorPos(1200, 1000);
        pane.create(nullptr, 0, {50, 50, 650, 450}, {WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN});
        pumpWaiting();
    }
    void make(SplitterOrientation orientation, double position)
    {
        ASSERT_TRUE(pane.bar.create(pane.handle(), kId, orientation, 20, 80, position, kBar));
        pumpWaiting();
    }
    RECT place() const
    {
        RECT rect{};
        GetWindowRect(pane.bar.handle(), &rect);
        MapWindowPoints(nullptr, pane.handle(), reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    Sides sides() const
    {
        const RECT rect = place();
        return {rect.left, rect.top, rect.right, rect.bottom};
    }
    // Mouse messages at a point of the pane.
    void mouse(UINT message, int x, int y) const
    {
        POINT point{x, y};
        MapWindowPoints(pane.handle(), pane.bar.handle(), &point, 1);
        SendMessageA(pane.bar.handle(), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON,
                     MAKELPARAM(point.x, point.y));
    }
    void press() const
    {
        const RECT rect = place();
        mouse(WM_LBUTTONDOWN, rect.left + 3, rect.top + 3);
    }
    void drag(int x, int y) const
    {
        press();
        mouse(WM_MOUSEMOVE, x, y);
        mouse(WM_LBUTTONUP, x, y);
    }
    // What the pane shows, children included.
    COLORREF pixel(int x, int y) const
    {
        const HDC dc = GetDCEx(pane.handle(), nullptr, DCX_CACHE | DCX_LOCKWINDOWUPDATE);
        const COLORREF colour = GetPixel(dc, x, y);
        ReleaseDC(pane.handle(), dc);
        return colour;
    }

    SplitPane pane;
};

} // namespace

TEST_F(SplitterCtrlTest, PositionsOutsideTheLimitsAreLaidOutAtThem)
{
    make(SplitterOrientation::Vertical, 95);
    EXPECT_EQ(sides(), (Sides{480, 0, 487, 400}));
    EXPECT_DOUBLE_EQ(pane.bar.position(), 80);
    for (const double low : {-1e300, 0.0, 19.99, std::numeric_limits<double>::quiet_NaN()}) {
        pane.bar.setPosition(low);
        EXPECT_DOUBLE_EQ(pane.bar.position(), 20);
    }
    pane.bar.setPosition(std::numeric_limits<double>::infinity());
    EXPECT_DOUBLE_EQ(pane.bar.position(), 80);
    EXPECT_EQ(pane.notified, 1) << "only the parent's own layout shows a position that was set";
    make(SplitterOrientation::Horizontal, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(sides(), (Sides{0, 80, 600, 87}));
}

TEST_F(SplitterCtrlTest, ADropCountsTheMiddleOfAVerticalBarOnly)
{
    make(SplitterOrientation::Vertical, 50);
    drag(207, 390);
    EXPECT_NEAR(pane.bar.position(), 35, 1e-9); // (207 + 3) of 600
    EXPECT_EQ(pane.notified, 2);
    EXPECT_EQ(sides(), (Sides{210, 0, 217, 400}));
    EXPECT_EQ(GetCapture(), nullptr);

    make(SplitterOrientation::Horizontal, 50);
    drag(590, 100);
    EXPECT_NEAR(pane.bar.position(), 25, 1e-9);
    EXPECT_EQ(sides(), (Sides{0, 100, 600, 107}));
    mouse(WM_LBUTTONUP, 10, 300); // not a drop any more
    EXPECT_EQ(sides(), (Sides{0, 100, 600, 107}));
}

TEST_F(SplitterCtrlTest, DropsBeyondTheEdgesEndAtTheLimits)
{
    const struct {
        SplitterOrientation orientation;
        int x, y;
        double position;
    } cases[] = {
        {SplitterOrientation::Vertical, 5000, 10, 80},       {SplitterOrientation::Vertical, -5000, 10, 20},
        {SplitterOrientation::Vertical, 118, 10, 121 / 6.0}, // 118 is below 20 %, its middle is not
        {SplitterOrientation::Vertical, 478, 10, 80},        {SplitterOrientation::Horizontal, 10, 5000, 80},
        {SplitterOrientation::Horizontal, 10, -70, 20},      {SplitterOrientation::Horizontal, 10, 79, 20},
    };
    for (const auto& one : cases) {
        make(one.orientation, 50);
        drag(one.x, one.y);
        EXPECT_NEAR(pane.bar.position(), one.position, 1e-9) << one.x << ' ' << one.y;
    }
}

TEST_F(SplitterCtrlTest, TheTrackerFollowsBetweenTheLimitsAndLeavesNothingBehind)
{
    make(SplitterOrientation::Vertical, 50);
    press();
    EXPECT_TRUE(pane.bar.dragging());
    EXPECT_EQ(GetCapture(), pane.bar.handle());
    mouse(WM_MOUSEMOVE, 200, 5);
    for (const int x : {197, 203}) {
        EXPECT_EQ(pixel(x, 0), kBar); // white under it lets the pen's colour through
        EXPECT_EQ(pixel(x, 399), kBar);
    }
    EXPECT_EQ(pixel(200, 200), kGround);
    mouse(WM_MOUSEMOVE, 3, 5);
    EXPECT_EQ(pixel(197, 200), kGround);
    EXPECT_EQ(pixel(117, 200), kBar);
    EXPECT_EQ(pixel(123, 200), kBar);
    mouse(WM_MOUSEMOVE, 3000, 5);
    EXPECT_EQ(pixel(117, 200), kGround);
    EXPECT_EQ(pixel(477, 200), kBar);
    SendMessageA(pane.bar.handle(), WM_KEYDOWN, VK_ESCAPE, 1);
    pumpWaiting();
    EXPECT_EQ(pixel(477, 200), kGround);
    EXPECT_EQ(pixel(483, 200), kGround);
}

TEST_F(SplitterCtrlTest, ADragThatIsLostLeavesTheBar)
{
    const HWND other = CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE, 10, 200, 80, 30, pane.handle(),
                                       nullptr, GetModuleHandleA(nullptr), nullptr);
    make(SplitterOrientation::Horizontal, 25);
    using Loss = void (*)(SplitPane&, HWND);
    const Loss losses[] = {
        [](SplitPane& p, HWND) { SendMessageA(p.bar.handle(), WM_KEYDOWN, VK_ESCAPE, 1); },
        [](SplitPane&, HWND w) { SetCapture(w); },
        [](SplitPane&, HWND) { SetFocus(nullptr); },
        [](SplitPane& p, HWND) { SendMessageA(p.bar.handle(), WM_CANCELMODE, 0, 0); },
        [](SplitPane& p, HWND) { SendMessageA(p.handle(), WM_SIZE, 0, 0); },
        [](SplitPane& p, HWND) { p.bar.setColour(kBar); },
    };
    for (const Loss lose : losses) {
        SetFocus(other);
        press();
        EXPECT_NE(SendMessageA(pane.bar.handle(), WM_GETDLGCODE, 0, 0) & DLGC_WANTALLKEYS, 0);
        mouse(WM_MOUSEMOVE, 400, 210);
        EXPECT_EQ(GetFocus(), pane.bar.handle());
        lose(pane, other);
        EXPECT_FALSE(pane.bar.dragging());
        EXPECT_NE(GetCapture(), pane.bar.handle());
        EXPECT_NE(GetFocus(), pane.bar.handle());
        ReleaseCapture();
        mouse(WM_LBUTTONUP, 400, 210);
        pumpWaiting();
        EXPECT_EQ(sides(), (Sides{0, 100, 600, 107}));
        EXPECT_EQ(pixel(400, 207), kGround);
        EXPECT_EQ(pixel(400, 213), kGround);
    }
    EXPECT_EQ(pane.notified, 1);
    SetFocus(other);
    drag(400, 210);
    EXPECT_EQ(GetFocus(), other) << "the focus comes back";
    press();
    DestroyWindow(pane.bar.handle());
    EXPECT_FALSE(pane.bar.dragging());
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(SplitterCtrlTest, ADoubleClickPutsTheBarBackToTheMiddle)
{
    make(SplitterOrientation::Vertical, 30);
    EXPECT_NE(GetClassLongA(pane.bar.handle(), GCL_STYLE) & CS_DBLCLKS, 0u);
    mouse(WM_LBUTTONDBLCLK, 182, 9);
    mouse(WM_LBUTTONUP, 182, 9);
    EXPECT_DOUBLE_EQ(pane.bar.position(), 50);
    EXPECT_EQ(pane.notified, 2);
    EXPECT_EQ(sides(), (Sides{300, 0, 307, 400}));
}

TEST_F(SplitterCtrlTest, RaisedLongEdgesRoundTheColourAndItsOwnCursor)
{
    const struct {
        SplitterOrientation orientation;
        LPCSTR cursor;
    } cases[] = {{SplitterOrientation::Vertical, IDC_SIZEWE}, {SplitterOrientation::Horizontal, IDC_SIZENS}};
    for (const auto& one : cases) {
        make(one.orientation, 50);
        pane.bar.setColour(RGB(200, 30, 60));
        pumpWaiting();
        const RECT bar = place();
        const auto across = [&](int depth) { // at the very end of the bar: short sides have no edge
            return one.orientation == SplitterOrientation::Vertical ? pixel(bar.left + depth, bar.top)
                                                                    : pixel(bar.left, bar.top + depth);
        };
        for (const int inside : {2, 3, 4}) {
            EXPECT_EQ(across(inside), RGB(200, 30, 60));
        }
        EXPECT_EQ(across(6), GetSysColor(COLOR_3DDKSHADOW));
        EXPECT_EQ(across(5), GetSysColor(COLOR_3DSHADOW));
        SendMessageA(pane.bar.handle(), WM_SETCURSOR, reinterpret_cast<WPARAM>(pane.bar.handle()),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, one.cursor));
    }
}

TEST_F(SplitterCtrlTest, DraggingLeaksNoGdiObjects)
{
    make(SplitterOrientation::Vertical, 50);
    drag(300, 10);
    const int before = test::gdiObjects();
    for (int i = 0; i < 50; ++i) {
        drag(150 + i, 10);
    }
    EXPECT_LE(test::gdiObjects(), before + 2);
}

} // namespace tessera
