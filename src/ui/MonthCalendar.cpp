#include "ui/MonthCalendar.h"

#include "windowing/Drawing.h"

#include <array>
#include <windowsx.h>

namespace tessera {

namespace {

constexpr UINT_PTR kRepeatTimer = 1;
constexpr UINT kFirstRepeatMs = 400;
constexpr UINT kRepeatMs = 120;
constexpr int kGap = 10; // pixels at 96 dpi
constexpr int kMaxGrid = 99;

CalendarModel::Day dayOf(DateParts parts)
{
    return {std::chrono::year(parts.year), std::chrono::month(static_cast<unsigned>(parts.month)),
            std::chrono::day(static_cast<unsigned>(parts.day))};
}

POINT pointOf(const Message& message)
{
    return {GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
}

bool isDown(int key)
{
    return GetKeyState(key) < 0;
}

} // namespace

std::span<const MapEntry<MonthCalendar>> MonthCalendar::messageMap()
{
    using C = MonthCalendar;
    static constexpr std::array<MapEntry<C>, 18> kMap{{
        {WM_PAINT, &C::onPaint},
        {WM_PRINTCLIENT, &C::onPrintClient},
        {WM_ERASEBKGND, &C::onErase},
        {WM_SETFONT, &C::onSetFont},
        {WM_GETFONT, &C::onGetFont},
        {WM_GETDLGCODE, &C::onDialogCode},
        {WM_SETFOCUS, &C::onFocusChanged},
        {WM_KILLFOCUS, &C::onFocusChanged},
        {WM_KEYDOWN, &C::onKeyDown},
        {WM_LBUTTONDOWN, &C::onButtonDown},
        {WM_LBUTTONDBLCLK, &C::onDoubleClick},
        {WM_LBUTTONUP, &C::onButtonUp},
        {WM_CAPTURECHANGED, &C::onCaptureLost},
        {WM_MOUSEMOVE, &C::onMouseMove},
        {WM_MOUSELEAVE, &C::onMouseLeave},
        {WM_TIMER, &C::onTimer},
        {WM_SETCURSOR, &C::onSetCursor},
        {WM_MOUSEWHEEL, &C::onWheel},
    }};
    return kMap;
}

MonthCalendar::MonthCalendar() : m_model(today()) {}

MonthCalendar::Day MonthCalendar::today()
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return std::chrono::year(now.wYear) / std::chrono::month(now.wMonth) / std::chrono::day(now.wDay);
}

DateParts MonthCalendar::partsOf(Day day)
{
    return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day()))};
}

WindowClass MonthCalendar::windowClass() const
{
    return {"TesseraMonthCalendar", CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW};
}

bool MonthCalendar::create(HWND parent, UINT id, const RECT& place)
{
    m_texts = CalendarTexts::ofUser();
    m_model = CalendarModel(today());
    m_model.setMonths(m_rows * m_columns);
    const WindowStyle style{WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP, WS_EX_CLIENTEDGE};
    return Window::create(parent, id, place, style, longDate(joinDate(selected())));
}

void MonthCalendar::setGrid(int rows, int columns)
{
    const auto isCount = [](int count) { return count >= 1 && count <= kMaxGrid; };
    m_rows = isCount(rows) ? rows : m_rows;
    m_columns = isCount(columns) ? columns : m_columns;
    m_model.setMonths(m_rows * m_columns);
    InvalidateRect(handle(), nullptr, FALSE);
}

void MonthCalendar::select(DateParts day)
{
    if (!isDate(day)) {
        return;
    }
    m_model.select(dayOf(day));
    SetWindowTextA(handle(), longDate(joinDate(day)).c_str());
    InvalidateRect(handle(), nullptr, FALSE);
}

DateParts MonthCalendar::selected() const
{
    return partsOf(m_model.selected());
}

DateParts MonthCalendar::firstShown() const
{
    return partsOf(m_model.shownMonth(0) / std::chrono::day(1));
}

CalendarLayout MonthCalendar::layout() const
{
    const RECT client = clientRect();
    return {{client.right, client.bottom}, m_rows, m_columns, scaled(kGap, handle())};
}

int MonthCalendar::placeOf(Day day) const
{
    const std::chrono::sys_days first = day.year() / day.month() / std::chrono::day(1);
    return m_texts.columnOf(std::chrono::weekday(first)) +
           static_cast<int>(static_cast<unsigned>(day.day())) - 1;
}

RECT MonthCalendar::dayRect(DateParts day) const
{
    if (!isDate(day)) {
        return {};
    }
    const Day wanted = dayOf(day);
    const int index = m_model.indexOf(wanted.year() / wanted.month());
    return index < 0 ? RECT{} : layout().day(index, placeOf(wanted));
}

MonthCalendar::Target MonthCalendar::targetAt(POINT point) const
{
    const CalendarLayout places = layout();
    const struct {
        RECT rect;
        Part part;
    } parts[] = {
        {places.previous(), Part::Previous}, {places.next(), Part::Next}, {todayRect(), Part::Today}};
    for (const auto& one : parts) {
        if (PtInRect(&one.rect, point)) {
            return {one.part, {}};
        }
    }
    return dayAt(point);
}

MonthCalendar::Target MonthCalendar::dayAt(POINT point) const
{
    const CalendarLayout places = layout();
    const int index = places.monthAt(point);
    const int place = index < 0 ? -1 : places.placeAt(index, point);
    if (place < 0) {
        return {};
    }
    const Day first = m_model.shownMonth(index) / std::chrono::day(1);
    const int number = place - placeOf(first) + 1;
    const Day day = m_model.shownMonth(index) / std::chrono::day(static_cast<unsigned>(number));
    return number >= 1 && day.ok() ? Target{Part::Day, day} : Target{};
}

