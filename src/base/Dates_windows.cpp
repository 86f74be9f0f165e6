#include "base/Dates.h"

#include <windows.h>

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
    char text[128];
    const int length = GetDateFormatA(LOCALE_USER_DEFAULT, DATE_LONGDATE, &time, nullptr, text, sizeof text);
    return length > 0 ? std::string(text, static_cast<std::size_t>(length - 1)) : std::string{};
}

} // namespace tessera
