#pragma once

#include "ports/Log.h"

namespace tessera {

// One level of the log's indentation, whichever way the step ends.
class LogLevel {
public:
    explicit LogLevel(Log& log) : m_log(log) { m_log.indent(); }
    ~LogLevel() { m_log.outdent(); }
    LogLevel(const LogLevel&) = delete;
    LogLevel& operator=(const LogLevel&) = delete;

private:
    Log& m_log;
};

// The same, with "Finished" as its last line.
class LogSection {
public:
    explicit LogSection(Log& log) : m_log(log), m_level(log) {}
    ~LogSection()
    {
        try {
            m_log.line("Finished");
        } catch (...) { // the line is lost when memory is short
        }
    }
    LogSection(const LogSection&) = delete;
    LogSection& operator=(const LogSection&) = delete;

private:
    Log& m_log;
    LogLevel m_level;
};

} // namespace tessera
