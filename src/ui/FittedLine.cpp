#include "ui/FittedLine.h"

#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const wchar_t* kEllipsis = L"...";

int widthOf(std::wstring_view text, HDC dc)
{
    SIZE size{};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

// Whole characters only, and no blank before the ellipsis.
std::wstring_view fittingPart(std::wstring_view text, HDC dc, int width)
{
    int fits = 0;
    SIZE size{};
    GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), std::max(width, 0), &fits, nullptr,
                          &size);
    std::wstring_view part = text.substr(0, static_cast<std::size_t>(fits));
    if (!part.empty() && IS_HIGH_SURROGATE(part.back()))
        part.remove_suffix(1);
    while (part.ends_with(L' '))
        part.remove_suffix(1);
    return part;
}

} // namespace

FittedLine fitLine(HDC dc, std::string_view text, int width)
{
    const WideText wide(text);
    const std::wstring_view whole(wide.data(), static_cast<std::size_t>(wide.size()));
    if (whole.empty())
        return {};
    if (const int wholeWidth = widthOf(whole, dc); wholeWidth <= width)
        return {std::wstring(whole), wholeWidth};
    std::wstring cut(fittingPart(whole, dc, width - widthOf(kEllipsis, dc)));
    cut += kEllipsis;
    const int cutWidth = widthOf(cut, dc);
    return {std::move(cut), cutWidth};
}

void drawFitted(HDC dc, const FittedLine& line, LONG x, LONG y, const RECT& clip)
{
    if (!line.text.empty())
        ExtTextOutW(dc, static_cast<int>(x), static_cast<int>(y), ETO_CLIPPED, &clip, line.text.data(),
                    static_cast<UINT>(line.text.size()), nullptr);
}

} // namespace tessera
