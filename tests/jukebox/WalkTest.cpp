#include "jukebox/ActivityLog.h"
#include "jukebox/MessageWatch.h"
#include "jukebox/Options.h"
#include "jukebox/Screen.h"
#include "windowing/ListView.h"
#include "windowing/MessageLoop.h"
#include "windowing/Window.h"

#include <gtest/gtest.h>
#include <thread>

namespace tessera::jukebox {
namespace {

std::vector<LogLine> lines(std::initializer_list<std::pair<const char*, const char*>> timesAndTexts)
{
    std::vector<LogLine> result;
    for (const auto& [time, text] : timesAndTexts) {
        result.push_back({time, " ", text});
    }
    return result;
}

TEST(WalkLog, AJobIsFinishedOnlyByTheOutermostFinishedOfTheLoad)
{
    auto log = lines({{"00:00.000", "Creating Database"}});
    EXPECT_EQ(jobState(log), JobState::Creating);
    log.push_back({"00:01.250", " ", "    Finished"});
    EXPECT_EQ(jobState(log), JobState::Creating);
    log.push_back({"00:00.000", " ", "Loading Database"});
    EXPECT_EQ(jobState(log), JobState::Loading);
    log.push_back({"00:00.100", " ", "    Finished"});
    EXPECT_EQ(jobState(log), JobState::Loading);
    log.push_back({"01:02.003", " ", "Finished"});
    EXPECT_EQ(jobState(log), JobState::Finished);
    EXPECT_EQ(jobTimes(log).creating, 1250u);
    EXPECT_EQ(jobTimes(log).loading, 62003u);
    log.push_back({"00:00.000", " ", "Beginning background loading of images"});
    EXPECT_EQ(jobState(log), JobState::Finished);
    EXPECT_EQ(jobState(log, log.size() - 1), JobState::None);
}

TEST(WalkLog, APlainFinishedEndsNoCreation)
{
    const auto log = lines({{"00:00.000", "Creating Database"}, {"00:00.100", "Finished"}});
    EXPECT_EQ(jobState(log), JobState::Creating);
    EXPECT_EQ(jobTimes(log).loading, std::nullopt);
}

// A list view in a window of this thread, read from another thread.
class WalkScreenTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_window.create(nullptr, 0, {0, 0, 300, 200}, {WS_POPUP | WS_VISIBLE, 0}, "walk test"));
        ASSERT_TRUE(m_list.create(m_window.handle(), 3001, {0, 0, 300, 200}));
        for (const char* title : {"Time", "Progress", "Description"}) {
            m_list.addColumn(title, 80);
        }
    }
    // Runs the work on another thread while this one handles messages.
    template <class Work>
    void elsewhere(Work work)
    {
        std::atomic<bool> done = false;
        std::thread thread([&] {
            work();
            done = true;
        });
        EXPECT_TRUE(pumpUntil([&] { return done.load(); }, 20000));
        thread.join();
    }

    Window m_window;
    ListView m_list;
};

TEST_F(WalkScreenTest, TheLogIsReadAndExported)
{
    m_list.addRow({"00:00.000", " ", "Loading Database"});
    m_list.addRow({"00:00.002", "7%", "    Reading"});
    ActivityLog log(m_list.handle());
    std::string text;
    elsewhere([&] { EXPECT_TRUE(log.update()); });
    EXPECT_EQ(log.lines().back().progress, "7%");
    m_list.setText(1, 1, "100%");
    m_list.addRow({"00:00.003", " ", ""});
    elsewhere([&] {
        EXPECT_TRUE(log.update());
        EXPECT_TRUE(log.exportText(text));
    });
    EXPECT_EQ(log.lines().size(), 3u);
    EXPECT_EQ(log.lines()[1].progress, "100%");
    EXPECT_EQ(text, "00:00.000\t \tLoading Database\n00:00.002\t100%\t    Reading\n00:00.003\n");
}

TEST_F(WalkScreenTest, AWindowThatDoesNotAnswerIsGivenUp)
{
    std::thread([&] {
        EXPECT_FALSE(answers(m_window.handle(), 100)); // this thread handles no messages now
        EXPECT_EQ(ask(m_window.handle(), WM_NULL, 0, 0, 100), std::nullopt);
    }).join();
    elsewhere([&] {
        EXPECT_TRUE(answers(m_window.handle()));
        EXPECT_EQ(textOf(m_window.handle()), L"walk test");
        EXPECT_EQ(descendantWithId(m_window.handle(), 3001, "syslistview32"), m_list.handle());
        EXPECT_EQ(childWithId(m_window.handle(), 3000), nullptr);
    });
}

TEST(WalkMessages, BoxesArePrintedAndAnswered)
{
    Report report;
    testing::internal::CaptureStdout();
    int assertion = 0;
    int message = 0;
    unsigned count = 0;
    {
        const MessageWatch watch(report, L"walk test box");
        assertion = MessageBoxA(nullptr, "Assertion Failed!\n\nx", "walk test box", MB_YESNO | MB_ICONSTOP);
        message = MessageBoxA(nullptr, "one\r\ntwo", "walk test box", MB_OK);
        count = watch.count();
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "message: Assertion Failed!\\n\\nx\nmessage: one\\ntwo\n");
    EXPECT_EQ(assertion, IDNO);
    EXPECT_EQ(message, IDOK);
    EXPECT_EQ(count, 2u);
}

TEST(CommandLine, ArgumentsAreTakenOrExplained)
{
    const struct {
        std::vector<std::wstring> arguments;
        const char* problem; // empty: they are good
    } cases[] = {
        {{L"--library", L"a"}, ""},
        {{L"--skin", L"--library", L"a", L"--walk", L"o", L"--open", L"x"}, ""},
        {{}, "--library is missing"},
        {{L"--library"}, "--library needs a value"},
        {{L"--library", L"a", L"--colour"}, "unknown argument: --colour"},
        {{L"--library", L"a", L"--open", L"x"}, "--database, --open and --check-marks belong to --walk"},
        {{L"--library", L"a", L"--walk", L"o", L"--check-marks", L"m"}, ""},
        {{L"--library", L"a", L"--check-marks", L"m"},
         "--database, --open and --check-marks belong to --walk"},
        {{L"--library", L"a", L"--walk", L"o", L"--open", L"x", L"--database", L"y"},
         "--database, --open and --check-marks exclude each other"},
        {{L"--library", L"a", L"--walk", L"o", L"--open", L"x", L"--check-marks", L"m"},
         "--database, --open and --check-marks exclude each other"},
    };
    for (const auto& line : cases) {
        std::string problem;
        EXPECT_EQ(parseOptions(line.arguments, problem).has_value(), *line.problem == '\0');
        EXPECT_EQ(problem, line.problem);
    }
}

} // namespace
} // namespace tessera::jukebox
