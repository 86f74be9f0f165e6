#pragma once

#include "base/Text.h"

#include <cstdint>

namespace tessera {

// The activity log as one job sees it: progress goes to the line that this job wrote last.
// Any thread; nothing waits for the window.
class Log {
public:
    virtual ~Log() = default;

    // Restarts the clock and sets the indentation to 0.
    virtual void startTimer() = 0;
    virtual void indent() = 0;
    virtual void outdent() = 0;
    virtual void line(const std::string& text) = 0;
    // Shows done / total as a percentage on the job's line; cheap when it did not change.
    virtual void progress(std::uint32_t done, std::uint32_t total) = 0;

    template <class... Arguments>
    void print(const char* pattern, Arguments... arguments)
    {
        line(format(pattern, arguments...));
    }
};

// Of what nobody wants to know.
class SilentLog final : public Log {
public:
    void startTimer() override {}
    void indent() override {}
    void outdent() override {}
    void line(const std::string&) override {}
    void progress(std::uint32_t, std::uint32_t) override {}
};

} // namespace tessera
