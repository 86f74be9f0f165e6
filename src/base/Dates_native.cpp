#include "base/Dates.h"

#include "base/Text.h"

#include <chrono>

namespace tessera {

std::string longDate(std::int32_t date)
{
    static constexpr const char* kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                            "Thursday", "Friday", "Saturday"};
    static constexpr const char* kMonths[] = {"January",   "February", "March",    "April",
                                              "May",       "June",     "July",     "August",
                                              "September", "October",  "November", "December"};
    const DateParts parts = splitDate(date);
    if (!isDate(parts))
        return {};
    const std::chrono::year_month_day day{std::chrono::year(parts.year),
                                          std::chrono::month(static_cast<unsigned>(parts.month)),
                                          std::chrono::day(static_cast<unsigned>(parts.day))};
    const unsigned weekday = std::chrono::weekday(std::chrono::sys_days(day)).c_encoding();
    return format("%s, %s %d, %d", kDays[weekday], kMonths[parts.month - 1], parts.day, parts.year);
}

} // namespace tessera
