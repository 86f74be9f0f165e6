#pragma once

#include <windows.h>

namespace tessera {

// `percent` of `second` in `first`.
inline COLORREF mixed(COLORREF first, COLORREF second, int percent)
{
    const auto part = [percent](int a, int b) {
        return static_cast<BYTE>((a * (100 - percent) + b * percent) / 100);
    };
    return RGB(part(GetRValue(first), GetRValue(second)), part(GetGValue(first), GetGValue(second)),
               part(GetBValue(first), GetBValue(second)));
}

// Black or white, whichever reads better on the background.
inline COLORREF readableOn(COLORREF background)
{
    const int brightness =
        (GetRValue(background) * 299 + GetGValue(background) * 587 + GetBValue(background) * 114) / 1000;
    return brightness >= 140 ? RGB(0, 0, 0) : RGB(255, 255, 255);
}

} // namespace tessera
