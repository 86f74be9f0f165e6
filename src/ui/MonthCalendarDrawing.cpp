#include "ui/Colours.h"
#include "ui/MonthCalendar.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr UINT kCentred = DT_CENTER | DT_VCENTER;
constexpr int kMarkerGap = 5; // pixels at 96 dpi

COLORREF windowColour()
{
    return GetSysColor(COLOR_WINDOW);
}

COLORREF faint(int percent)
{
    return mixed(windowColour(), GetSysColor(COLOR_WINDOWTEXT), percent);
}

// Readable on the window's colour, unlike some themes' colour of links.
COLORREF accent()
{
    return mixed(GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_WINDOWTEXT), 30);
}

void frame(HDC dc, const RECT& rect, COLORREF colour)
{
    const PenHandle pen(CreatePen(PS_SOLID, scaled(1, dc), colour));
    const SelectScope line(dc, pen.get());
    const SelectScope hollow(dc, GetStockObject(NULL_BRUSH));
    Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
}

RECT deflated(RECT rect, int by)
{
    InflateRect(&rect, -by, -by);
    return rect;
}

} // namespace

void MonthCalendar::draw(HDC dc) const
{
    const DcScope restore(dc);
    fillRect(dc, clientRect(), windowColour());
    SetBkMode(dc, TRANSPARENT);
    const SelectScope font(dc, m_hFont ? m_hFont : GetStockObject(DEFAULT_GUI_FONT));
    const CalendarLayout places = layout();
    for (int index = 0; index < m_model.months(); ++index) {
        drawMonth(dc, places, index);
    }
    drawArrow(dc, places.previous(), -1);
    drawArrow(dc, places.next(), 1);
    drawFooter(dc);
}

void MonthCalendar::drawMonth(HDC dc, const CalendarLayout& places, int index) const
{
    const CalendarModel::Month month = m_model.shownMonth(index);
    const RECT title = places.title(index);
    fillRect(dc, title, GetSysColor(COLOR_BTNFACE));
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    {
        const SelectScope bold(dc, m_fntBold ? m_fntBold.get() : GetCurrentObject(dc, OBJ_FONT));
        drawLine(dc, monthTitle(month), title, kCentred);
    }
    drawWeekdays(dc, places, index);
    for (Day day = month / std::chrono::day(1); day.ok(); day = month / (day.day() + std::chrono::days(1))) {
        drawDay(dc, day, places.day(index, placeOf(day)));
    }
}

void MonthCalendar::drawWeekdays(HDC dc, const CalendarLayout& places, int index) const
{
    SetTextColor(dc, faint(65));
    for (int column = 0; column < CalendarLayout::kColumns; ++column) {
        drawLine(dc, m_texts.weekdays[static_cast<std::size_t>(column)], places.weekday(index, column),
                 kCentred);
    }
    RECT rule = places.month(index);
    rule.bottom = places.day(index, 0).top;
    rule.top = rule.bottom - 1;
    fillRect(dc, rule, faint(25));
}

void MonthCalendar::drawDay(HDC dc, Day day, const RECT& cell) const
{
    const RECT inside = deflated(cell, scaled(1, dc));
    const bool selected = day == m_model.selected();
    const bool focused = selected && GetFocus() == handle();
    if (selected) {
        fillRect(dc, inside, GetSysColor(COLOR_HIGHLIGHT));
    } else if (m_hot == Target{Part::Day, day}) {
        fillRect(dc, inside, mixed(windowColour(), GetSysColor(COLOR_HIGHLIGHT), 20));
    }
    if (day == today()) {
        frame(dc, cell, accent());
    }
    SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    drawLine(dc, std::to_string(static_cast<unsigned>(day.day())), cell, kCentred);
    if (focused) {
        DrawFocusRect(dc, &inside);
    }
}

void MonthCalendar::drawArrow(HDC dc, const RECT& cell, int direction) const
{
    const Part part = direction < 0 ? Part::Previous : Part::Next;
    const COLORREF colour = !m_model.canScroll(direction) ? GetSysColor(COLOR_GRAYTEXT)
                            : m_hot.part == part          ? accent()
                                                          : GetSysColor(COLOR_BTNTEXT);
    const int half = static_cast<int>(std::min(cell.bottom - cell.top, cell.right - cell.left)) / 4;
    const LONG x = (cell.left + cell.right) / 2;
    const LONG y = (cell.top + cell.bottom) / 2;
    const POINT corners[] = {{x - direction * half / 2, y - half},
                             {x - direction * half / 2, y + half},
                             {x + direction * (half - half / 2), y}};
    const BrushHandle brush(CreateSolidBrush(colour));
    const PenHandle pen(CreatePen(PS_SOLID, 1, colour));
    const SelectScope fill(dc, brush.get());
    const SelectScope line(dc, pen.get());
    Polygon(dc, corners, 3);
}

void MonthCalendar::drawFooter(HDC dc) const
{
    frame(dc, markerRect(), accent());
    RECT text = todayRect();
    text.left = markerRect().right + scaled(kMarkerGap, dc);
    SetTextColor(dc, accent());
    const bool hot = m_hot.part == Part::Today && m_fntLink;
    const SelectScope font(dc, hot ? m_fntLink.get() : GetCurrentObject(dc, OBJ_FONT));
    drawLine(dc, todayText(), text, DT_LEFT | DT_VCENTER);
}

// As wide as the rings round days, a little lower than the line.
RECT MonthCalendar::markerRect() const
{
    const CalendarLayout places = layout();
    RECT rect = places.footer();
    const RECT day = places.day(0, 0);
    rect.right = rect.left + day.right - day.left;
    return deflated(rect, 2);
}

RECT MonthCalendar::todayRect() const
{
    RECT rect = layout().footer();
    const WindowDc dc(handle());
    const SelectScope font(dc.dc(), m_hFont ? m_hFont : GetStockObject(DEFAULT_GUI_FONT));
    const LONG right = markerRect().right + scaled(kMarkerGap, dc.dc()) + textSize(dc.dc(), todayText()).cx;
    rect.right = std::min(rect.right, right);
    return rect;
}

std::string MonthCalendar::todayText() const
{
    return "Today: " + longDate(joinDate(partsOf(today())));
}

} // namespace tessera
