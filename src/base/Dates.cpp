#include "base/Dates.h"

#include <chrono>

namespace tessera {

DateParts splitDate(std::int32_t date)
{
    return {date / 10000, date / 100 % 100, date % 100};
}

std::int32_t joinDate(DateParts parts)
{
    return parts.year * 10000 + parts.month * 100 + parts.day;
}

bool isDate(DateParts parts)
{
    if (parts.year < 1601 || parts.year > 9999 || parts.month < 1 || parts.month > 12 || parts.day < 1 ||
        parts.day > 31) // the calendar's own types hold no more than a byte
        return false;
    return std::chrono::year_month_day{std::chrono::year(parts.year),
                                       std::chrono::month(static_cast<unsigned>(parts.month)),
                                       std::chrono::day(static_cast<unsigned>(parts.day))}
        .ok();
}

} // namespace tessera
