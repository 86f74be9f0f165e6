#pragma once

#include "base/Text.h"
#include "library/Database.h"
#include "support/FakeFiles.h"

#include <atomic>
#include <stdexcept>

namespace tessera::test {

// Keeps the lines, four spaces a level, and the last percentage of each, which goes up to 100 at most.
class RecordingLog : public Log {
public:
    std::vector<std::string> lines;
    std::vector<std::uint32_t> percents;
    int level = 0;
    std::size_t cancelAtLine = 0; // sets `terminating` when this many lines are there
    std::size_t cancelAtStep = 0; // the same, at this report of progress
    std::atomic<bool>* terminating = nullptr;

    void startTimer() override { level = 0; }
    void indent() override { ++level; }
    void outdent() override { level = level > 0 ? level - 1 : 0; }
    void line(const std::string& text) override
    {
        lines.emplace_back(static_cast<std::size_t>(level) * 4, ' ');
        lines.back().append(text);
        percents.push_back(0);
        if (terminating && lines.size() == cancelAtLine)
            *terminating = true;
    }
    void progress(std::uint32_t done, std::uint32_t total) override
    {
        const std::uint32_t percent = total > 0 ? done * 100 / total : 101;
        if (percent < percents.back() || percent > 100)
            throw std::logic_error(format("progress: %u of %u", done, total));
        percents.back() = percent;
        if (terminating && ++m_steps == cancelAtStep)
            *terminating = true;
    }
    std::string text() const { return join(lines, "\n"); }

private:
    std::size_t m_steps = 0;
};

// Keeps what the user would see, a line each: "stop: TEXT", "exclamation: TEXT",
// "assertion: EXPRESSION UNIT LINE".
class RecordingPrompt : public Prompt {
public:
    std::vector<std::string> boxes;

    void message(Severity severity, const std::string& text) override
    {
        static constexpr const char* kNames[] = {"stop: ", "exclamation: ", "information: "};
        boxes.push_back(kNames[static_cast<int>(severity)] + text);
    }
    void assertion(const std::string& expression, const std::string& unit, unsigned long line) override
    {
        boxes.push_back(format("assertion: %s %s %lu", expression.c_str(), unit.c_str(), line));
    }
    std::string text() const { return join(boxes, "\n"); }
};

// Surroundings of a job, all in memory.
struct JobRig {
    FakeFiles files;
    RecordingLog log;
    RecordingPrompt prompt;
    std::atomic<bool> terminating{false};
    JobContext context{files, log, prompt, terminating};
};

} // namespace tessera::test
