#include "ui/PaneCaption.h"

#include "ui/Colours.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kSidePadding = 8;
constexpr int kFocusMargin = 4; // of a text that may have the focus, at both sides
constexpr int kGap = 16;        // between title and status
constexpr int kVerticalPadding = 4;
constexpr int kMenuMark = 14; // the triangle behind the title and what it keeps clear

int lineHeight(HFONT font)
{
    const WindowDc screen;
    const SelectScope selected(screen.dc(), font);
    TEXTMETRICA metrics{};
    GetTextMetricsA(screen.dc(), &metrics);
    return metrics.tmHeight;
}

int drawnWidth(HDC dc, HFONT font, const std::string& text)
{
    const SelectScope selected(dc, font);
    return static_cast<int>(textSize(dc, text).cx);
}

void drawText(HDC dc, HFONT font, const std::string& text, const RECT& place, UINT align)
{
    const SelectScope selected(dc, font);
    drawLine(dc, text, place, align | DT_VCENTER);
}

COLORREF faceOf(Commands& commands)
{
    return mixed(commands.frameFace(), RGB(0, 0, 0), 45);
}

void drawEdge(HDC dc, const RECT& bar, COLORREF colour)
{
    fillRect(dc, {bar.left, bar.bottom - 1, bar.right, bar.bottom}, colour);
}

void drawFace(HDC dc, const RECT& place, Commands& commands)
{
    const COLORREF face = faceOf(commands);
    fillRect(dc, place, face);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, readableOn(face));
}

// The bar is a line higher than what stands on it.
RECT textPlace(HDC dc, const RECT& place)
{
    const LONG margin = scaled(kFocusMargin, dc);
    return {place.left + margin, place.top, place.right - margin, place.bottom + 1};
}

// A triangle that points down, at the right of the title.
void drawMenuMark(HDC dc, const RECT& title)
{
    const LONG half = scaled(3, dc);
    const LONG middle = title.right - half - 1;
    const LONG top = (title.top + title.bottom - half) / 2;
    for (LONG row = 0; row <= half; ++row)
        fillRect(dc, {middle - half + row, top + row, middle + half - row + 1, top + row + 1},
                 GetTextColor(dc));
}

} // namespace

int PaneCaption::height(const Commands& commands) const
{
    const WindowDc screen;
    return lineHeight(commands.boldListFont()) + 2 * scaled(kVerticalPadding, screen.dc());
}

// All places are above the bar's edge.
RECT PaneCaption::titlePlace(HDC dc, const RECT& bar, const Commands& commands) const
{
    RECT place = bar;
    place.left += scaled(kSidePadding - kFocusMargin, dc);
    place.right = place.left + drawnWidth(dc, commands.boldListFont(), title) + scaled(2 * kFocusMargin, dc);
    if (hasMenu)
        place.right += scaled(kMenuMark, dc);
    place.bottom = std::max(bar.top, bar.bottom - 1);
    return place;
}

RECT PaneCaption::offerPlace(HDC dc, const RECT& bar, const Commands& commands) const
{
    RECT place = titlePlace(dc, bar, commands);
    place.left = place.right + scaled(kGap - 2 * kFocusMargin, dc);
    const LONG room = bar.right - scaled(kSidePadding, dc) - place.left;
    const LONG width =
        offer.empty() ? 0 : drawnWidth(dc, commands.comboFont(), offer) + scaled(2 * kFocusMargin, dc);
    place.right = place.left + std::max<LONG>(std::min(width, room), 0);
    return place;
}

// It may not run into what is left of it, however long it is.
RECT PaneCaption::statusPlace(HDC dc, const RECT& bar, const Commands& commands) const
{
    const RECT link = offerPlace(dc, bar, commands);
    RECT place = link;
    place.left = link.right + scaled(kFocusMargin, dc) + (link.left < link.right ? scaled(kGap, dc) : 0);
    place.right = std::max(place.left, bar.right - scaled(kSidePadding, dc));
    return place;
}

void PaneCaption::draw(HDC dc, const RECT& bar, Commands& commands) const
{
    const DcScope restore(dc);
    drawFace(dc, bar, commands);
    drawEdge(dc, bar, mixed(faceOf(commands), RGB(0, 0, 0), 35));
    if (!hasMenu)
        drawTitle(dc, titlePlace(dc, bar, commands), commands);
}

void PaneCaption::drawTitle(HDC dc, const RECT& place, Commands& commands) const
{
    const DcScope restore(dc);
    drawFace(dc, place, commands);
    const RECT text = textPlace(dc, place);
    drawText(dc, commands.boldListFont(), title, text, DT_LEFT);
    if (hasMenu)
        drawMenuMark(dc, text);
}

// Underlined.
void PaneCaption::drawOffer(HDC dc, const RECT& place, Commands& commands) const
{
    const DcScope restore(dc);
    drawFace(dc, place, commands);
    const RECT text = textPlace(dc, place);
    drawText(dc, commands.comboFont(), offer, text, DT_LEFT);
    const LONG line = (text.top + text.bottom + lineHeight(commands.comboFont())) / 2 - 1;
    fillRect(dc, {text.left, line, text.right, line + 1}, GetTextColor(dc));
}

void PaneCaption::drawStatus(HDC dc, const RECT& place, Commands& commands) const
{
    const DcScope restore(dc);
    drawFace(dc, place, commands);
    drawText(dc, commands.comboFont(), status, {place.left, place.top, place.right, place.bottom + 1},
             DT_RIGHT);
}

// The system's rectangle inverts, which cannot be seen on a medium grey.
void PaneCaption::drawFocus(HDC dc, const RECT& place, Commands& commands)
{
    const DcScope restore(dc);
    SetDCBrushColor(dc, readableOn(faceOf(commands)));
    FrameRect(dc, &place, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

} // namespace tessera
