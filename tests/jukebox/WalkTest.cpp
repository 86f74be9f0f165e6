#include "jukebox/ActivityLog.h"
#include "jukebox/MarkedAlbums.h"
#include "jukebox/MessageWatch.h"
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

TEST(WalkMarks, AlbumsAreWrittenAndReadAgain)
{
    const MarkedAlbum ranked{3, "Título", "Artist", "Z:\\Music", "7", "", ""};
    const MarkedAlbum odd{12, "tab\there", "line\nhere", "", "", "Yes", "Tuesday, November 24, 2026"};
    const auto marks = parseMarks(textOfMarks({"Z:\\out\\library.ts2", {ranked, odd}}));
    ASSERT_TRUE(marks && marks->albums.size() == 2);
    EXPECT_EQ(marks->database, "Z:\\out\\library.ts2");
    EXPECT_EQ(marks->albums[0].row, 3);
    EXPECT_TRUE(marks->albums[0].isSameAlbum(ranked));
    EXPECT_TRUE(marks->albums[0].hasSameMarks(ranked));
    EXPECT_TRUE(marks->albums[1].isSameAlbum(odd));
    EXPECT_FALSE(marks->albums[1].isSameAlbum(ranked));
    EXPECT_FALSE(marks->albums[1].hasSameMarks(ranked));
    EXPECT_EQ(marksText(marks->albums[0]), "rank 7");
    EXPECT_EQ(marksText(marks->albums[1]), "favourite, new Tuesday, November 24, 2026");
    EXPECT_EQ(marksText({}), "no marks");
    EXPECT_TRUE(parseMarks(textOfMarks({"x", {}}))->albums.empty());
}

TEST(WalkMarks, WhatIsNoListOfMarksIsRefused)
{
    for (const char* text : {"", "database\tx", "other\tx\n", "database\tx\n1\ta\tb\tc\t7\t\n",
                             "database\tx\none\ta\tb\tc\t7\t\t\n", "database\tx\n1\ta\tb\tc\t7\t\t"}) {
        EXPECT_FALSE(parseMarks(text)) << text;
    }
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

} // namespace
} // namespace tessera::jukebox
