#include "ui/PaneLog.h"
#include "FakeCommands.h"
#include "ui/ActivityLog.h"
#include "ui/PaneMain.h"
#include "ui/ids.h"

#include <gtest/gtest.h>
#include <thread>

namespace tessera {
namespace {

class PaneLogTest : public testing::Test {
protected:
    PaneLogTest()
    {
        initCommonControls();
        m_hParent = makeParentWindow(800, 500);
        m_commands.owner = m_hParent;
        m_commands.background = RGB(250, 250, 240);
    }
    ~PaneLogTest() override
    {
        m_pane.reset();
        DestroyWindow(m_hParent);
    }

    void open()
    {
        m_pane = std::make_unique<PaneLog>(m_commands, m_log);
        ASSERT_TRUE(m_pane->createPane(m_hParent));
        MoveWindow(m_pane->window(), 0, 0, 800, 500, TRUE);
        SendMessageA(m_pane->window(), kActivateMessage, 1, 0);
        ShowWindow(m_hParent, SW_SHOWNOACTIVATE);
    }
    ListView list() const { return ListView(m_pane->exportList()); }
    int topRow() const { return static_cast<int>(list().send(LVM_GETTOPINDEX)); }
    int rowsPerPage() const { return static_cast<int>(list().send(LVM_GETCOUNTPERPAGE)); }

    FakeCommands m_commands;
    ActivityLog m_log;
    HWND m_hParent = nullptr;
    std::unique_ptr<PaneLog> m_pane;
};

TEST_F(PaneLogTest, LastColumnFillsTheListAtEveryWidth)
{
    open();
    for (const int width : {1600, 800, 300, 100}) {
        MoveWindow(m_pane->window(), 0, 0, width, 400, TRUE);
        const int used = 175 + list().columnWidth(2);
        if (width > 300) {
            EXPECT_EQ(used, width);
        }
        EXPECT_GE(list().columnWidth(2), 60);
    }
}

TEST_F(PaneLogTest, WhatWasLoggedBeforeTheWindowIsThereToo)
{
    const auto job = m_log.newJob();
    job->line("first");
    job->progress(1, 2);
    job->line("second");
    open();
    pumpMessages(20);
    ASSERT_EQ(list().count(), 2);
    EXPECT_EQ(list().text(0, 1), "50%");
    EXPECT_EQ(list().text(0, 2), "first");
    EXPECT_EQ(list().text(1, 1), " ");
}

TEST_F(PaneLogTest, ThousandsOfLinesFromTwoThreads)
{
    open();
    constexpr int kEach = 2500;
    const auto write = [this](const char* name) {
        const auto job = m_log.newJob();
        for (int i = 0; i < kEach; ++i) {
            job->print("%s %d", name, i);
            job->progress(1, 1);
        }
    };
    std::thread a(write, "a");
    std::thread b(write, "b");
    const DWORD start = GetTickCount();
    while (list().count() < 2 * kEach && GetTickCount() - start < 60'000)
        pumpMessages(10);
    a.join();
    b.join();
    pumpMessages(200);
    ASSERT_EQ(list().count(), 2 * kEach);
    int next[2] = {0, 0};
    for (int row = 0; row < list().count(); ++row) {
        const std::string text = list().text(row, 2);
        ASSERT_EQ(text.substr(2), std::to_string(next[text[0] - 'a']++));
        ASSERT_EQ(list().text(row, 1), "100%") << row;
    }
    EXPECT_GE(topRow() + rowsPerPage(), list().count()) << "the last line is in view";
    EXPECT_LE(175 + list().columnWidth(2), static_cast<int>(list().clientRect().right))
        << "no horizontal scroll bar";
}

TEST_F(PaneLogTest, JobsGoOnWhenThePaneIsGone)
{
    open();
    const auto job = m_log.newJob();
    job->line("one");
    m_pane.reset();
    std::thread([&] {
        job->line("two");
        job->progress(1, 2);
    }).join();
    job->line("three");
    EXPECT_EQ(m_log.takeChanges().lines.size(), 2u);
}

TEST_F(PaneLogTest, ParentMayDestroyTheWindowFirst)
{
    open();
    const auto job = m_log.newJob();
    DestroyWindow(m_hParent);
    EXPECT_EQ(m_pane->window(), nullptr);
    EXPECT_EQ(m_pane->exportList(), nullptr);
    job->line("late");
    m_pane->settingsChanged();
}

TEST_F(PaneLogTest, FocusGoesToTheListAndFollowsThePane)
{
    open();
    SetFocus(m_hParent);
    SetFocus(m_pane->window());
    EXPECT_EQ(GetFocus(), m_pane->exportList());
    SendMessageA(m_pane->window(), kActivateMessage, 0, 0);
    EXPECT_FALSE(IsWindowVisible(m_pane->window()));
    EXPECT_EQ(GetFocus(), m_hParent);
    SendMessageA(m_pane->window(), kActivateMessage, 1, 0);
    EXPECT_EQ(GetFocus(), m_pane->exportList());

    // A parent that hands the focus straight back leaves it in what is hidden.
    SendMessageA(m_pane->window(), kActivateMessage, 0, 0);
    SetFocus(m_pane->exportList());
    SendMessageA(m_pane->window(), kActivateMessage, 1, 0);
    EXPECT_EQ(GetFocus(), m_pane->exportList());
}

// It would swallow the keys.
TEST_F(PaneLogTest, ADisabledComboHandsTheFocusOn)
{
    PaneMain main(m_commands);
    main.createPane(m_hParent);
    open();
    const HWND rebar = GetDlgItem(main.window(), controlId::kMainRebar);
    const HWND goTo = GetDlgItem(rebar, controlId::kViewCombo);
    SetFocus(goTo);
    m_commands.busy = true;
    main.refreshCommands();
    EXPECT_EQ(GetParent(GetFocus()), goTo) << "a pane may be chosen meanwhile";
    m_commands.busy = false;
    main.refreshCommands();
    SetFocus(GetDlgItem(rebar, controlId::kImageSizeCombo));
    m_commands.busy = true;
    main.refreshCommands();
    EXPECT_EQ(GetFocus(), m_pane->exportList());
}

} // namespace
} // namespace tessera
