#include "ui/CalendarModel.h"

#include <gtest/gtest.h>
#include <ostream>

namespace tessera {

namespace {

using Day = CalendarModel::Day;

Day ymd(int year, unsigned month, unsigned day)
{
    return {std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
}

// YYYYMMDD, so that failures can be read.
int number(Day day)
{
    return static_cast<int>(day.year()) * 10000 + static_cast<int>(static_cast<unsigned>(day.month())) * 100 +
           static_cast<int>(static_cast<unsigned>(day.day()));
}

int number(CalendarModel::Month month)
{
    return number(month / std::chrono::day(1)) / 100;
}

} // namespace

TEST(CalendarModel, MovesKeepToTheCalendar)
{
    using Move = void (*)(CalendarModel&);
    const struct {
        Day from;
        Move move;
        int to;
    } cases[] = {
        {ymd(2026, 1, 31), [](CalendarModel& m) { m.moveMonths(1); }, 20260228},
        {ymd(2024, 1, 31), [](CalendarModel& m) { m.moveMonths(1); }, 20240229},
        {ymd(1900, 1, 30), [](CalendarModel& m) { m.moveMonths(1); }, 19000228},
        {ymd(2000, 3, 31), [](CalendarModel& m) { m.moveMonths(-1); }, 20000229},
        {ymd(2024, 2, 29), [](CalendarModel& m) { m.moveMonths(12); }, 20250228},
        {ymd(2024, 12, 15), [](CalendarModel& m) { m.moveMonths(1); }, 20250115},
        {ymd(2024, 2, 28), [](CalendarModel& m) { m.moveDays(1); }, 20240229},
        {ymd(2023, 12, 29), [](CalendarModel& m) { m.moveDays(7); }, 20240105},
        {ymd(2024, 3, 1), [](CalendarModel& m) { m.moveDays(-1); }, 20240229},
        {ymd(2024, 2, 10), [](CalendarModel& m) { m.toLastOfMonth(); }, 20240229},
        {ymd(2024, 2, 10), [](CalendarModel& m) { m.toFirstOfMonth(); }, 20240201},
        {ymd(2024, 2, 10), [](CalendarModel& m) { m.select(ymd(2023, 2, 29)); }, 20240210},
        {ymd(9999, 12, 30), [](CalendarModel& m) { m.moveDays(7); }, 99991231},
        {ymd(9999, 11, 30), [](CalendarModel& m) { m.moveMonths(12); }, 99991230},
        {ymd(1601, 1, 3), [](CalendarModel& m) { m.moveDays(-7); }, 16010101},
        {ymd(1601, 2, 3), [](CalendarModel& m) { m.moveMonths(-12); }, 16010103},
        {ymd(1500, 5, 5), [](CalendarModel&) {}, 16010101},
        {ymd(30000, 5, 5), [](CalendarModel&) {}, 99991231},
    };
    for (const auto& one : cases) {
        CalendarModel model(one.from);
        one.move(model);
        EXPECT_EQ(number(model.selected()), one.to) << "from " << number(one.from);
        EXPECT_EQ(number(model.shownMonth(0)), one.to / 100) << "from " << number(one.from);
    }
}

TEST(CalendarModel, ShowsTheSelectedDayMovingAsLittleAsPossible)
{
    CalendarModel model(ymd(2026, 11, 24));
    model.setMonths(2);
    EXPECT_EQ(number(model.shownMonth(0)), 202611);
    model.moveMonths(1); // the second month: nothing moves
    EXPECT_EQ(number(model.shownMonth(0)), 202611);
    model.moveMonths(1);
    EXPECT_EQ(number(model.shownMonth(0)), 202612);
    model.select(ymd(2026, 6, 1));
    EXPECT_EQ(number(model.shownMonth(0)), 202606);
    model.setMonths(1);
    model.setMonths(0);
    EXPECT_EQ(model.months(), 1);
    EXPECT_EQ(model.indexOf(model.shownMonth(1)), -1);
}

} // namespace tessera
