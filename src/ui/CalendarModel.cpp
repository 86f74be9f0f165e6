#include "ui/CalendarModel.h"

#include <algorithm>

namespace tessera {

namespace {

using namespace std::chrono;
using Day = CalendarModel::Day;
using Month = CalendarModel::Month;

constexpr Day kFirstDay{year(1601), January, day(1)};
constexpr Day kLastDay{year(9999), December, day(31)};
constexpr Month kFirstMonth{year(1601), January};
constexpr Month kLastMonth{year(9999), December};

Month monthOf(Day one)
{
    return one.year() / one.month();
}

Day lastOf(Month month)
{
    return sys_days(month / last);
}

int distance(Month from, Month to)
{
    return static_cast<int>((to - from).count());
}

} // namespace

CalendarModel::CalendarModel(Day selected)
    : m_selected(std::clamp(selected, kFirstDay, kLastDay)), m_first(monthOf(m_selected))
{
}

int CalendarModel::indexOf(Month month) const
{
    const int index = distance(m_first, month);
    return index >= 0 && index < m_months ? index : -1;
}

CalendarModel::Month CalendarModel::lastFirst() const
{
    return kLastMonth - std::chrono::months(m_months - 1);
}

void CalendarModel::limitFirst()
{
    m_first = std::clamp(m_first, kFirstMonth, lastFirst());
}

bool CalendarModel::canScroll(int months) const
{
    return months < 0 ? m_first > kFirstMonth : m_first < lastFirst();
}

void CalendarModel::setMonths(int count)
{
    m_months = std::clamp(count, 1, distance(kFirstMonth, kLastMonth) + 1);
    select(m_selected);
    limitFirst();
}

void CalendarModel::select(Day day)
{
    if (!day.ok()) {
        return;
    }
    m_selected = std::clamp(day, kFirstDay, kLastDay);
    const Month month = monthOf(m_selected);
    m_first = std::clamp(m_first, month - std::chrono::months(m_months - 1), month);
    limitFirst();
}

void CalendarModel::moveDays(int days)
{
    select(sys_days(m_selected) + std::chrono::days(days));
}

void CalendarModel::moveMonths(int months)
{
    selectInMonth(std::clamp(monthOf(m_selected) + std::chrono::months(months), kFirstMonth, kLastMonth));
}

void CalendarModel::selectInMonth(Month month)
{
    select(month / std::min(m_selected.day(), lastOf(month).day()));
}

void CalendarModel::toFirstOfMonth()
{
    select(monthOf(m_selected) / day(1));
}

void CalendarModel::toLastOfMonth()
{
    select(lastOf(monthOf(m_selected)));
}

void CalendarModel::scroll(int months)
{
    m_first += std::chrono::months(months);
    limitFirst();
    const Month month = monthOf(m_selected);
    if (indexOf(month) < 0) {
        selectInMonth(std::clamp(month, m_first, shownMonth(m_months - 1)));
    }
}

} // namespace tessera
