#pragma once

#include <chrono>

namespace tessera {

// The day that a calendar marks, and the row of months that it shows: the day is always in one of
// them. Every move ends at a day from 1601-01-01 to 9999-12-31.
class CalendarModel {
public:
    using Day = std::chrono::year_month_day;
    using Month = std::chrono::year_month;

    explicit CalendarModel(Day selected);

    Day selected() const { return m_selected; }
    int months() const { return m_months; }
    Month shownMonth(int index) const { return m_first + std::chrono::months(index); }
    // From 0; -1 when the month is not shown.
    int indexOf(Month month) const;
    bool canScroll(int months) const;

    void setMonths(int count); // at least 1
    // What is no day of the calendar is ignored. Shows the day's month, moving as little as possible.
    void select(Day day);
    void moveDays(int days);
    // The same day of another month, or its last where it is shorter.
    void moveMonths(int months);
    void toFirstOfMonth();
    void toLastOfMonth();
    // Shows other months; the day goes along when it would be out of sight.
    void scroll(int months);

private:
    Month lastFirst() const;
    void selectInMonth(Month month);
    void limitFirst();

    Day m_selected;
    Month m_first;
    int m_months = 1;
};

} // namespace tessera
