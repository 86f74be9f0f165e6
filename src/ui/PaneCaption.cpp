#include "ui/PaneCaption.h"

#include "ui/Colours.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kSidePadding = 8;
constexpr int kGap = 16; // between title and status
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

RECT PaneCaption::titlePlace(HDC dc, const RECT& bar, const Commands& commands) const
{
    RECT place = bar;
    place.left += scaled(kSidePadding, dc);
    place.right = place.left + drawnWidth(dc, commands.boldListFont(), title);
    if (hasMenu)
        place.right += scaled(kMenuMark, dc);
    return place;
}

RECT PaneCaption::offerPlace(HDC dc, const RECT& bar, const Commands& commands) const
{
    RECT place = bar;
    place.left = titlePlace(dc, bar, commands).right + scaled(kGap, dc);
    const LONG room = bar.right - scaled(kSidePadding, dc) - place.left;
    const LONG width = offer.empty() ? 0 : drawnWidth(dc, commands.comboFont(), offer);
    place.right = place.left + std::max<LONG>(std::min(width, room), 0);
    return place;
}

// Above the bar's edge. It may not run into what is left of it, however long it is.
RECT PaneCaption::statusPlace(HDC dc, const RECT& bar, const Commands& commands) const
{
    const RECT link = offerPlace(dc, bar, commands);
    RECT place{link.right + (link.left < link.right ? scaled(kGap, dc) : 0), bar.top,
               bar.right - scaled(kSidePadding, dc), bar.bottom - 1};
    place.right = std::max(place.left, place.right);
    place.bottom = std::max(place.top, place.bottom);
    return place;
}

void PaneCaption::draw(HDC dc, const RECT& bar, Commands& commands) const
{
    const DcScope restore(dc);
    const COLORREF face = faceOf(commands);
    fillRect(dc, bar, face);
    drawEdge(dc, bar, mixed(face, RGB(0, 0, 0), 35));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, readableOn(face));

    const RECT name = titlePlace(dc, bar, commands);
    drawText(dc, commands.boldListFont(), title, name, DT_LEFT);
    if (hasMenu)
        drawMenuMark(dc, name);
    const RECT link = offerPlace(dc, bar, commands);
    if (link.left < link.right) {
        drawText(dc, commands.comboFont(), offer, link, DT_LEFT);
        const LONG line = (link.top + link.bottom + lineHeight(commands.comboFont())) / 2 - 1;
        fillRect(dc, {link.left, line, link.right, line + 1}, readableOn(face));
    }
}

void PaneCaption::drawStatus(HDC dc, const RECT& place, Commands& commands) const
{
    const DcScope restore(dc);
    const COLORREF face = faceOf(commands);
    fillRect(dc, place, face);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, readableOn(face));
    drawText(dc, commands.comboFont(), status, {place.left, place.top, place.right, place.bottom + 1},
             DT_RIGHT);
}

} // namespace tessera
