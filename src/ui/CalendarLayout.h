#pragma once

#include <windows.h>

namespace tessera {

// Where everything of a calendar is: a grid of months, each with a title, a row of weekdays and six
// rows of days, and one line below all of them. Places are 0 to 41, left to right and down.
class CalendarLayout {
public:
    static constexpr int kColumns = 7;
    static constexpr int kWeeks = 6;

    CalendarLayout(SIZE area, int rows, int columns, int gap);

    RECT month(int index) const; // without the gap round it
    RECT title(int index) const;
    RECT weekday(int index, int column) const;
    RECT day(int index, int place) const;
    RECT previous() const; // the arrows stand at both ends of the first row of titles
    RECT next() const;
    RECT footer() const; // the line below

    // The month under the point; -1: none.
    int monthAt(POINT point) const;
    // The place in that month; -1: none.
    int placeAt(int index, POINT point) const;

private:
    RECT cell(int index, int line, int column) const;
    int m_rows;
    int m_columns;
    int m_gap;
    int m_cellWidth;
    int m_lineHeight;
    POINT m_origin; // the first month's corner
};

} // namespace tessera
