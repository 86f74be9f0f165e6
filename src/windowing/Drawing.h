#pragma once

#include "system/Handle.h"

#include <string>
#include <string_view>
#include <windows.h>

namespace tessera {

// WM_PAINT from begin to end.
class PaintScope {
public:
    explicit PaintScope(HWND window) : m_window(window) { BeginPaint(m_window, &m_paint); }
    ~PaintScope() { EndPaint(m_window, &m_paint); }
    PaintScope(const PaintScope&) = delete;
    PaintScope& operator=(const PaintScope&) = delete;

    HDC dc() const { return m_paint.hdc; }
    const RECT& dirty() const { return m_paint.rcPaint; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint{};
};

// The device context of a window's client area; null window: the screen.
class WindowDc {
public:
    explicit WindowDc(HWND window = nullptr) : m_window(window), m_dc(GetDC(window)) {}
    ~WindowDc() { ReleaseDC(m_window, m_dc); }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    HDC dc() const { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};

// A device context in memory; owned.
class MemoryDc {
public:
    explicit MemoryDc(HDC compatible = nullptr) : m_dc(CreateCompatibleDC(compatible)) {}
    ~MemoryDc() { DeleteDC(m_dc); }
    MemoryDc(const MemoryDc&) = delete;
    MemoryDc& operator=(const MemoryDc&) = delete;
    HDC dc() const { return m_dc; }

private:
    HDC m_dc;
};

// A font, pen, brush or bitmap that is selected until the end of the block.
class SelectScope {
public:
    SelectScope(HDC dc, HGDIOBJ object) : m_dc(dc), m_old(SelectObject(dc, object)) {}
    ~SelectScope() { SelectObject(m_dc, m_old); }
    SelectScope(const SelectScope&) = delete;
    SelectScope& operator=(const SelectScope&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_old;
};

// Colours, modes, origin and selected objects are as before at the end of the block.
class DcScope {
public:
    explicit DcScope(HDC dc) : m_dc(dc), m_state(SaveDC(dc)) {}
    ~DcScope() { RestoreDC(m_dc, m_state); }
    DcScope(const DcScope&) = delete;
    DcScope& operator=(const DcScope&) = delete;

private:
    HDC m_dc;
    int m_state;
};

// Draws into memory; what was drawn appears at once at the end of the block. Coordinates are
// those of the target. Without memory it draws on the target itself.
class DoubleBuffer {
public:
    DoubleBuffer(HDC target, const RECT& area);
    ~DoubleBuffer();
    DoubleBuffer(const DoubleBuffer&) = delete;
    DoubleBuffer& operator=(const DoubleBuffer&) = delete;
    HDC dc() const { return m_bitmap ? m_memory.dc() : m_target; }

private:
    HDC m_target;
    RECT m_area;
    MemoryDc m_memory;
    BitmapHandle m_bitmap;
    HGDIOBJ m_old = nullptr;
};

// No redrawing until the end of the block; then the window is repainted, its background too. A
// hidden window is left alone: switching redrawing on would show it.
class RedrawOff {
public:
    explicit RedrawOff(HWND window, bool erase = true);
    ~RedrawOff();
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    HWND m_window = nullptr;
    bool m_erase;
};

// Height in pixels, as users give it: "Tahoma", 14. Throws nothing; empty-handed when refused.
FontHandle makeFont(const std::string& face, int height, LONG weight = FW_NORMAL);
FontHandle makeFont(const LOGFONTA& description);

// Pixels at 96 dpi to pixels of the device.
int scaled(int pixels, HDC dc);
int scaled(int pixels, HWND window);

// Text of the system code page as drawing needs it: the system's 8-bit functions take text for the
// font's charset instead. A short text stays on the stack.
class WideText {
public:
    explicit WideText(std::string_view text);
    const wchar_t* data() const { return m_long.empty() ? m_short : m_long.data(); }
    int size() const { return m_size; } // in units

private:
    int m_size = 0;
    std::wstring m_long;
    wchar_t m_short[128];
};

// One line, cut with an ellipsis where it does not fit; '&' is an ordinary character.
void drawLine(HDC dc, std::string_view text, const RECT& place, UINT flags = DT_LEFT | DT_VCENTER);
// With the DT_ flags alone; answers the height, DT_CALCRECT puts the extent into `place`.
int drawFormatted(HDC dc, std::string_view text, RECT& place, UINT flags);
SIZE textSize(HDC dc, std::string_view text);
// Fills with a colour; no brush is made.
void fillRect(HDC dc, const RECT& place, COLORREF colour);

} // namespace tessera
