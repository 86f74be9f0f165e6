#pragma once

#include "base/Dates.h"
#include "system/Handle.h"
#include "ui/CalendarLayout.h"
#include "ui/CalendarModel.h"
#include "ui/CalendarTexts.h"
#include "windowing/WheelNotches.h"
#include "windowing/Window.h"

namespace tessera {

// A grid of months in which one day is selected: at first today. Keys: arrows a day or a week,
// PgUp and PgDn a month (with Ctrl a year), Home and End the month's ends; mouse: days, arrows beside
// the titles, the wheel, the line with today's date. The window's text is the selected day.
class MonthCalendar final : public Mapped<MonthCalendar> {
public:
    // Codes of WM_COMMAND to the parent: another day is selected; the user has made the choice.
    static constexpr UINT kSelected = 1;
    static constexpr UINT kChosen = 2;

    static std::span<const MapEntry<MonthCalendar>> messageMap();

    MonthCalendar();
    ~MonthCalendar() override { destroy(); }

    // A visible child in the order of the Tab key; begins with today, takes WM_SETFONT. False when the system
    // refused.
    bool create(HWND parent, UINT id, const RECT& place);

    // Months below and beside each other; a count outside 1 to 99 is ignored.
    void setGrid(int rows, int columns);
    int rows() const { return m_rows; }
    int columns() const { return m_columns; }

    // What is no day from 1601 to 9999 is ignored. The parent is not told.
    void select(DateParts day);
    DateParts selected() const;
    DateParts firstShown() const; // the first day of the first month

    // In client coordinates; empty when the day's month is not shown.
    RECT dayRect(DateParts day) const;
    RECT previousRect() const { return layout().previous(); }
    RECT nextRect() const { return layout().next(); }
    RECT todayRect() const; // the link

private:
    using Day = CalendarModel::Day;
    // What the mouse can point at; the day of Part::Day only.
    enum class Part { None, Day, Previous, Next, Today };
    struct Target {
        Part part = Part::None;
        Day day{};
        bool operator==(const Target&) const = default;
    };

    static Day today(); // by the local clock
    static DateParts partsOf(Day day);

    WindowClass windowClass() const override;
    CalendarLayout layout() const;
    int placeOf(Day day) const;
    Target targetAt(POINT point) const;
    Target dayAt(POINT point) const;
    void setHot(const Target& target);
    void press(const Target& target);
    void scroll(int months);
    void moveByKey(WPARAM key);
    // Does the move and tells everybody what came of it.
    template <class Move>
    void change(Move&& move);

    Handled onPaint(const Message& message);
    Handled onPrintClient(const Message& message);
    Handled onErase(const Message&) { return 1; }
    Handled onSetFont(const Message& message);
    Handled onGetFont(const Message& message);
    Handled onDialogCode(const Message&) { return DLGC_WANTARROWS; }
    Handled onFocusChanged(const Message& message);
    Handled onKeyDown(const Message& message);
    Handled onButtonDown(const Message& message);
    Handled onDoubleClick(const Message& message);
    Handled onButtonUp(const Message& message);
    Handled onCaptureLost(const Message& message);
    Handled onMouseMove(const Message& message);
    Handled onMouseLeave(const Message& message);
    Handled onTimer(const Message& message);
    Handled onSetCursor(const Message& message);
    Handled onWheel(const Message& message);

    // Drawing.
    void draw(HDC dc) const;
    void drawMonth(HDC dc, const CalendarLayout& places, int index) const;
    void drawWeekdays(HDC dc, const CalendarLayout& places, int index) const;
    void drawDay(HDC dc, Day day, const RECT& cell) const;
    void drawArrow(HDC dc, const RECT& cell, int direction) const;
    void drawFooter(HDC dc) const;
    RECT markerRect() const; // the ring in front of the link
    std::string todayText() const;

    CalendarTexts m_texts;
    WheelNotches m_wheel;
    CalendarModel m_model;
    int m_rows = 1;
    int m_columns = 1;
    HFONT m_hFont = nullptr; // of whoever sent it
    FontHandle m_fntBold;    // of titles
    FontHandle m_fntLink;    // of the line with today's date under the pointer
    Target m_hot;
    Part m_pressed = Part::None; // an arrow that is held down
};

} // namespace tessera
