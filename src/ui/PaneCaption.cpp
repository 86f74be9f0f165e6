#include "ui/PaneCaption.h"

#include "ui/Colours.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

namespace tessera {

namespace {

constexpr int kSidePadding = 8;
constexpr int kGap = 16; // between title and status
constexpr int kVerticalPadding = 4;

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

void drawEdge(HDC dc, const RECT& bar, COLORREF colour)
{
    fillRect(dc, {bar.left, bar.bottom - 1, bar.right, bar.bottom}, colour);
}

} // namespace

int PaneCaption::height(const Commands& commands) const
{
    const WindowDc screen;
    return lineHeight(commands.boldListFont()) + 2 * scaled(kVerticalPadding, screen.dc());
}

void PaneCaption::draw(HDC dc, const RECT& bar, Commands& commands) const
{
    const DcScope restore(dc);
    const COLORREF face = mixed(commands.frameFace(), RGB(0, 0, 0), 45);
    fillRect(dc, bar, face);
    drawEdge(dc, bar, mixed(face, RGB(0, 0, 0), 35));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, readableOn(face));

    RECT place = bar;
    InflateRect(&place, -scaled(kSidePadding, dc), 0);
    drawText(dc, commands.boldListFont(), title, place, DT_LEFT);
    // The status may not run into the title, however long it is.
    place.left += drawnWidth(dc, commands.boldListFont(), title) + scaled(kGap, dc);
    if (place.left < place.right)
        drawText(dc, commands.comboFont(), status, place, DT_RIGHT);
}

} // namespace tessera
