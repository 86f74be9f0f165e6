#include "ui/MonthCalendar.h"

#include "support/GdiObjects.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"
#include "windowing/MessageLoop.h"

#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace tessera {

namespace {

constexpr UINT kId = 77;

class CalendarOwner final : public Mapped<CalendarOwner> {
public:
    ~CalendarOwner() override { destroy(); }
    static std::span<const MapEntry<CalendarOwner>> messageMap()
    {
        static constexpr MapEntry<CalendarOwner> map[] = {{kId, &CalendarOwner::onCalendar}};
        return map;
    }
    MonthCalendar calendar;
    std::vector<UINT> codes;

private:
    void onCalendar(const Command& command) { codes.push_back(command.code); }
};

class MonthCalendarTest : public testing::Test {
protected:
    MonthCalendarTest()
    {
        SetCursorPos(1200, 1000);
        owner.create(nullptr, 0, {50, 50, 450, 250}, {WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN});
        calendar.create(owner.handle(), kId, {10, 10, 352, 160});
        SendMessageA(calendar.handle(), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
        calendar.setGrid(1, 2);
        SetFocus(calendar.handle());
        pumpWaiting();
    }
    ~MonthCalendarTest() override { releaseControl(); }

    std::int32_t selected() const { return joinDate(calendar.selected()); }
    std::int32_t firstShown() const { return joinDate(calendar.firstShown()); }
    void select(std::int32_t date) { calendar.select(splitDate(date)); }
    void key(WPARAM code) const { SendMessageA(calendar.handle(), WM_KEYDOWN, code, 1); }
    static void holdControl()
    {
        BYTE keys[256]{};
        GetKeyboardState(keys);
        keys[VK_CONTROL] = 0x80;
        SetKeyboardState(keys);
    }
    static void releaseControl()
    {
        BYTE keys[256]{};
        GetKeyboardState(keys);
        keys[VK_CONTROL] = 0;
        SetKeyboardState(keys);
    }
    void mouse(UINT message, const RECT& where) const
    {
        SendMessageA(calendar.handle(), message,
                     message == WM_LBUTTONUP || message == WM_MOUSEMOVE ? 0 : MK_LBUTTON,
                     MAKELPARAM((where.left + where.right) / 2, (where.top + where.bottom) / 2));
    }
    void click(const RECT& where) const
    {
        mouse(WM_LBUTTONDOWN, where);
        mouse(WM_LBUTTONUP, where);
    }
    RECT rectOf(std::int32_t date) const { return calendar.dayRect(splitDate(date)); }
    static std::int32_t today()
    {
        SYSTEMTIME now{};
        GetLocalTime(&now);
        return joinDate({now.wYear, now.wMonth, now.wDay});
    }
    COLORREF pixel(POINT point) const
    {
        UpdateWindow(calendar.handle());
        return GetPixel(WindowDc(calendar.handle()).dc(), point.x, point.y);
    }
    // Near a corner, where no digit is.
    COLORREF groundOf(std::int32_t date) const
    {
        const RECT cell = rectOf(date);
        return pixel({cell.right - 4, cell.top + 3});
    }

    FontHandle font = makeFont("Tahoma", -11);
    CalendarOwner owner;
    MonthCalendar& calendar = owner.calendar;
};

} // namespace

TEST_F(MonthCalendarTest, KeysMoveTheDay)
{
    select(20240131);
    const struct {
        WPARAM code;
        std::int32_t date;
    } steps[] = {{VK_NEXT, 20240229}, {VK_RIGHT, 20240301}, {VK_LEFT, 20240229},
                 {VK_HOME, 20240201}, {VK_UP, 20240125},    {VK_DOWN, 20240201},
                 {VK_END, 20240229},  {VK_PRIOR, 20240129}, {VK_LEFT, 20240128}};
    for (const auto& step : steps) {
        key(step.code);
        EXPECT_EQ(selected(), step.date);
        EXPECT_FALSE(IsRectEmpty(&static_cast<const RECT&>(rectOf(step.date))));
    }
    EXPECT_EQ(windowText(calendar.handle()), longDate(20240128));
    EXPECT_EQ(owner.codes, std::vector<UINT>(std::size(steps), MonthCalendar::kSelected));
    key('A');
    key(VK_RETURN);
    EXPECT_EQ(owner.codes.size(), std::size(steps)) << "nothing else is selected";
    EXPECT_EQ(SendMessageA(calendar.handle(), WM_GETDLGCODE, 0, 0), DLGC_WANTARROWS);
    holdControl();
    key(VK_NEXT);
    EXPECT_EQ(selected(), 20250128);
    key(VK_PRIOR);
    EXPECT_EQ(selected(), 20240128);
}

TEST_F(MonthCalendarTest, ClicksSelectTheDayThatIsDrawnThere)
{
    select(20240201); // 29 days, then a month that ends in the sixth row where weeks begin on Sunday
    for (const std::int32_t date : {20240201, 20240229, 20240301, 20240331}) {
        click(rectOf(date));
        EXPECT_EQ(selected(), date);
    }
    const RECT last = rectOf(20240331);
    const LONG width = last.right - last.left;
    click({last.left + width, last.top, last.right + width, last.bottom}); // no day there
    click({0, 0, 2, 2});
    EXPECT_EQ(selected(), 20240331);
    EXPECT_EQ(firstShown(), 20240201);

    owner.codes.clear();
    mouse(WM_LBUTTONDBLCLK, rectOf(20240309));
    EXPECT_EQ(selected(), 20240309);
    EXPECT_EQ(owner.codes, (std::vector<UINT>{MonthCalendar::kSelected, MonthCalendar::kChosen}));
    click(calendar.todayRect());
    EXPECT_EQ(selected(), today());
}

TEST_F(MonthCalendarTest, ArrowsScrollAndGoOnWhileTheyAreHeld)
{
    select(20240331);
    ASSERT_EQ(firstShown(), 20240301);
    click(calendar.previousRect());
    EXPECT_EQ(firstShown(), 20240201);
    EXPECT_EQ(selected(), 20240331);
    mouse(WM_LBUTTONDBLCLK, calendar.previousRect()); // a quick second click is one more
    mouse(WM_LBUTTONUP, calendar.previousRect());
    EXPECT_EQ(firstShown(), 20240101);
    EXPECT_EQ(selected(), 20240229);
    EXPECT_EQ(owner.codes, (std::vector<UINT>{MonthCalendar::kSelected}));

    mouse(WM_LBUTTONDOWN, calendar.nextRect());
    EXPECT_EQ(GetCapture(), calendar.handle());
    EXPECT_TRUE(pumpUntil([&] { return firstShown() >= 20240401; }, 3000)) << "held, it goes on";
    mouse(WM_MOUSEMOVE, rectOf(firstShown()));
    const std::int32_t waits = firstShown();
    SendMessageA(calendar.handle(), WM_TIMER, 1, 0);
    EXPECT_EQ(firstShown(), waits) << "the pointer has left the arrow";
    mouse(WM_LBUTTONUP, rectOf(firstShown()));
    EXPECT_EQ(GetCapture(), nullptr);
    mouse(WM_MOUSEMOVE, calendar.nextRect());
    SendMessageA(calendar.handle(), WM_TIMER, 1, 0);
    EXPECT_EQ(firstShown(), waits);

    const auto turn = [&](int delta) {
        SendMessageA(calendar.handle(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)), 0);
    };
    turn(-WHEEL_DELTA);
    const int oneOn = firstShown();
    EXPECT_GT(oneOn, waits);
    turn(WHEEL_DELTA);
    EXPECT_EQ(firstShown(), waits);
    for (const int part : {-40, -40, 30, -50, -50}) // the turn back begins anew
        turn(part);
    EXPECT_EQ(firstShown(), waits);
    turn(-20);
    EXPECT_EQ(firstShown(), oneOn);
    turn(2 * WHEEL_DELTA);
    turn(-WHEEL_DELTA);
    EXPECT_EQ(firstShown(), waits);
}

