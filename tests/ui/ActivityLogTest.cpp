#include "ui/ActivityLog.h"

#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace tessera {
namespace {

std::uint32_t g_now = 0;
std::uint32_t fakeClock()
{
    return g_now;
}

int waitingMessages(HWND window, UINT message)
{
    int count = 0;
    MSG taken;
    while (PeekMessageA(&taken, window, message, message, PM_REMOVE))
        ++count;
    return count;
}

class ActivityLogTest : public testing::Test {
protected:
    static constexpr UINT kChanged = WM_APP + 7;

    ActivityLogTest() { g_now = 1000; }
    ~ActivityLogTest() override { DestroyWindow(m_hWnd); }

    std::vector<LogLine> takeLines() { return m_log.takeChanges().lines; }

    ActivityLog m_log{fakeClock};
    HWND m_hWnd = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

TEST_F(ActivityLogTest, TimeStartsAgainAtEachFullHourAndSurvivesTheTickCountersWrap)
{
    const struct {
        std::uint32_t elapsed;
        const char* text;
    } cases[] = {{0, "00:00.000"},         {999, "00:00.999"},       {61'002, "01:01.002"},
                 {3'599'999, "59:59.999"}, {3'600'000, "00:00.000"}, {3'600'500, "00:00.500"},
                 {7'261'001, "01:01.001"}};
    for (const auto& each : cases)
        EXPECT_EQ(logTimeText(each.elapsed), each.text);

    const auto job = m_log.newJob();
    g_now = 0xFFFFFF00;
    job->startTimer();
    g_now = 0x00000100;
    job->line("x");
    EXPECT_EQ(takeLines().at(0)[0], "00:00.512");
}

TEST_F(ActivityLogTest, IndentationIsSharedStopsAtZeroAndRestartsWithTheClock)
{
    const auto first = m_log.newJob();
    const auto second = m_log.newJob();
    first->outdent();
    first->line("a");
    first->indent();
    second->indent();
    second->line("b");
    first->outdent();
    second->line("c");
    first->indent();
    first->startTimer();
    second->line("d");
    const auto lines = takeLines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0][2], "a");
    EXPECT_EQ(lines[1][2], "        b");
    EXPECT_EQ(lines[2][2], "    c");
    EXPECT_EQ(lines[3][2], "d");
    EXPECT_EQ(lines[0][1], " ");
}

TEST_F(ActivityLogTest, MessageIsCutAtTabsAndTakenLiterally)
{
    EXPECT_EQ(makeLogLine(0, 1, "a\tb\tc"), (LogLine{"00:00.000", " ", "    a"}));
    EXPECT_EQ(makeLogLine(0, 0, ""), (LogLine{"00:00.000", " ", ""}));
    EXPECT_EQ(makeLogLine(0, 0, "100%s %n"), (LogLine{"00:00.000", " ", "100%s %n"}));
    EXPECT_EQ(makeLogLine(0, 40, std::string(5000, 'x'))[2], std::string(160, ' ') + std::string(5000, 'x'));
}

TEST_F(ActivityLogTest, PercentIsTruncatedAndNeverLeavesItsRange)
{
    EXPECT_EQ(percentOf(0, 10), 0);
    EXPECT_EQ(percentOf(1, 3), 33);
    EXPECT_EQ(percentOf(999'999, 1'000'000), 99);
    EXPECT_EQ(percentOf(7, 7), 100);
    EXPECT_EQ(percentOf(5, 0), 0);
    EXPECT_EQ(percentOf(0xFFFFFFFF, 1), 100);
    EXPECT_EQ(percentOf(0xFFFFFFFE, 0xFFFFFFFF), 99);
}

TEST_F(ActivityLogTest, ProgressGoesToTheLineOfItsJob)
{
    const auto build = m_log.newJob();
    const auto pictures = m_log.newJob();
    build->progress(1, 2); // no line yet
    build->line("build");
    pictures->line("pictures");
    build->progress(1, 2);
    auto changes = m_log.takeChanges();
    EXPECT_EQ(changes.lines.at(0)[1], "50%");
    EXPECT_EQ(changes.lines.at(1)[1], " ");

    pictures->progress(1, 4);
    build->progress(3, 4);
    changes = m_log.takeChanges();
    EXPECT_TRUE(changes.lines.empty());
    EXPECT_EQ(changes.percents, (std::map<std::size_t, int>{{0, 75}, {1, 25}}));

    build->line("next");
    build->progress(0, 9);
    EXPECT_EQ(takeLines().at(0)[1], " ") << "a new line starts at 0, which is not shown";
    build->progress(9, 9);
    EXPECT_EQ(m_log.takeChanges().percents, (std::map<std::size_t, int>{{2, 100}}));
}

TEST_F(ActivityLogTest, EveryWholePercentIsReportedOnceWhateverTheTotal)
{
    for (const std::uint32_t total : {1u, 7u, 99u, 100u, 101u, 250u, 1000u, 99'999u}) {
        const auto job = m_log.newJob();
        job->line("work");
        int shown = 0;
        m_log.takeChanges();
        for (std::uint32_t done = 0; done <= total; ++done) {
            job->progress(done, total);
            const auto changes = m_log.takeChanges();
            if (!changes.empty())
                shown = changes.percents.begin()->second;
            ASSERT_EQ(shown, percentOf(done, total)) << done << " of " << total;
        }
        job->progress(0, total);
        EXPECT_EQ(m_log.takeChanges().percents.size(), 1u) << "backwards is a change too";
    }
}

TEST_F(ActivityLogTest, WindowHearsOnceUntilItHasTaken)
{
    const auto job = m_log.newJob();
    std::thread([&] { job->line("before there is a window"); }).join();
    m_log.attach(m_hWnd, kChanged);
    EXPECT_EQ(waitingMessages(m_hWnd, kChanged), 1);
    m_log.takeChanges();

    std::thread([&] {
        for (int i = 0; i < 1000; ++i) {
            job->line("x");
            job->progress(1, 2);
        }
    }).join();
    EXPECT_EQ(waitingMessages(m_hWnd, kChanged), 1);
    EXPECT_EQ(takeLines().size(), 1000u);

    std::thread([&] { job->line("y"); }).join();
    EXPECT_EQ(waitingMessages(m_hWnd, kChanged), 1);
    m_log.detach();
    std::thread([&] { job->line("z"); }).join();
    EXPECT_EQ(waitingMessages(m_hWnd, kChanged), 0);
    EXPECT_EQ(takeLines().size(), 2u) << "lines wait for the next window";
}

TEST_F(ActivityLogTest, WindowThatLooksAgainIsNotCalledForPercentages)
{
    const auto job = m_log.newJob();
    job->line("work");
    m_log.attach(m_hWnd, kChanged);
    const auto messages = [&](const std::function<void()>& work) {
        std::thread(work).join();
        return waitingMessages(m_hWnd, kChanged);
    };
    ASSERT_EQ(waitingMessages(m_hWnd, kChanged), 1);
    m_log.takeChanges(true);
    EXPECT_EQ(messages([&] { job->progress(1, 4); }), 0);
    EXPECT_EQ(messages([&] { job->line("next"); }), 1);
    EXPECT_EQ(m_log.takeChanges(true).percents.size(), 1u) << "the percentage has waited";
    EXPECT_TRUE(m_log.takeChanges(true).empty());
    EXPECT_EQ(messages([&] { job->progress(2, 4); }), 1) << "one that found nothing looks no more";
}

TEST_F(ActivityLogTest, JobMayOutliveTheLog)
{
    auto log = std::make_unique<ActivityLog>();
    const auto job = log->newJob();
    log->attach(m_hWnd, kChanged);
    log.reset();
    std::thread([&] {
        job->line("late");
        job->progress(1, 1);
    }).join();
    EXPECT_EQ(waitingMessages(m_hWnd, kChanged), 0);
}

} // namespace
} // namespace tessera
