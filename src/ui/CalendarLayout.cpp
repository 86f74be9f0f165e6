#include "ui/CalendarLayout.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kHeaderLines = 2; // title and weekdays
constexpr int kMonthLines = kHeaderLines + CalendarLayout::kWeeks;

} // namespace

// What is left over by the division is outside, half on each side.
CalendarLayout::CalendarLayout(SIZE area, int rows, int columns, int gap)
    : m_rows(rows),
      m_columns(columns),
      m_gap(gap),
      m_cellWidth(std::max(0, (static_cast<int>(area.cx) - gap * (columns + 1)) / (columns * kColumns))),
      m_lineHeight(std::max(0, static_cast<int>(area.cy) / (rows * kMonthLines + 1))),
      m_origin{(area.cx - m_cellWidth * kColumns * columns - gap * (columns - 1)) / 2,
               (area.cy - m_lineHeight * (rows * kMonthLines + 1)) / 2}
{
}

RECT CalendarLayout::cell(int index, int line, int column) const
{
    const int x = index % m_columns * (m_cellWidth * kColumns + m_gap) + column * m_cellWidth;
    const int y = (index / m_columns * kMonthLines + line) * m_lineHeight;
    return {m_origin.x + x, m_origin.y + y, m_origin.x + x + m_cellWidth, m_origin.y + y + m_lineHeight};
}

RECT CalendarLayout::month(int index) const
{
    RECT rect = cell(index, 0, 0);
    rect.right = rect.left + m_cellWidth * kColumns;
    rect.bottom = rect.top + m_lineHeight * kMonthLines;
    return rect;
}

RECT CalendarLayout::title(int index) const
{
    RECT rect = month(index);
    rect.bottom = rect.top + m_lineHeight;
    return rect;
}

RECT CalendarLayout::weekday(int index, int column) const
{
    return cell(index, 1, column);
}

RECT CalendarLayout::day(int index, int place) const
{
    return cell(index, kHeaderLines + place / kColumns, place % kColumns);
}

RECT CalendarLayout::previous() const
{
    return cell(0, 0, 0);
}

RECT CalendarLayout::next() const
{
    return cell(m_columns - 1, 0, kColumns - 1);
}

RECT CalendarLayout::footer() const
{
    RECT rect = cell((m_rows - 1) * m_columns, kMonthLines, 0);
    rect.right = cell(m_columns - 1, 0, kColumns - 1).right;
    return rect;
}

int CalendarLayout::monthAt(POINT point) const
{
    for (int index = 0; index < m_rows * m_columns; ++index) {
        const RECT rect = month(index);
        if (PtInRect(&rect, point)) {
            return index;
        }
    }
    return -1;
}

int CalendarLayout::placeAt(int index, POINT point) const
{
    for (int place = 0; place < kColumns * kWeeks; ++place) {
        const RECT rect = day(index, place);
        if (PtInRect(&rect, point)) {
            return place;
        }
    }
    return -1;
}

} // namespace tessera
