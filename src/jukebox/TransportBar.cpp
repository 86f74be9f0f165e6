#include "jukebox/TransportBar.h"

#include "jukebox/CommandIds.h"
#include "jukebox/TrackFile.h"
#include "jukebox/WideText.h"

#include <vector>
#include <windowsx.h>

namespace tessera::jukebox {

namespace {

struct TransportButton {
    UINT command;
    const char* tip;
};
constexpr std::array kButtons = {
    TransportButton{kPrevious, "Previous track (Ctrl+B)"},
    TransportButton{kPlay, "Play (Ctrl+P)"},
    TransportButton{kPause, "Pause (Ctrl+U)"},
    TransportButton{kStop, "Stop (Ctrl+S)"},
    TransportButton{kNext, "Next track (Ctrl+F)"},
};

constexpr int kMargin = 8;
constexpr int kButtonSize = 34;
constexpr int kGlyphSize = 12;
constexpr int kProgressHeight = 6;

using Shape = std::vector<POINT>;

// The sign on a button, in a square of 12 by 12.
std::vector<Shape> glyphOf(UINT command)
{
    switch (command) {
    case kPrevious:
        return {{{0, 0}, {2, 0}, {2, 12}, {0, 12}}, {{12, 0}, {12, 12}, {3, 6}}};
    case kPlay:
        return {{{1, 0}, {1, 12}, {12, 6}}};
    case kPause:
        return {{{1, 0}, {4, 0}, {4, 12}, {1, 12}}, {{8, 0}, {11, 0}, {11, 12}, {8, 12}}};
    case kStop:
        return {{{1, 1}, {11, 1}, {11, 11}, {1, 11}}};
    default:
        return {{{0, 0}, {0, 12}, {9, 6}}, {{10, 0}, {12, 0}, {12, 12}, {10, 12}}};
    }
}

void drawGlyph(HDC dc, UINT command, const RECT& place, COLORREF colour)
{
    const int size = scaled(kGlyphSize, dc);
    const int left = (place.left + place.right - size) / 2;
    const int top = (place.top + place.bottom - size) / 2;
    const BrushHandle brush(CreateSolidBrush(colour));
    const PenHandle pen(CreatePen(PS_SOLID, 1, colour));
    const SelectScope brushIn(dc, brush.get());
    const SelectScope penIn(dc, pen.get());
    for (Shape shape : glyphOf(command)) {
        for (POINT& corner : shape) {
            corner = {left + MulDiv(corner.x, size, kGlyphSize), top + MulDiv(corner.y, size, kGlyphSize)};
        }
        Polygon(dc, shape.data(), static_cast<int>(shape.size()));
    }
}

std::string clock(std::uint32_t milliseconds)
{
    return codePageText(durationText(static_cast<std::int32_t>(milliseconds / 1000)));
}

} // namespace

std::span<const MapEntry<TransportBar>> TransportBar::messageMap()
{
    static constexpr std::array kMap = {
        MapEntry<TransportBar>{WM_CREATE, &TransportBar::onCreate},
        MapEntry<TransportBar>{WM_SIZE, &TransportBar::onSize},
        MapEntry<TransportBar>{WM_ERASEBKGND, &TransportBar::onErase},
        MapEntry<TransportBar>{WM_PAINT, &TransportBar::onPaint},
        MapEntry<TransportBar>{WM_DRAWITEM, &TransportBar::onDrawItem},
        MapEntry<TransportBar>{WM_COMMAND, &TransportBar::onCommand},
        MapEntry<TransportBar>{WM_LBUTTONDOWN, &TransportBar::onLeftButton},
    };
    return kMap;
}

Handled TransportBar::onCreate(const Message& message)
{
    m_titleFont = makeFont("Tahoma", scaled(18, message.window));
    m_textFont = makeFont("Tahoma", scaled(13, message.window));
    m_tips.create(message.window);
    for (std::size_t i = 0; i < kButtonCount; ++i) {
        m_buttons[i].create(message.window, kButtons[i].command, {}, "", BS_OWNERDRAW | WS_TABSTOP);
        m_tips.addTool(m_buttons[i].handle(), kButtons[i].tip);
    }
    return kDefault;
}

Handled TransportBar::onSize(const Message& message)
{
    const int size = scaled(kButtonSize, message.window);
    const int margin = scaled(kMargin, message.window);
    const int top = (clientRect().bottom - size) / 2;
    int left = margin;
    for (const Button& button : m_buttons) {
        button.move({left, top, left + size, top + size});
        left += size + scaled(2, message.window);
    }
    InvalidateRect(message.window, nullptr, FALSE);
    return kDefault;
}

RECT TransportBar::textPlace() const
{
    const int margin = scaled(kMargin, handle());
    RECT place = clientRect();
    place.left = m_buttons.back().rect().right + 2 * margin;
    place.right = std::max(place.left, place.right - margin);
    return place;
}

RECT TransportBar::progressPlace() const
{
    RECT place = textPlace();
    place.bottom -= scaled(7, handle());
    place.top = place.bottom - scaled(kProgressHeight, handle());
    return place;
}

void TransportBar::refresh()
{
    m_now = m_player.now();
    RECT place = textPlace();
    InvalidateRect(handle(), &place, FALSE);
}

Handled TransportBar::onPaint(const Message& message)
{
    const PaintScope paint(message.window);
    const DoubleBuffer buffer(paint.dc(), clientRect());
    fillRect(buffer.dc(), clientRect(), m_colours.face);
    drawTexts(buffer.dc(), textPlace());
    drawProgress(buffer.dc());
    return 0;
}

std::string TransportBar::timeText() const
{
    return m_now.track ? clock(m_now.elapsedMs) + " / " + clock(m_now.durationMs) : std::string();
}

void TransportBar::drawTexts(HDC dc, const RECT& place) const
{
    const DcScope state(dc);
    SetBkMode(dc, TRANSPARENT);
    std::string title = "Stopped";
    std::string detail =
        "Play an album from the plug-in, a track of the playlist, or the whole library (Ctrl+L).";
    if (m_now.track) {
        title = codePageText(m_library.text(*m_now.track, Column::Name));
        const std::string artist = codePageText(m_library.text(*m_now.track, Column::Artist));
        const std::string album = codePageText(m_library.text(*m_now.track, Column::Album));
        detail = artist + (artist.empty() || album.empty() ? "" : " - ") + album;
        if (m_now.state == PlayState::Paused) {
            detail += "  (paused)";
        }
    }
    const int line = scaled(20, handle());
    RECT first{place.left, place.top + scaled(4, handle()), place.right, 0};
    first.bottom = first.top + line;
    SelectObject(dc, m_textFont.get());
    SetTextColor(dc, m_colours.faceText);
    const std::string time = timeText();
    drawLine(dc, time, first, DT_RIGHT | DT_VCENTER | DT_NOCLIP);
    first.right -= textSize(dc, time).cx + scaled(2 * kMargin, handle());
    RECT second{place.left, first.bottom - scaled(2, handle()), place.right, 0};
    second.bottom = second.top + scaled(17, handle());
    SetTextColor(dc, m_colours.faceDim);
    drawLine(dc, detail, second);
    SelectObject(dc, m_titleFont.get());
    SetTextColor(dc, m_colours.faceText);
    drawLine(dc, title, first);
}

void TransportBar::drawProgress(HDC dc) const
{
    RECT place = progressPlace();
    fillRect(dc, place, mixed(m_colours.face, m_colours.faceDim, 45));
    if (m_now.durationMs > 0) {
        place.right = place.left + MulDiv(place.right - place.left, static_cast<int>(m_now.elapsedMs),
                                          static_cast<int>(m_now.durationMs));
        fillRect(dc, place, m_colours.accent);
    }
}

Handled TransportBar::onDrawItem(const Message& message)
{
    drawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(message.lParam));
    return TRUE;
}

