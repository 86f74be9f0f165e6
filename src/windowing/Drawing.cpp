#include "windowing/Drawing.h"

#include "base/Text.h"

#include <iterator>

namespace tessera {

DoubleBuffer::DoubleBuffer(HDC target, const RECT& area)
    : m_target(target),
      m_area(area),
      m_memory(target),
      m_bitmap(CreateCompatibleBitmap(target, area.right - area.left, area.bottom - area.top))
{
    if (m_bitmap) {
        m_old = SelectObject(m_memory.dc(), m_bitmap.get());
        SetViewportOrgEx(m_memory.dc(), -area.left, -area.top, nullptr);
        SelectObject(m_memory.dc(), GetCurrentObject(target, OBJ_FONT));
    }
}

DoubleBuffer::~DoubleBuffer()
{
    if (!m_bitmap) {
        return;
    }
    BitBlt(m_target, m_area.left, m_area.top, m_area.right - m_area.left, m_area.bottom - m_area.top,
           m_memory.dc(), m_area.left, m_area.top, SRCCOPY);
    SelectObject(m_memory.dc(), m_old);
}

// Some controls keep their window visible meanwhile, and then each change of a scroll bar paints it.
RedrawOff::RedrawOff(HWND window, bool erase) : m_erase(erase)
{
    if ((GetWindowLongA(window, GWL_STYLE) & WS_VISIBLE) != 0) {
        m_window = window;
        SendMessageA(m_window, WM_SETREDRAW, FALSE, 0);
        DefWindowProcA(m_window, WM_SETREDRAW, FALSE, 0);
    }
}

RedrawOff::~RedrawOff()
{
    if (!m_window) {
        return;
    }
    SendMessageA(m_window, WM_SETREDRAW, TRUE, 0);
    DefWindowProcA(m_window, WM_SETREDRAW, TRUE, 0);
    RedrawWindow(m_window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | (m_erase ? RDW_ERASE : 0));
}

FontHandle makeFont(const std::string& face, int height, LONG weight)
{
    LOGFONTA description{};
    description.lfHeight = height;
    description.lfWeight = weight;
    description.lfCharSet = DEFAULT_CHARSET;
    face.copy(description.lfFaceName, LF_FACESIZE - 1);
    return makeFont(description);
}

FontHandle makeFont(const LOGFONTA& description)
{
    return FontHandle(CreateFontIndirectA(&description));
}

int scaled(int pixels, HDC dc)
{
    return MulDiv(pixels, GetDeviceCaps(dc, LOGPIXELSX), 96);
}

int scaled(int pixels, HWND window)
{
    return scaled(pixels, WindowDc(window).dc());
}

// No code page has more units than bytes.
WideText::WideText(std::string_view text)
{
    if (text.empty())
        return;
    if (text.size() <= std::size(m_short)) {
        m_size = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), m_short,
                                     static_cast<int>(std::size(m_short)));
        return;
    }
    const std::u16string wide = toWide(text);
    m_long.assign(wide.begin(), wide.end());
    m_size = static_cast<int>(m_long.size());
}

void drawLine(HDC dc, std::string_view text, const RECT& place, UINT flags)
{
    RECT area = place;
    drawFormatted(dc, text, area, flags | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

int drawFormatted(HDC dc, std::string_view text, RECT& place, UINT flags)
{
    const WideText wide(text);
    return DrawTextW(dc, wide.data(), wide.size(), &place, flags);
}

SIZE textSize(HDC dc, std::string_view text)
{
    const WideText wide(text);
    SIZE size{};
    GetTextExtentPoint32W(dc, wide.data(), wide.size(), &size);
    return size;
}

void fillRect(HDC dc, const RECT& place, COLORREF colour)
{
    const COLORREF old = SetBkColor(dc, colour);
    ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &place, nullptr, 0, nullptr);
    SetBkColor(dc, old);
}

} // namespace tessera
