#include "base/Dates.h"

#include "base/UserLocale_windows.h"

namespace tessera {

std::string longDate(std::int32_t date)
{
    const DateParts parts = splitDate(date);
    if (!isDate(parts))
        return {};
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(parts.year);
    time.wMonth = static_cast<WORD>(parts.month);
    time.wDay = static_cast<WORD>(parts.day);
    return userDateText(DATE_LONGDATE, time);
}

} // namespace tessera