void TransportBar::drawButton(const DRAWITEMSTRUCT& item) const
{
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    const bool lit = (item.CtlID == kPlay && m_now.state == PlayState::Playing) ||
                     (item.CtlID == kPause && m_now.state == PlayState::Paused);
    const DoubleBuffer buffer(item.hDC, item.rcItem);
    const DcScope state(buffer.dc());
    fillRect(buffer.dc(), item.rcItem, m_colours.face);
    const PenHandle pen(CreatePen(PS_SOLID, 1, mixed(m_colours.face, m_colours.faceDim, 60)));
    const BrushHandle brush(CreateSolidBrush(mixed(m_colours.face, m_colours.faceDim, pressed ? 45 : 12)));
    SelectObject(buffer.dc(), pen.get());
    SelectObject(buffer.dc(), brush.get());
    RoundRect(buffer.dc(), item.rcItem.left, item.rcItem.top, item.rcItem.right, item.rcItem.bottom, 6, 6);
    drawGlyph(buffer.dc(), item.CtlID, item.rcItem, lit ? m_colours.accent : m_colours.faceText);
    if ((item.itemState & ODS_FOCUS) != 0) {
        RECT frame = item.rcItem;
        InflateRect(&frame, -3, -3);
        DrawFocusRect(buffer.dc(), &frame);
    }
}

Handled TransportBar::onCommand(const Message& message)
{
    if (HIWORD(message.wParam) == BN_CLICKED) {
        SendMessageA(GetParent(message.window), WM_COMMAND, LOWORD(message.wParam), 0);
    }
    return 0;
}

Handled TransportBar::onLeftButton(const Message& message)
{
    RECT place = progressPlace();
    const POINT point{GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
    InflateRect(&place, 0, scaled(4, handle()));
    if (PtInRect(&place, point) && place.right > place.left) {
        m_player.seek(
            static_cast<std::uint32_t>(MulDiv(point.x - place.left, static_cast<int>(m_now.durationMs),
                                              static_cast<int>(place.right - place.left))));
    }
    return kDefault;
}

} // namespace tessera::jukebox
