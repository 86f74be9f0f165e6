#pragma once

#include <optional>
#include <string>
#include <vector>
#include <windows.h>

namespace tessera::jukebox {

// One line of the plug-in's activity log.
struct LogLine {
    std::string time;
    std::string progress;
    std::string description; // with its indentation
};

enum class JobState { None, Creating, Loading, Finished };

// How far the last job has come by the log's lines from `first` on: a job ends with a "Finished" at
// the left margin behind the "Loading Database".
JobState jobState(const std::vector<LogLine>& lines, std::size_t first = 0);

// How long the two halves of a finished job took by the log's own clock, in milliseconds; none for
// a half that is not in the log. The clock starts again after an hour.
struct JobTimes {
    std::optional<unsigned> creating;
    std::optional<unsigned> loading;
};
JobTimes jobTimes(const std::vector<LogLine>& lines, std::size_t first = 0);

// The log of the plug-in as another thread reads it from its list view.
class ActivityLog {
public:
    explicit ActivityLog(HWND list) : m_list(list) {}

    // Reads what is new; false when the list did not answer.
    bool update();
    const std::vector<LogLine>& lines() const { return m_lines; }
    // Text of the log as its own export writes it: columns and a tab behind each, white space at the
    // end removed, one line feed a line. False when the list did not answer.
    bool exportText(std::string& text) const;

private:
    HWND m_list;
    std::vector<LogLine> m_lines;
};

} // namespace tessera::jukebox
