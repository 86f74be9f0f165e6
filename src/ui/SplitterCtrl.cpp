#include "ui/SplitterCtrl.h"

#include "base/Errors.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>
#include <utility>
#include <windowsx.h>

namespace tessera {

namespace {

constexpr const char* kUnit = "SplitterCtrl";
constexpr int kHalf = SplitterCtrl::kThickness / 2;
constexpr double kMiddle = 50;

int partOf(LONG extent, double percent)
{
    return static_cast<int>(extent * 0.01 * percent);
}

// The parent with its children: the tracker runs over them.
class ParentDc {
public:
    explicit ParentDc(HWND parent)
        : m_parent(parent),
          m_dc(GetDCEx(parent, nullptr, DCX_CACHE | DCX_CLIPSIBLINGS | DCX_LOCKWINDOWUPDATE))
    {
    }
    ~ParentDc() { ReleaseDC(m_parent, m_dc); }
    ParentDc(const ParentDc&) = delete;
    ParentDc& operator=(const ParentDc&) = delete;
    HDC dc() const { return m_dc; }

private:
    HWND m_parent;
    HDC m_dc;
};

void drawSegment(HDC dc, POINT from, POINT to)
{
    MoveToEx(dc, from.x, from.y, nullptr);
    LineTo(dc, to.x, to.y);
}

} // namespace

std::span<const MapEntry<SplitterCtrl>> SplitterCtrl::messageMap()
{
    using S = SplitterCtrl;
    static constexpr std::array<MapEntry<S>, 13> kMap{{
        {WM_PAINT, &S::onPaint},
        {WM_ERASEBKGND, &S::onErase},
        {WM_SETCURSOR, &S::onSetCursor},
        {WM_LBUTTONDOWN, &S::onButtonDown},
        {WM_MOUSEMOVE, &S::onMouseMove},
        {WM_LBUTTONUP, &S::onButtonUp},
        {WM_LBUTTONDBLCLK, &S::onDoubleClick},
        {WM_CAPTURECHANGED, &S::onDragLost},
        {WM_KILLFOCUS, &S::onDragLost},
        {WM_DESTROY, &S::onDragLost},
        {WM_SETFOCUS, &S::onFocus},
        {WM_KEYDOWN, &S::onKeyDown},
        {WM_GETDLGCODE, &S::onDialogCode},
    }};
    return kMap;
}

WindowClass SplitterCtrl::windowClass() const
{
    return {"TesseraSplitter", CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW};
}

bool SplitterCtrl::create(HWND parent, UINT id, SplitterOrientation orientation, int minimum, int maximum,
                          double position, COLORREF colour)
{
    loadCursors();
    m_orientation = orientation;
    m_nMinimum = minimum;
    m_nMaximum = maximum;
    m_dPosition = position;
    m_clrBar = colour;
    RECT area{};
    GetClientRect(parent, &area);
    if (!Window::create(parent, id, area, {WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS})) {
        assertionFailed("this->GetSafeHwnd()", kUnit, __LINE__);
        return false;
    }
    notifyParent();
    return true;
}

void SplitterCtrl::loadCursors()
{
    if (!m_hCursor1) {
        m_hCursor1 = LoadCursorA(nullptr, IDC_SIZEWE);
        TESSERA_ASSERT(m_hCursor1, kUnit);
    }
    if (!m_hCursor2) {
        m_hCursor2 = LoadCursorA(nullptr, IDC_SIZENS);
        TESSERA_ASSERT(m_hCursor2, kUnit);
    }
}

void SplitterCtrl::layout(const RECT& area)
{
    if (m_bDragging) {
        ReleaseCapture(); // the tracker belongs to the old place
    }
    m_dPosition = clamped(m_dPosition);
    const LONG width = area.right - area.left;
    const LONG height = area.bottom - area.top;
    if (isVertical()) {
        MoveWindow(handle(), area.left + partOf(width, m_dPosition), area.top, kThickness, height, TRUE);
    } else {
        MoveWindow(handle(), area.left, area.top + partOf(height, m_dPosition), width, kThickness, TRUE);
    }
    updatePixelLimits();
}

void SplitterCtrl::setPosition(double percent)
{
    m_dPosition = clamped(percent);
}

void SplitterCtrl::setColour(COLORREF colour)
{
    if (m_bDragging) {
        ReleaseCapture(); // the tracker can be erased in its own colour only
    }
    m_clrBar = colour;
    InvalidateRect(handle(), nullptr, FALSE);
}

// What is no number counts as the minimum.
double SplitterCtrl::clamped(double percent) const
{
    return percent >= m_nMinimum ? std::min<double>(percent, m_nMaximum) : m_nMinimum;
}

void SplitterCtrl::updatePixelLimits()
{
    RECT window{};
    GetWindowRect(GetParent(handle()), &window);
    const LONG extent = isVertical() ? window.right - window.left : window.bottom - window.top;
    m_nMinimumPixel = partOf(extent, m_nMinimum);
    m_nMaximumPixel = partOf(extent, m_nMaximum);
}

RECT SplitterCtrl::placeInParent() const
{
    RECT place{};
    GetWindowRect(handle(), &place);
    MapWindowPoints(nullptr, GetParent(handle()), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

POINT SplitterCtrl::parentPoint(const Message& message) const
{
    POINT point{GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
    MapWindowPoints(handle(), GetParent(handle()), &point, 1);
    return point;
}

// Escape reaches the bar by the focus, which goes back at the end. Nothing may paint over the tracker,
// or drawing it again would not erase it: what waits is painted first, the rest when the drag is over.
void SplitterCtrl::beginDrag()
{
    SetCapture(handle());
    m_hFocusBack = SetFocus(handle());
    if (GetCapture() != handle()) {
        return; // somebody else who noticed
    }
    m_bDragging = true;
    const RECT place = placeInParent();
    m_ptTracker = {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    const HWND parent = GetParent(handle());
    RedrawWindow(parent, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    m_bLocked = LockWindowUpdate(parent) != FALSE;
    drawTracker();
}

// Drawn twice it is gone.
void SplitterCtrl::drawTracker() const
{
    const RECT bar = placeInParent();
    const ParentDc parent(GetParent(handle()));
    const DcScope restore(parent.dc());
    const PenHandle pen(CreatePen(PS_SOLID, 1, m_clrBar));
    const SelectScope selected(parent.dc(), pen.get());
    SetROP2(parent.dc(), R2_NOTXORPEN);
    for (const int offset : {-kHalf, kHalf}) {
        if (isVertical()) {
            const LONG x = m_ptTracker.x + offset;
            drawSegment(parent.dc(), {x, bar.top}, {x, bar.bottom});
        } else {
            const LONG y = m_ptTracker.y + offset;
            drawSegment(parent.dc(), {bar.left, y}, {bar.right, y});
        }
    }
}

void SplitterCtrl::endDrag()
{
    drawTracker();
    m_bDragging = false;
    if (m_bLocked) {
        LockWindowUpdate(nullptr);
        m_bLocked = false;
    }
    const HWND back = std::exchange(m_hFocusBack, nullptr);
    if (GetFocus() == handle() && IsWindow(back)) {
        SetFocus(back);
    }
}

// The point is where the bar begins, but a vertical bar's position is that of its middle.
void SplitterCtrl::drop(POINT point)
{
    const RECT bar = placeInParent();
    RECT client{};
    GetClientRect(GetParent(handle()), &client);
    if (isVertical()) {
        MoveWindow(handle(), point.x, bar.top, kThickness, client.bottom - bar.top, TRUE);
        m_dPosition = client.right > 0 ? 100.0 * (point.x + kHalf) / client.right : m_dPosition;
    } else {
        MoveWindow(handle(), bar.left, point.y, client.right - bar.left, kThickness, TRUE);
        m_dPosition = client.bottom > 0 ? 100.0 * point.y / client.bottom : m_dPosition;
    }
    m_dPosition = clamped(m_dPosition);
    updatePixelLimits();
    notifyParent();
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void SplitterCtrl::notifyParent() const
{
    NMHDR header{};
    header.hwndFrom = handle();
    header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(handle()));
    header.code = 0;
    SendMessageA(GetParent(handle()), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}

Handled SplitterCtrl::onPaint(const Message&)
{
    const PaintScope paint(handle());
    RECT inside = clientRect();
    DrawEdge(paint.dc(), &inside, EDGE_RAISED,
             static_cast<UINT>(isVertical() ? BF_LEFT | BF_RIGHT : BF_TOP | BF_BOTTOM) | BF_ADJUST);
    fillRect(paint.dc(), inside, m_clrBar);
    return 0;
}

Handled SplitterCtrl::onSetCursor(const Message& message)
{
    if (LOWORD(message.lParam) != HTCLIENT) {
        return kDefault;
    }
    SetCursor(isVertical() ? m_hCursor1 : m_hCursor2);
    return TRUE;
}

Handled SplitterCtrl::onButtonDown(const Message&)
{
    if (!m_bDragging) {
        beginDrag();
    }
    return 0;
}

Handled SplitterCtrl::onMouseMove(const Message& message)
{
    if (!m_bDragging) {
        return kDefault;
    }
    drawTracker();
    const POINT point = parentPoint(message);
    const auto limited = [this](LONG value) {
        return std::max<LONG>(m_nMinimumPixel, std::min<LONG>(value, m_nMaximumPixel));
    };
    m_ptTracker = {limited(point.x), limited(point.y)};
    drawTracker();
    return 0;
}

Handled SplitterCtrl::onButtonUp(const Message& message)
{
    if (!m_bDragging) {
        return kDefault;
    }
    const POINT point = parentPoint(message);
    endDrag();
    drop(point);
    ReleaseCapture();
    return 0;
}

Handled SplitterCtrl::onDoubleClick(const Message&)
{
    setPosition(kMiddle);
    notifyParent();
    return 0;
}

// Capture or focus went elsewhere, or the window goes.
Handled SplitterCtrl::onDragLost(const Message& message)
{
    if (m_bDragging) {
        endDrag();
        if (message.id != WM_CAPTURECHANGED) {
            ReleaseCapture();
        }
    }
    return kDefault;
}

// Comes back from another program after a drag that ended there: nothing to type here.
Handled SplitterCtrl::onFocus(const Message&)
{
    if (GetCapture() != handle()) {
        SetFocus(GetParent(handle()));
    }
    return 0;
}

Handled SplitterCtrl::onKeyDown(const Message& message)
{
    if (!m_bDragging || message.wParam != VK_ESCAPE) {
        return kDefault;
    }
    ReleaseCapture();
    return 0;
}

// Escape in the middle of a drag is not the dialog's.
Handled SplitterCtrl::onDialogCode(const Message&)
{
    return m_bDragging ? DLGC_WANTALLKEYS : 0;
}

} // namespace tessera
