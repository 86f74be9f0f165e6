#pragma once

#include <string>
#include <string_view>
#include <windows.h>

namespace tessera {

// A line of text that is drawn many times: fitted into its place once, with an ellipsis where it ends.
struct FittedLine {
    std::wstring text;
    int width = 0; // pixels
};

// `dc` has the font selected in both.
FittedLine fitLine(HDC dc, std::string_view text, int width);
void drawFitted(HDC dc, const FittedLine& line, LONG x, LONG y, const RECT& clip);

} // namespace tessera
