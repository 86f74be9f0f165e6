#pragma once

#include <array>
#include <chrono>
#include <string>

namespace tessera {

// What a calendar says, by the user's locale.
struct CalendarTexts {
    static CalendarTexts ofUser();

    std::array<std::string, 7> weekdays; // short; in the order of the columns
    unsigned firstWeekday = 0;           // of the left column; 0 is Sunday

    // From 0 to 6.
    int columnOf(std::chrono::weekday weekday) const;
};

// Month and year; empty outside the years that the system formats.
std::string monthTitle(std::chrono::year_month month);

} // namespace tessera
