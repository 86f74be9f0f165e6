#pragma once

#include "base/Clock.h"
#include "ports/Log.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>
#include <windows.h>

namespace tessera {

// Texts of the columns "Time", "Progress" and "Description".
using LogLine = std::array<std::string, 3>;

// What happened since the last look, in order. Lines are counted from 0 since the start.
struct LogChanges {
    std::size_t firstLine = 0;
    std::vector<LogLine> lines;
    std::map<std::size_t, int> percents; // of lines taken earlier

    bool empty() const { return lines.empty() && percents.empty(); }
};

class LogQueue;

// Collects what jobs on any thread report and tells one window, by a posted message, that there
// is something to take. Without a window the lines wait. Jobs may outlive the log.
class ActivityLog {
public:
    using ClockFunction = std::uint32_t (*)();
    static constexpr WPARAM kPaintNow = 1;

    explicit ActivityLog(ClockFunction clock = tickCount);
    ~ActivityLog();
    ActivityLog(const ActivityLog&) = delete;
    ActivityLog& operator=(const ActivityLog&) = delete;

    // A job is used by one thread at a time; several jobs may report at once.
    std::unique_ptr<Log> newJob();

    // The window gets `message` whenever changes wait: posted from other threads; sent with
    // kPaintNow from its own thread, which may be about to work without looking at its messages.
    void attach(HWND window, UINT message);
    void detach();
    // `looksAgain`: unless there was nothing, the window looks again by itself within a short time;
    // until then percentages alone send it no message.
    LogChanges takeChanges(bool looksAgain = false);

private:
    std::shared_ptr<LogQueue> m_queue;
};

// "mm:ss.mmm" of the time since the origin; starts again at each full hour.
std::string logTimeText(std::uint32_t elapsed);
// Time, a blank and the indented message; what follows a tab in the message has no column.
LogLine makeLogLine(std::uint32_t elapsed, int indent, const std::string& message);
// Truncated toward zero; 0 when there is nothing to do.
int percentOf(std::uint32_t done, std::uint32_t total);

} // namespace tessera
