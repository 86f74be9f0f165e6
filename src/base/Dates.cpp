#include "base/Dates.h"

namespace tessera {

DateParts splitDate(std::int32_t date)
{
    return {date / 10000, date / 100 % 100, date % 100};
}

std::int32_t joinDate(DateParts parts)
{
    return parts.year * 10000 + parts.month * 100 + parts.day;
}

} // namespace tessera
