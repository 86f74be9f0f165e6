#pragma once

#include "ports/Log.h"

namespace tessera {

// Ends a level of the log's indentation with "Finished", whichever way the step ends.
class LogSection {
public:
    explicit LogSection(Log& log) : m_log(log) {}
    ~LogSection()
    {
        try {
            m_log.line("Finished");
        } catch (...) { // the line is lost when memory is short
        }
        m_log.outdent();
    }
    LogSection(const LogSection&) = delete;
    LogSection& operator=(const LogSection&) = delete;

private:
    Log& m_log;
};

} // namespace tessera
