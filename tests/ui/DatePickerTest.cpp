#include "ui/DatePicker.h"

#include "windowing/Control.h"
#include "windowing/Drawing.h"
#include "windowing/MessageLoop.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tessera {

namespace {

constexpr UINT kGo = WM_APP + 9;
constexpr const char* kCaption = "Select the date";

// The window that a dialog belongs to; plays the user's part once its loop runs.
class PickerOwner final : public Mapped<PickerOwner> {
public:
    ~PickerOwner() override { destroy(); }
    static std::span<const MapEntry<PickerOwner>> messageMap()
    {
        static constexpr MapEntry<PickerOwner> map[] = {{kGo, &PickerOwner::onGo}};
        return map;
    }
    std::function<void(HWND dialog, HWND calendar)> script;

private:
    Handled onGo(const Message&)
    {
        const HWND dialog = FindWindowA("#32770", kCaption);
        script(dialog, GetDlgItem(dialog, DatePicker::kCalendar));
        return 0;
    }
};

class DatePickerTest : public testing::Test {
protected:
    DatePickerTest()
    {
        SetCursorPos(1200, 1000);
        owner.create(nullptr, 0, {0, 0, 800, 600}, {WS_POPUP | WS_VISIBLE});
    }
    std::optional<std::int32_t> run(std::function<void(HWND, HWND)> script)
    {
        owner.script = std::move(script);
        PostMessageA(owner.handle(), kGo, 0, 0);
        return picker.pickDate(owner.handle());
    }
    // As the keyboard brings it: through the dialog's own loop.
    std::optional<std::int32_t> type(std::vector<WPARAM> keys)
    {
        return run([keys](HWND, HWND calendar) {
            for (const WPARAM key : keys) {
                PostMessageA(calendar, WM_KEYDOWN, key, 1);
            }
        });
    }
    static DateParts today()
    {
        SYSTEMTIME now{};
        GetLocalTime(&now);
        return {now.wYear, now.wMonth, now.wDay};
    }

    PickerOwner owner;
    DatePicker picker;
};

} // namespace

TEST_F(DatePickerTest, EnterTakesTodayAndKeysMoveFromThere)
{
    const DateParts now = today();
    EXPECT_EQ(type({VK_RETURN}), joinDate(now));
    EXPECT_EQ(type({VK_HOME, VK_RETURN}), joinDate({now.year, now.month, 1}));
    const DateParts next =
        now.month == 12 ? DateParts{now.year + 1, 1, 1} : DateParts{now.year, now.month + 1, 1};
    EXPECT_EQ(type({VK_HOME, VK_NEXT, VK_RETURN}), joinDate(next));
    EXPECT_EQ(type({VK_HOME, VK_NEXT, VK_LEFT, VK_DOWN, VK_UP, VK_RIGHT, VK_RETURN}), joinDate(next));
    EXPECT_TRUE(IsWindowEnabled(owner.handle()));
}

TEST_F(DatePickerTest, EscapeCancelAndClosingAnswerNothing)
{
    EXPECT_EQ(type({VK_HOME, VK_ESCAPE}), std::nullopt);
    EXPECT_EQ(type({VK_TAB, VK_TAB, VK_RETURN}), std::nullopt); // from the calendar over OK to Cancel
    EXPECT_EQ(run([](HWND dialog, HWND) { SendMessageA(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0); }),
              std::nullopt);
    EXPECT_EQ(run([](HWND dialog, HWND) { SendMessageA(dialog, WM_CLOSE, 0, 0); }), std::nullopt);
    EXPECT_EQ(run([](HWND dialog, HWND) { SendMessageA(dialog, WM_COMMAND, IDCANCEL, 0); }), std::nullopt)
        << "from outside, when the plug-in ends";
}

TEST_F(DatePickerTest, ADoubleClickOrOkTakesTheDay)
{
    const auto press = [](HWND calendar, UINT message) {
        RECT client{};
        GetClientRect(calendar, &client);
        // In the second week of the first month there is a day in every column.
        SendMessageA(calendar, message, MK_LBUTTON, MAKELPARAM(client.right / 4, client.bottom * 7 / 18));
    };
    std::string chosen;
    const auto twice = run([&](HWND, HWND calendar) {
        press(calendar, WM_LBUTTONDOWN);
        chosen = windowText(calendar);
        press(calendar, WM_LBUTTONDBLCLK);
    });
    ASSERT_TRUE(twice);
    EXPECT_EQ(longDate(*twice), chosen);
    EXPECT_EQ(splitDate(*twice).month, today().month);
    const auto once = run([&](HWND dialog, HWND calendar) {
        EXPECT_EQ(windowText(calendar), longDate(joinDate(today()))) << "today again";
        press(calendar, WM_LBUTTONDOWN);
        EXPECT_NE(windowText(GetDlgItem(dialog, 213)).find(chosen), std::string::npos);
        SendMessageA(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    });
    EXPECT_EQ(once, twice);
}

// Whatever the resolution is.
TEST_F(DatePickerTest, TheTextOfTwoMonthsFitsInTheFrame)
{
    run([](HWND dialog, HWND calendar) {
        RECT client{};
        GetClientRect(calendar, &client);
        const CalendarLayout places({client.right, client.bottom}, 1, 2, scaled(10, calendar));
        const RECT day = places.day(0, 0);
        const LONG width = day.right - day.left;
        const WindowDc dc(calendar);
        const HFONT font = reinterpret_cast<HFONT>(SendMessageA(calendar, WM_GETFONT, 0, 0));
        const SelectScope plain(dc.dc(), font);
        for (const std::string& name : CalendarTexts::ofUser().weekdays) {
            EXPECT_LT(textSize(dc.dc(), name).cx, width) << name;
        }
        EXPECT_LE(textSize(dc.dc(), "28").cy, day.bottom - day.top);
        EXPECT_LE(width + textSize(dc.dc(), "Today: " + longDate(20260930)).cx, client.right);
        LOGFONTA description{};
        GetObjectA(font, sizeof description, &description);
        description.lfWeight = FW_BOLD;
        const FontHandle bold = makeFont(description);
        const SelectScope thick(dc.dc(), bold.get());
        for (unsigned month = 1; month <= 12; ++month) {
            const std::string title = monthTitle(std::chrono::year(2024) / std::chrono::month(month));
            EXPECT_NE(title.find("2024"), std::string::npos);
            EXPECT_LE(textSize(dc.dc(), title).cx, 5 * width) << title; // between the arrows
        }
        EXPECT_LE(places.next().right, client.right);
        EXPECT_LE(places.footer().bottom, client.bottom);
        SendMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
}

} // namespace tessera
