#include "ui/CalendarTexts.h"

#include "base/UserLocale_windows.h"

namespace tessera {

namespace {

// The system counts from Monday.
std::string weekdayName(unsigned weekday)
{
    return userLocaleText(LOCALE_SSHORTESTDAYNAME1 + (weekday + 6) % 7);
}

unsigned firstWeekdayOfUser()
{
    const std::string digit = userLocaleText(LOCALE_IFIRSTDAYOFWEEK); // 0: Monday
    return digit >= "0" && digit <= "6" ? static_cast<unsigned>(digit[0] - '0' + 1) % 7 : 0;
}

} // namespace

CalendarTexts CalendarTexts::ofUser()
{
    CalendarTexts texts;
    texts.firstWeekday = firstWeekdayOfUser();
    for (unsigned column = 0; column < 7; ++column) {
        texts.weekdays[column] = weekdayName((texts.firstWeekday + column) % 7);
    }
    return texts;
}

int CalendarTexts::columnOf(std::chrono::weekday weekday) const
{
    return static_cast<int>((weekday.c_encoding() + 7 - firstWeekday) % 7);
}

std::string monthTitle(std::chrono::year_month month)
{
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(static_cast<int>(month.year()));
    time.wMonth = static_cast<WORD>(static_cast<unsigned>(month.month()));
    time.wDay = 1;
    return userDateText(DATE_YEARMONTH, time);
}

} // namespace tessera
