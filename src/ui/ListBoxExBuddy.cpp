#include "ui/ListBoxExBuddy.h"

#include "system/Module.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

#include <windowsx.h>

namespace tessera {

namespace {

// Pixels at 96 dpi.
constexpr int kButtonWidth = 22;
constexpr int kButtonHeight = 20;
constexpr int kButtonsWidth = 90; // from the first button to the right edge
constexpr int kCaptionInset = 5;
constexpr int kImageSide = 16;
constexpr COLORREF kTransparent = RGB(0xC0, 0xC0, 0xC0);

constexpr const char* kToolTips[CListBoxExBuddy::kButtons] = {"New (Ins)", "Delete (Del)", "Move Up (Alt-Up)",
                                                              "Move Down (Alt-Dn)"};

} // namespace

void CListBoxExBuddy::subclass(HWND strip)
{
    attach(strip);
    m_imlButtons =
        ImageList(ImageList_LoadImageA(moduleInstance(), MAKEINTRESOURCEA(resourceId::kListButtons),
                                       kImageSide, 0, kTransparent, IMAGE_BITMAP, LR_CREATEDIBSECTION));
    makeToolTips();
}

void CListBoxExBuddy::setBackground(COLORREF colour)
{
    m_clrBackground = colour;
    InvalidateRect(handle(), nullptr, FALSE);
}

// The tools are numbered from 1.
void CListBoxExBuddy::makeToolTips()
{
    m_hToolTips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, "", WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                                  0, 0, 0, 0, handle(), nullptr, moduleInstance(), nullptr);
    for (int button = 0; button < kButtons; ++button) {
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.uFlags = TTF_SUBCLASS;
        tool.hwnd = handle();
        tool.uId = static_cast<UINT_PTR>(button) + 1;
        tool.rect = buttonRect(button);
        tool.lpszText = const_cast<char*>(kToolTips[button]);
        SendMessageA(m_hToolTips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

void CListBoxExBuddy::placeToolTips() const
{
    for (int button = 0; button < kButtons; ++button) {
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.hwnd = handle();
        tool.uId = static_cast<UINT_PTR>(button) + 1;
        tool.rect = buttonRect(button);
        SendMessageA(m_hToolTips, TTM_NEWTOOLRECTA, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

RECT CListBoxExBuddy::buttonRect(int button) const
{
    RECT strip{};
    GetClientRect(handle(), &strip);
    const int width = scaled(kButtonWidth, handle());
    const int height = scaled(kButtonHeight, handle());
    const int left = strip.right - scaled(kButtonsWidth, handle()) + button * width;
    const int top = (strip.bottom - height) / 2;
    return {left, top, left + width, top + height};
}

int CListBoxExBuddy::buttonAt(POINT point) const
{
    for (int button = 0; button < kButtons; ++button) {
        const RECT rect = buttonRect(button);
        if (PtInRect(&rect, point)) {
            return button;
        }
    }
    return kButtons;
}

void CListBoxExBuddy::setHot(int button)
{
    if (button == m_nHot) {
        return;
    }
    m_nHot = button;
    InvalidateRect(handle(), nullptr, FALSE);
}

void CListBoxExBuddy::act(int button)
{
    switch (button) {
    case 0:
        return m_list.appendAndEdit();
    case 1:
        return m_list.deleteCurrentRow();
    case 2:
        return m_list.moveCurrentRow(-1);
    case 3:
        return m_list.moveCurrentRow(1);
    default:
        return;
    }
}

std::span<const MapEntry<CListBoxExBuddy>> CListBoxExBuddy::messageMap()
{
    static constexpr MapEntry<CListBoxExBuddy> map[] = {
        {WM_NCHITTEST, &CListBoxExBuddy::onHitTest},
        {WM_ERASEBKGND, &CListBoxExBuddy::onErase},
        {WM_PAINT, &CListBoxExBuddy::onPaint},
        {WM_MOUSEMOVE, &CListBoxExBuddy::onMouseMove},
        {WM_LBUTTONDOWN, &CListBoxExBuddy::onButtonDown},
        {WM_LBUTTONDBLCLK, &CListBoxExBuddy::onButtonDown},
        {WM_LBUTTONUP, &CListBoxExBuddy::onButtonUp},
        {WM_CAPTURECHANGED, &CListBoxExBuddy::onCaptureChanged},
        {WM_SIZE, &CListBoxExBuddy::onSize},
    };
    return map;
}

// A static control lets the mouse through to its parent.
Handled CListBoxExBuddy::onHitTest(const Message&)
{
    return HTCLIENT;
}

Handled CListBoxExBuddy::onErase(const Message&)
{
    return TRUE;
}

Handled CListBoxExBuddy::onSize(const Message&)
{
    placeToolTips();
    InvalidateRect(handle(), nullptr, FALSE);
    return kDefault;
}

// The mouse is captured while a button is hot, so that leaving the strip is noticed.
Handled CListBoxExBuddy::onMouseMove(const Message& message)
{
    const int button = buttonAt({GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)});
    setHot(button);
    if (button == kButtons) {
        if (GetCapture() == handle()) {
            ReleaseCapture();
        }
    } else if (GetCapture() != handle()) {
        SetCapture(handle());
    }
    return 0;
}

Handled CListBoxExBuddy::onButtonDown(const Message& message)
{
    onMouseMove(message);
    m_nPressedButton = m_nHot;
    m_bPressed = m_nHot < kButtons;
    InvalidateRect(handle(), nullptr, FALSE);
    return 0;
}

Handled CListBoxExBuddy::onButtonUp(const Message& message)
{
    const int released = buttonAt({GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)});
    const bool clicked = m_bPressed && released == m_nPressedButton;
    m_bPressed = false;
    InvalidateRect(handle(), nullptr, FALSE);
    if (clicked) {
        act(released);
    }
    return 0;
}

Handled CListBoxExBuddy::onCaptureChanged(const Message&)
{
    m_bPressed = false;
    setHot(kButtons);
    return 0;
}

Handled CListBoxExBuddy::onPaint(const Message&)
{
    const PaintScope paint(handle());
    RECT strip{};
    GetClientRect(handle(), &strip);
    const DoubleBuffer buffer(paint.dc(), strip);
    const DcScope state(buffer.dc());
    fillRect(buffer.dc(), strip, m_clrBackground);
    const SelectScope font(buffer.dc(), defaultFont());
    SetTextColor(buffer.dc(), GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(buffer.dc(), TRANSPARENT);
    const RECT caption{scaled(kCaptionInset, handle()), 0, buttonRect(0).left, strip.bottom};
    drawLine(buffer.dc(), windowText(handle()), caption);
    for (int button = 0; button < kButtons; ++button) {
        drawButton(buffer.dc(), button);
    }
    return 0;
}

void CListBoxExBuddy::drawButton(HDC dc, int button) const
{
    RECT rect = buttonRect(button);
    const bool sunken = m_bPressed && button == m_nPressedButton && button == m_nHot;
    const int shift = sunken ? 1 : 0;
    m_imlButtons.draw(button, dc, (rect.left + rect.right - kImageSide) / 2 + shift,
                      (rect.top + rect.bottom - kImageSide) / 2 + shift);
    if (button == m_nHot) {
        DrawEdge(dc, &rect, sunken ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
    }
}

} // namespace tessera
