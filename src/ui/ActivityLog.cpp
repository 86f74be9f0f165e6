#include "ui/ActivityLog.h"

#include "system/Threads.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr std::uint32_t kHour = 3'600'000;
constexpr int kBlanksPerLevel = 4;

} // namespace

// The lock guards every member; it is held for copying and posting only.
class LogQueue {
public:
    explicit LogQueue(ActivityLog::ClockFunction clock) : m_clock(clock), m_origin(clock()) {}

    void startTimer();
    void changeIndent(int by);
    // Answers the line's number.
    std::size_t addLine(const std::string& text);
    void setPercent(std::size_t line, int percent);
    void attach(HWND window, UINT message);
    void detach();
    LogChanges takeChanges(bool looksAgain);

private:
    void post();
    HWND windowOfThisThread(UINT& message);

    CriticalSection m_lock;
    ActivityLog::ClockFunction m_clock;
    std::uint32_t m_origin;
    int m_indent = 0;
    LogChanges m_changes;
    HWND m_hWnd = nullptr;
    UINT m_message = 0;
    bool m_posted = false;
    bool m_looksAgain = false;
};

void LogQueue::startTimer()
{
    const ScopedLock guard(m_lock);
    m_origin = m_clock();
    m_indent = 0;
}

void LogQueue::changeIndent(int by)
{
    const ScopedLock guard(m_lock);
    m_indent = std::max(0, m_indent + by);
}

std::size_t LogQueue::addLine(const std::string& text)
{
    std::size_t number = 0;
    UINT message = 0;
    HWND own = nullptr;
    {
        const ScopedLock guard(m_lock);
        number = m_changes.firstLine + m_changes.lines.size();
        m_changes.lines.push_back(makeLogLine(m_clock() - m_origin, m_indent, text));
        own = windowOfThisThread(message);
        if (own == nullptr)
            post();
    }
    if (own != nullptr)
        SendMessageA(own, message, ActivityLog::kPaintNow, 0);
    return number;
}

void LogQueue::setPercent(std::size_t line, int percent)
{
    const ScopedLock guard(m_lock);
    if (line >= m_changes.firstLine)
        m_changes.lines[line - m_changes.firstLine][1] = format("%d%%", percent);
    else
        m_changes.percents[line] = percent;
    if (!m_looksAgain)
        post();
}

void LogQueue::attach(HWND window, UINT message)
{
    const ScopedLock guard(m_lock);
    m_hWnd = window;
    m_message = message;
    m_posted = false;
    m_looksAgain = false;
    if (!m_changes.empty())
        post();
}

void LogQueue::detach()
{
    const ScopedLock guard(m_lock);
    m_hWnd = nullptr;
    m_posted = false;
}

LogChanges LogQueue::takeChanges(bool looksAgain)
{
    const ScopedLock guard(m_lock);
    m_posted = false;
    m_looksAgain = looksAgain && !m_changes.empty();
    LogChanges taken = std::move(m_changes);
    m_changes = LogChanges{taken.firstLine + taken.lines.size(), {}, {}};
    return taken;
}

// One message is on its way at most; a full message queue leaves it to the next report.
void LogQueue::post()
{
    if (m_hWnd != nullptr && !m_posted)
        m_posted = PostMessageA(m_hWnd, m_message, 0, 0) != 0;
}

HWND LogQueue::windowOfThisThread(UINT& message)
{
    if (m_hWnd == nullptr || GetWindowThreadProcessId(m_hWnd, nullptr) != GetCurrentThreadId())
        return nullptr;
    message = m_message;
    return m_hWnd;
}

namespace {

class Job final : public Log {
public:
    explicit Job(std::shared_ptr<LogQueue> queue) : m_queue(std::move(queue)) {}

    void startTimer() override { m_queue->startTimer(); }
    void indent() override { m_queue->changeIndent(1); }
    void outdent() override { m_queue->changeIndent(-1); }

    void line(const std::string& text) override
    {
        m_line = m_queue->addLine(text);
        m_hasLine = true;
        m_percent = 0;
        m_sameUntil = 0;
    }

    void progress(std::uint32_t done, std::uint32_t total) override
    {
        if (done < m_sameUntil && done >= m_sameFrom && total == m_total)
            return;
        report(done, total);
    }

private:
    void report(std::uint32_t done, std::uint32_t total);

    std::shared_ptr<LogQueue> m_queue;
    std::size_t m_line = 0;
    bool m_hasLine = false;
    int m_percent = 0;
    // Between these the percentage cannot change, which spares the division.
    std::uint32_t m_sameFrom = 0;
    std::uint32_t m_sameUntil = 0;
    std::uint32_t m_total = 0;
};

void Job::report(std::uint32_t done, std::uint32_t total)
{
    const int percent = percentOf(done, total);
    m_total = total;
    m_sameFrom = done;
    // One short of the next whole percentage, so that rounding cannot matter.
    const auto next = (std::uint64_t{total} * static_cast<std::uint32_t>(percent + 1)) / 100;
    m_sameUntil = next == 0 ? 0 : static_cast<std::uint32_t>(std::min<std::uint64_t>(next - 1, UINT32_MAX));
    if (percent == m_percent || !m_hasLine)
        return;
    m_percent = percent;
    m_queue->setPercent(m_line, percent);
}

} // namespace

ActivityLog::ActivityLog(ClockFunction clock) : m_queue(std::make_shared<LogQueue>(clock)) {}

ActivityLog::~ActivityLog()
{
    detach();
}

std::unique_ptr<Log> ActivityLog::newJob()
{
    return std::make_unique<Job>(m_queue);
}

void ActivityLog::attach(HWND window, UINT message)
{
    m_queue->attach(window, message);
}

void ActivityLog::detach()
{
    m_queue->detach();
}

LogChanges ActivityLog::takeChanges(bool looksAgain)
{
    return m_queue->takeChanges(looksAgain);
}

std::string logTimeText(std::uint32_t elapsed)
{
    const std::uint32_t inHour = elapsed % kHour;
    return format("%02d:%02d.%03d", static_cast<int>(inHour / 60'000), static_cast<int>(inHour / 1000 % 60),
                  static_cast<int>(inHour % 1000));
}

LogLine makeLogLine(std::uint32_t elapsed, int indent, const std::string& message)
{
    const int blanks = kBlanksPerLevel * indent;
    const std::string whole =
        format("%s\t \t%*.*s%s", logTimeText(elapsed).c_str(), blanks, blanks, "", message.c_str());
    LogLine columns;
    std::size_t begin = 0;
    for (std::string& column : columns) {
        const std::size_t end = std::min(whole.find('\t', begin), whole.size());
        column = whole.substr(begin, end - begin);
        begin = std::min(end + 1, whole.size());
    }
    return columns;
}

int percentOf(std::uint32_t done, std::uint32_t total)
{
    if (total == 0)
        return 0;
    return static_cast<int>(std::min(static_cast<double>(done) / total * 100, 100.0));
}

} // namespace tessera
