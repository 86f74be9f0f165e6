// The host ends the plug-in at any moment of a job, a dialog or a box.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "base/Files.h"
#include "ui/ids.h"
#include "windowing/Control.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

class TerminateTest : public testing::Test {
protected:
    TerminateTest() : folder("shell-terminate")
    {
        forgetSettings();
        DatabaseSettings database;
        database.lastUsed = folder.file("music.ts2");
        database.loadLastAtStartup = false;
        store(database);
    }

    // Nothing of the host's is held, no dialog of ours is open, and the module could go.
    static void expectGone(RunningPlugin& plugin)
    {
        plugin.container.pumpFor(60);
        EXPECT_FALSE(plugin.pane(paneId::kMain));
        EXPECT_TRUE(IsWindowEnabled(plugin.container.frame()));
        EXPECT_FALSE(GetWindow(plugin.container.frame(), GW_ENABLEDPOPUP) &&
                     IsWindowVisible(GetWindow(plugin.container.frame(), GW_ENABLEDPOPUP)));
        EXPECT_EQ(plugin.script->live, 1);
        EXPECT_EQ(plugin.script->strayReleases, 0);
    }
    static void expectUnloadable(RunningPlugin& plugin)
    {
        plugin.container.drop();
        plugin.control.reset();
        EXPECT_TRUE(plugin.module.canUnload());
    }

    TemporaryFolder folder;
};

// The host is asked for no more than what was begun: one track's properties.
TEST_F(TerminateTest, AtEveryHostCallOfAJob)
{
    constexpr int kOfOneTrack = 8;
    RunningPlugin plugin(smallLibrary(6));
    plugin.start();
    plugin.script->calls = 0;
    ASSERT_TRUE(plugin.create());
    const int total = plugin.script->calls;
    for (int call = 1; call <= total; call += call < 12 ? 1 : 4) {
        plugin.stop();
        plugin.start();
        Event reached;
        Event ending;
        plugin.script->calls = 0;
        plugin.script->onCall = [&](int number) {
            if (number == call && GetCurrentThreadId() != plugin.script->uiThread) {
                reached.set();
                ending.wait(5000);
                Sleep(20); // it begins meanwhile
            }
        };
        ASSERT_TRUE(plugin.beginCreating()) << call;
        plugin.container.pump([&] { return reached.isSet(); });
        ending.set();
        plugin.stop();
        plugin.script->onCall = nullptr;
        EXPECT_LE(plugin.script->calls, call + kOfOneTrack) << call;
        expectGone(plugin);
    }
    expectUnloadable(plugin);
}

TEST_F(TerminateTest, AtEveryLineOfTheLog)
{
    RunningPlugin plugin(smallLibrary(3));
    plugin.start();
    ASSERT_TRUE(plugin.create());
    const int lines = plugin.logCount();
    ASSERT_GT(lines, 20);
    for (int line = 1; line <= lines; ++line) {
        plugin.stop();
        plugin.start();
        ASSERT_TRUE(plugin.beginCreating()) << line;
        EXPECT_TRUE(plugin.container.pump([&] { return plugin.logCount() >= line; })) << line;
        plugin.stop();
        expectGone(plugin);
    }
    expectUnloadable(plugin);
}

TEST_F(TerminateTest, InsideTheWizardTheOpenDialogAndTheSaveDialog)
{
    for (const int command : {commandId::kNewDatabase, commandId::kOpenDatabase, commandId::kExportList}) {
        RunningPlugin plugin;
        plugin.start();
        const HWND hosts = CreateWindowExA(0, "#32770", "The host's own", WS_POPUP | WS_VISIBLE, 0, 0, 100,
                                           50, plugin.container.frame(), nullptr, nullptr, nullptr);
        bool ended = false;
        plugin.boxes.onDialog = [&](HWND dialog) {
            if (!ended && dialog != hosts) {
                ended = true;
                plugin.stop();
            }
        };
        plugin.command(command);
        EXPECT_TRUE(plugin.container.pump([&] { return ended; })) << command;
        EXPECT_TRUE(IsWindowVisible(hosts) && IsWindowEnabled(hosts));
        DestroyWindow(hosts);
        expectGone(plugin);
        expectUnloadable(plugin);
    }
}

// The worker's box: it is withdrawn, and the worker ends.
TEST_F(TerminateTest, InsideABoxOfTheWorker)
{
    const auto script = smallLibrary(3);
    RunningPlugin plugin(script);
    plugin.start();
    ASSERT_TRUE(plugin.create());
    script->failAt = 10;
    script->calls = 0;
    bool ended = false;
    plugin.boxes.onBox = [&](HWND) {
        if (!ended) {
            ended = true;
            plugin.stop();
        }
    };
    ASSERT_TRUE(plugin.beginCreating());
    EXPECT_TRUE(plugin.container.pump([&] { return ended; }));
    expectGone(plugin);
    expectUnloadable(plugin);
}

// A container that goes without a word while a job runs.
TEST_F(TerminateTest, ContainerThatGoesDuringAJob)
{
    RunningPlugin plugin(smallLibrary(3));
    plugin.start();
    ASSERT_TRUE(plugin.beginCreating());
    plugin.container.drop();
    plugin.control.reset();
    plugin.container.pumpFor(60);
    EXPECT_TRUE(plugin.module.canUnload());
    EXPECT_EQ(plugin.script->live, 1);
}

// A message loop inside a call of the host brings commands; they are refused.
TEST_F(TerminateTest, CommandsInsideAHostCallAreRefused)
{
    const auto script = smallLibrary(3);
    script->skinned = 1;
    RunningPlugin plugin(script);
    plugin.start();
    plugin.container.pumpFor(30);
    int dialogs = 0;
    plugin.boxes.onDialog = [&](HWND) { ++dialogs; };
    bool inside = false;
    script->onCall = [&](int) {
        if (!inside) {
            inside = true;
            plugin.command(commandId::kNewDatabase);
            plugin.command(commandId::kOpenDatabase);
            SendMessageA(plugin.pane(0), WM_TIMER, 1, 0);
            plugin.container.pumpFor(80);
        }
    };
    RedrawWindow(plugin.window(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    plugin.container.pump([&] { return inside; }, 2000);
    plugin.container.pumpFor(80);
    EXPECT_TRUE(inside);
    EXPECT_EQ(dialogs, 0);
    script->onCall = nullptr;
}

} // namespace
} // namespace tessera