TEST_F(MonthCalendarTest, EndsAtTheFirstAndLastDayOfTheSystem)
{
    select(99991231);
    key(VK_RIGHT);
    key(VK_NEXT);
    click(calendar.nextRect());
    EXPECT_EQ(selected(), 99991231);
    EXPECT_EQ(firstShown(), 99991101);
    select(16010101);
    key(VK_LEFT);
    click(calendar.previousRect());
    EXPECT_EQ(selected(), 16010101);
    select(16001231);
    select(20230229);
    calendar.select({-5, 77, 4000});
    EXPECT_EQ(selected(), 16010101);
    EXPECT_EQ(windowText(calendar.handle()), longDate(16010101));
}

TEST_F(MonthCalendarTest, WeeksBeginWhereTheUserWantsThem)
{
    char before[4] = "";
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IFIRSTDAYOFWEEK, before, sizeof before);
    const struct {
        const char* first;
        std::int32_t leftmost; // in February 2024, which begins on a Thursday
    } cases[] = {{"0", 20240205}, {"6", 20240204}, {"3", 20240201}};
    for (const auto& one : cases) {
        SetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IFIRSTDAYOFWEEK, one.first);
        calendar.create(owner.handle(), kId, {10, 10, 352, 160});
        select(20240201);
        EXPECT_EQ(rectOf(one.leftmost).left, calendar.previousRect().left) << one.first;
        EXPECT_EQ(CalendarTexts::ofUser().columnOf(std::chrono::Monday), (7 - (one.first[0] - '0')) % 7);
    }
    SetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IFIRSTDAYOFWEEK, before);
    const CalendarTexts texts = CalendarTexts::ofUser();
    const std::set<std::string> names(texts.weekdays.begin(), texts.weekdays.end());
    EXPECT_EQ(names.size(), 7u);
    if (PRIMARYLANGID(GetUserDefaultLangID()) == LANG_CZECH) { // whose own code page is another
        EXPECT_EQ(names.count("ct") + names.count("p\xE1"), 2u);
        EXPECT_EQ(monthTitle(std::chrono::year(2002) / 10), "r\xEDjen 2002");
    }
}

TEST_F(MonthCalendarTest, MarksTheSelectedDayAndToday)
{
    const std::int32_t day = today();
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    EXPECT_EQ(groundOf(day), highlight);
    key(day % 100 > 1 ? VK_HOME : VK_END);
    EXPECT_EQ(groundOf(day), window);
    EXPECT_EQ(groundOf(selected()), highlight);

    const auto cornerOf = [&](std::int32_t date) {
        const RECT cell = rectOf(date);
        return pixel({cell.left, cell.top});
    };
    EXPECT_NE(cornerOf(day), window) << "the ring";
    EXPECT_EQ(cornerOf(selected()), window);

    const std::int32_t other = day / 100 * 100 + (day % 100 == 15 ? 16 : 15);
    mouse(WM_MOUSEMOVE, rectOf(other));
    EXPECT_NE(groundOf(other), window) << "under the pointer";
    SendMessageA(calendar.handle(), WM_MOUSELEAVE, 0, 0);
    EXPECT_EQ(groundOf(other), window);

    const int before = test::gdiObjects();
    for (int i = 0; i < 30; ++i) {
        RedrawWindow(calendar.handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
    EXPECT_LE(test::gdiObjects(), before + 2);
}

} // namespace tessera