template <class Move>
void MonthCalendar::change(Move&& move)
{
    const Day before = m_model.selected();
    move();
    InvalidateRect(handle(), nullptr, FALSE);
    if (m_model.selected() == before) {
        return;
    }
    SetWindowTextA(handle(), longDate(joinDate(selected())).c_str());
    SendMessageA(GetParent(handle()), WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(handle())), kSelected),
                 reinterpret_cast<LPARAM>(handle()));
}

void MonthCalendar::scroll(int months)
{
    change([&] { m_model.scroll(months); });
}

Handled MonthCalendar::onPaint(const Message&)
{
    const PaintScope paint(handle());
    const DoubleBuffer buffer(paint.dc(), clientRect());
    draw(buffer.dc());
    return 0;
}

Handled MonthCalendar::onPrintClient(const Message& message)
{
    draw(reinterpret_cast<HDC>(message.wParam));
    return 0;
}

Handled MonthCalendar::onSetFont(const Message& message)
{
    m_hFont = reinterpret_cast<HFONT>(message.wParam);
    LOGFONTA bold{};
    m_fntBold.reset();
    m_fntLink.reset();
    if (GetObjectA(m_hFont, sizeof bold, &bold) != 0) {
        LOGFONTA link = bold;
        bold.lfWeight = FW_BOLD;
        link.lfUnderline = TRUE;
        m_fntBold = makeFont(bold);
        m_fntLink = makeFont(link);
    }
    InvalidateRect(handle(), nullptr, FALSE);
    return 0;
}

Handled MonthCalendar::onGetFont(const Message&)
{
    return reinterpret_cast<LRESULT>(m_hFont);
}

Handled MonthCalendar::onFocusChanged(const Message&)
{
    InvalidateRect(handle(), nullptr, FALSE);
    return 0;
}

Handled MonthCalendar::onKeyDown(const Message& message)
{
    change([&] { moveByKey(message.wParam); });
    return 0;
}

void MonthCalendar::moveByKey(WPARAM key)
{
    const int months = isDown(VK_CONTROL) ? 12 : 1;
    switch (key) {
    case VK_LEFT:
        return m_model.moveDays(-1);
    case VK_RIGHT:
        return m_model.moveDays(1);
    case VK_UP:
        return m_model.moveDays(-7);
    case VK_DOWN:
        return m_model.moveDays(7);
    case VK_PRIOR:
        return m_model.moveMonths(-months);
    case VK_NEXT:
        return m_model.moveMonths(months);
    case VK_HOME:
        return m_model.toFirstOfMonth();
    case VK_END:
        return m_model.toLastOfMonth();
    }
}

Handled MonthCalendar::onButtonDown(const Message& message)
{
    SetFocus(handle());
    const Target target = targetAt(pointOf(message));
    setHot(target);
    press(target);
    return 0;
}

void MonthCalendar::press(const Target& target)
{
    switch (target.part) {
    case Part::Day:
        return change([&] { m_model.select(target.day); });
    case Part::Today:
        return change([&] { m_model.select(today()); });
    case Part::Previous:
    case Part::Next:
        SetCapture(handle());
        m_pressed = target.part;
        SetTimer(handle(), kRepeatTimer, kFirstRepeatMs, nullptr);
        return scroll(target.part == Part::Next ? 1 : -1);
    case Part::None:
        return;
    }
}

// The first click has selected the day already, unless the user is quick at an arrow.
Handled MonthCalendar::onDoubleClick(const Message& message)
{
    onButtonDown(message);
    if (targetAt(pointOf(message)).part == Part::Day) {
        SendMessageA(GetParent(handle()), WM_COMMAND,
                     MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(handle())), kChosen),
                     reinterpret_cast<LPARAM>(handle()));
    }
    return 0;
}

Handled MonthCalendar::onButtonUp(const Message&)
{
    if (m_pressed != Part::None) {
        ReleaseCapture();
    }
    return 0;
}

Handled MonthCalendar::onCaptureLost(const Message&)
{
    m_pressed = Part::None;
    KillTimer(handle(), kRepeatTimer);
    return 0;
}

Handled MonthCalendar::onTimer(const Message& message)
{
    if (message.wParam != kRepeatTimer || m_pressed == Part::None) {
        return kDefault;
    }
    SetTimer(handle(), kRepeatTimer, kRepeatMs, nullptr);
    if (m_hot.part == m_pressed) {
        scroll(m_pressed == Part::Next ? 1 : -1);
    }
    return 0;
}

Handled MonthCalendar::onMouseMove(const Message& message)
{
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, handle(), 0};
    TrackMouseEvent(&track);
    setHot(targetAt(pointOf(message)));
    return 0;
}

Handled MonthCalendar::onMouseLeave(const Message&)
{
    setHot({});
    return 0;
}

void MonthCalendar::setHot(const Target& target)
{
    if (target != m_hot) {
        m_hot = target;
        InvalidateRect(handle(), nullptr, FALSE);
    }
}

Handled MonthCalendar::onSetCursor(const Message& message)
{
    if (LOWORD(message.lParam) != HTCLIENT || m_hot.part != Part::Today) {
        return kDefault;
    }
    SetCursor(LoadCursorA(nullptr, IDC_HAND));
    return TRUE;
}

Handled MonthCalendar::onWheel(const Message& message)
{
    if (const int notches = m_wheel.add(message.wParam); notches != 0) {
        scroll(-notches);
    }
    return 0;
}

} // namespace tessera
