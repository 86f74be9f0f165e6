#pragma once

#include "system/Handle.h"
#include "ui/MonthCalendar.h"
#include "windowing/Dialog.h"

#include <cstdint>
#include <optional>

namespace tessera {

// The dialog in which the user picks a day.
class DatePicker : public Mapped<DatePicker, Dialog> {
public:
    static constexpr UINT kCalendarFrame = 212; // marks the calendar's place; hidden
    static constexpr UINT kCalendar = 32999;

    static std::span<const MapEntry<DatePicker>> messageMap();

    // Modal, begins with today. The day as YYYYMMDD; none when the user cancelled.
    std::optional<std::int32_t> pickDate(HWND owner);

protected:
    virtual DialogTemplate pattern() const;
    bool onInitDialog() override;
    void onOk() override;

private:
    bool createCalendar();
    void showSelected() const;
    void onSelected(const Command& command);
    void onChosen(const Command& command);

    FontHandle m_fnt;
    MonthCalendar m_calendar;
    std::int32_t m_nDate = 0;
};

} // namespace tessera
