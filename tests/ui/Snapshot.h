#pragma once

#include "windowing/Drawing.h"

#include <vector>

namespace tessera {

// What a window's client area shows, taken at once: asking the screen for each pixel takes long.
class Snapshot {
public:
    explicit Snapshot(HWND window)
    {
        RECT area{};
        GetClientRect(window, &area);
        m_width = area.right;
        m_height = area.bottom;
        m_pixels.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
        const WindowDc dc(window);
        const BitmapHandle bitmap(CreateCompatibleBitmap(dc.dc(), m_width, m_height));
        {
            const MemoryDc memory(dc.dc());
            const SelectScope selected(memory.dc(), bitmap.get());
            BitBlt(memory.dc(), 0, 0, m_width, m_height, dc.dc(), 0, 0, SRCCOPY);
        }
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, m_width, -m_height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        GetDIBits(dc.dc(), bitmap.get(), 0, static_cast<UINT>(m_height), m_pixels.data(), &info,
                  DIB_RGB_COLORS);
    }
    int width() const { return m_width; }
    int height() const { return m_height; }
    // CLR_INVALID outside.
    COLORREF at(int x, int y) const
    {
        if (x < 0 || y < 0 || x >= m_width || y >= m_height)
            return CLR_INVALID;
        const DWORD pixel = m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                                     static_cast<std::size_t>(x)];
        return RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
    }

private:
    int m_width = 0;
    int m_height = 0;
    std::vector<DWORD> m_pixels; // 0x00RRGGBB
};

} // namespace tessera
