#include "jukebox/ActivityLog.h"

#include "base/Text.h"
#include "jukebox/Screen.h"

#include <cstdio>

namespace tessera::jukebox {

JobState jobState(const std::vector<LogLine>& lines, std::size_t first)
{
    JobState state = JobState::None;
    for (std::size_t i = first; i < lines.size(); ++i) {
        const std::string_view text = trimRight(lines[i].description);
        if (text == "Creating Database") {
            state = JobState::Creating;
        } else if (text == "Loading Database") {
            state = JobState::Loading;
        } else if (text == "Finished" && state == JobState::Loading) {
            state = JobState::Finished;
        }
    }
    return state;
}

namespace {

// "mm:ss.mmm"
std::optional<unsigned> parseTime(const std::string& text)
{
    unsigned minutes = 0;
    unsigned seconds = 0;
    unsigned milliseconds = 0;
    if (std::sscanf(text.c_str(), "%u:%u.%u", &minutes, &seconds, &milliseconds) != 3) {
        return std::nullopt;
    }
    return (minutes * 60 + seconds) * 1000 + milliseconds;
}

} // namespace

JobTimes jobTimes(const std::vector<LogLine>& lines, std::size_t first)
{
    JobTimes times;
    bool creating = false;
    bool loading = false;
    for (std::size_t i = first; i < lines.size(); ++i) {
        const std::string_view text = trimRight(lines[i].description);
        if (text == "Creating Database") {
            creating = true;
        } else if (text == "Loading Database") {
            if (creating && i > first) {
                times.creating = parseTime(lines[i - 1].time);
            }
            creating = false;
            loading = true;
        } else if (text == "Finished" && loading) {
            times.loading = parseTime(lines[i].time);
            loading = false;
        }
    }
    return times;
}

bool ActivityLog::update()
{
    const int count = rowCount(m_list);
    if (count < 0) {
        return false;
    }
    if (static_cast<std::size_t>(count) < m_lines.size()) {
        m_lines.clear(); // emptied meanwhile
    }
    if (!m_lines.empty()) {
        m_lines.pop_back(); // its percentage may have changed
    }
    while (static_cast<int>(m_lines.size()) < count) {
        const auto row = rowOf(m_list, static_cast<int>(m_lines.size()), 3);
        if (!row) {
            return false;
        }
        m_lines.push_back({row->at(0), row->at(1), row->at(2)});
    }
    return true;
}

bool ActivityLog::exportText(std::string& text) const
{
    const int rows = rowCount(m_list);
    const int columns = columnCount(m_list);
    text.clear();
    for (int row = 0; row < rows; ++row) {
        const auto cells = rowOf(m_list, row, columns);
        if (!cells) {
            return false;
        }
        const std::string line = join(*cells, "\t");
        text += trimRight(line);
        text += '\n';
    }
    return rows >= 0;
}

} // namespace tessera::jukebox
