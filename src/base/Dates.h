#pragma once

#include <cstdint>
#include <string>

namespace tessera {

// Dates are decimal numbers YYYYMMDD; 0 is no date.
struct DateParts {
    int year;
    int month;
    int day;
};
DateParts splitDate(std::int32_t date);
std::int32_t joinDate(DateParts parts);
// A day of the calendar from 1601 to 9999, which is what the system formats.
bool isDate(DateParts parts);

// In the user's long date format; empty for 0 and for what is no date.
std::string longDate(std::int32_t date);

} // namespace tessera
