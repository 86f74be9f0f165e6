#include "ui/DatePicker.h"

#include "base/Errors.h"
#include "windowing/Drawing.h"

#include <array>

namespace tessera {

namespace {

constexpr const char* kUnit = "DatePicker";
constexpr const char* kFace = "Tahoma";
constexpr int kPoints = 8;
constexpr UINT kSelectedText = 213;
constexpr UINT kRule = 214;

int pixelsOfPoints(int points)
{
    const WindowDc screen;
    return MulDiv(points, GetDeviceCaps(screen.dc(), LOGPIXELSY), 72);
}

} // namespace

std::span<const MapEntry<DatePicker>> DatePicker::messageMap()
{
    static constexpr std::array<MapEntry<DatePicker>, 2> kMap{{
        {kCalendar, MonthCalendar::kSelected, &DatePicker::onSelected},
        {kCalendar, MonthCalendar::kChosen, &DatePicker::onChosen},
    }};
    return kMap;
}

std::optional<std::int32_t> DatePicker::pickDate(HWND owner)
{
    if (showModal(owner, pattern()) != IDOK) {
        return std::nullopt;
    }
    return m_nDate;
}

DialogTemplate DatePicker::pattern() const
{
    DialogTemplate pattern("Select the date", 246, 156);
    pattern.add("STATIC", "", kCalendarFrame, {5, 6, 228, 92}, SS_BLACKFRAME)
        .label("", kSelectedText, {5, 107, 228, 10})
        .add("STATIC", "", kRule, {5, 126, 228, 1}, SS_ETCHEDHORZ)
        .button("OK", IDOK, {129, 135, 50, 14}, BS_DEFPUSHBUTTON)
        .button("Cancel", IDCANCEL, {183, 135, 50, 14});
    return pattern;
}

bool DatePicker::onInitDialog()
{
    if (!createCalendar()) {
        end(IDCANCEL);
        return true;
    }
    showSelected();
    SetFocus(m_calendar.handle());
    return false;
}

bool DatePicker::createCalendar()
{
    const HWND pWnd = item(kCalendarFrame);
    TESSERA_ASSERT(pWnd, kUnit);
    if (!pWnd) {
        return false;
    }
    RECT place{};
    GetWindowRect(pWnd, &place);
    MapWindowPoints(nullptr, handle(), reinterpret_cast<POINT*>(&place), 2);
    ShowWindow(pWnd, SW_HIDE);
    if (!m_calendar.create(handle(), kCalendar, place)) {
        return false;
    }
    m_fnt = makeFont(kFace, -pixelsOfPoints(kPoints));
    SendMessageA(m_calendar.handle(), WM_SETFONT, reinterpret_cast<WPARAM>(m_fnt.get()), FALSE);
    m_calendar.setGrid(1, 2);
    // First in the order of the Tab key.
    SetWindowPos(m_calendar.handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return true;
}

void DatePicker::onOk()
{
    m_nDate = joinDate(m_calendar.selected());
    Dialog::onOk();
}

void DatePicker::showSelected() const
{
    setItemText(kSelectedText, "Selected: " + longDate(joinDate(m_calendar.selected())));
}

void DatePicker::onSelected(const Command&)
{
    showSelected();
}

void DatePicker::onChosen(const Command&)
{
    onOk();
}

} // namespace tessera
