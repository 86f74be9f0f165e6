// Creating and loading databases in the real plug-in, with a fake host.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "base/Files.h"
#include "base/Text.h"
#include "ui/ids.h"
#include "windowing/Control.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tessera {
namespace {

class JobsTest : public testing::Test {
protected:
    JobsTest() : folder("shell-jobs"), path(folder.file("music.ts2"))
    {
        forgetSettings();
        general.lastPane = paneId::kOverview;
        database.lastUsed = path;
        database.loadLastAtStartup = false;
        store(general);
        store(database);
    }

    // A database of the library, as an earlier run left it.
    void makeDatabase(int tracks = 30)
    {
        RunningPlugin plugin(smallLibrary(tracks));
        plugin.start();
        ASSERT_TRUE(plugin.create());
        ASSERT_TRUE(systemFiles().exists(path));
    }
    void loadAtStartup()
    {
        database.loadLastAtStartup = true;
        store(database);
    }
    static void expectIdle(RunningPlugin& plugin)
    {
        EXPECT_TRUE(IsWindowEnabled(plugin.window()));
        EXPECT_FALSE(plugin.busy());
    }

    TemporaryFolder folder;
    std::string path;
    GeneralSettings general;
    DatabaseSettings database;
};

TEST_F(JobsTest, NewDatabaseIsBuiltWrittenAndLoaded)
{
    RunningPlugin plugin;
    plugin.start();
    EXPECT_EQ(plugin.shownPane(), paneId::kOverview);
    forgetSettings();
    ASSERT_TRUE(plugin.beginCreating());
    EXPECT_EQ(storedDatabase().lastUsed, path); // as soon as the wizard has finished
    EXPECT_EQ(plugin.shownPane(), paneId::kLog);
    ASSERT_TRUE(plugin.waitForJob());
    EXPECT_TRUE(systemFiles().exists(path));
    EXPECT_EQ(plugin.shownPane(), paneId::kOverview);
    expectIdle(plugin);

    const std::string expected = "Creating Database\n"
                                 "    Performing an MJ search - (Selecting Everything)\n"
                                 "    Entries in MJ database - 30\n"
                                 "    Linking tracks to MJ\n"
                                 "    Sorting tracks\n"
                                 "    Scanning for albums\n"
                                 "    Applying any additional filters on data\n"
                                 "    No albums filtered out\n"
                                 "    Scanning for artwork\n"
                                 "    Images - 0\n"
                                 "    Scanning for complete artists/albums\n"
                                 "    Writing Database\n"
                                 "        Writing header information\n"
                                 "        Writing tracks - 30\n"
                                 "        Writing albums - 6\n"
                                 "        Writing artists - 3\n"
                                 "        Finished\n"
                                 "    Finished\n"
                                 "Loading Database\n"
                                 "    Reading header information\n"
                                 "    Reading tracks - 30\n"
                                 "    Reading albums - 6\n"
                                 "    Reading artists - 3\n"
                                 "    Loading treeview\n"
                                 "    Sorting\n"
                                 "    Finished\n"
                                 "Finished\n";
    EXPECT_EQ(plugin.logText().substr(0, expected.size()), expected);
    EXPECT_TRUE(plugin.boxes.texts.empty());

    plugin.stop();
    EXPECT_EQ(plugin.script->live, 1); // the host object, which the test holds
    EXPECT_EQ(plugin.script->strayReleases, 0);
}

TEST_F(JobsTest, LastDatabaseOpensAtTheStart)
{
    makeDatabase();
    general.lastPane = paneId::kAlbumDetails;
    store(general);
    loadAtStartup();
    RunningPlugin plugin;
    plugin.start();
    EXPECT_EQ(plugin.shownPane(), paneId::kLog);
    EXPECT_TRUE(IsWindowEnabled(plugin.window())); // only creating disables it
    ASSERT_TRUE(plugin.waitForJob());
    EXPECT_EQ(plugin.shownPane(), paneId::kAlbumDetails);
    EXPECT_EQ(plugin.log().front(), "Loading Database");
}

TEST_F(JobsTest, FailedLoadKeepsTheLogInFrontAndThePaneInTheRegistry)
{
    makeDatabase();
    loadAtStartup();
    const std::string missing = folder.file("missing.ts2");
    const std::string unknown =
        "Could not find the filename 'C:\\Music\\Album 1\\01.mp3' in your MJ database!";
    for (const bool fileThere : {false, true}) {
        database.lastUsed = fileThere ? path : missing;
        store(database);
        auto script = smallLibrary();
        script->knowsFiles = false;
        RunningPlugin plugin(script);
        plugin.start();
        ASSERT_TRUE(plugin.waitForJob());
        EXPECT_EQ(plugin.boxes.texts,
                  std::vector{fileThere ? unknown : "Could not open the database '" + missing + "'!"});
        EXPECT_EQ(plugin.shownPane(), paneId::kLog);
        expectIdle(plugin);
        plugin.stop();
        EXPECT_EQ(storedGeneral().lastPane, paneId::kOverview);
        EXPECT_EQ(script->live, 1);
        EXPECT_EQ(script->strayReleases, 0);
    }
}

TEST_F(JobsTest, OpenDialogStoresThePathAtOnceAndCancellingChangesNothing)
{
    makeDatabase();
    database.lastUsed = folder.file("other.ts2");
    store(database);
    RunningPlugin plugin;
    plugin.start();
    bool seen = false;
    plugin.boxes.onDialog = [&](HWND dialog) {
        if (windowText(dialog) == "Select the database to open") {
            seen = true;
            PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        }
    };
    plugin.command(commandId::kOpenDatabase);
    ASSERT_TRUE(plugin.container.pump([&] { return seen && IsWindowEnabled(plugin.container.frame()); }));
    plugin.container.pumpFor(100);
    EXPECT_EQ(plugin.logCount(), 0);
    ASSERT_TRUE(plugin.open(path));
    EXPECT_EQ(storedDatabase().lastUsed, path);
    EXPECT_TRUE(plugin.logged("Reading tracks - 30"));
    EXPECT_TRUE(plugin.boxes.texts.empty());
}

TEST_F(JobsTest, FirstNamesAreLoadedWithADatabase)
{
    general.artistFirstNames = folder.file("names.txt");
    store(general);
    RunningPlugin plugin;
    plugin.start();
    ASSERT_TRUE(plugin.create());
    EXPECT_EQ(plugin.boxes.texts, std::vector<std::string>{"Could not open the artist first names file '" +
                                                           general.artistFirstNames + "'!"});
    EXPECT_EQ(plugin.shownPane(), paneId::kOverview); // it loads all the same
}

// Everything that a user or the system can send while a worker is inside the host.
TEST_F(JobsTest, NothingStartsWhileAJobRuns)
{
    RunningPlugin plugin;
    plugin.start();
    for (const int call : {10, 40, 200, 330}) { // in the build, and in the load
        plugin.script->calls = 0;
        WorkerStop stop(*plugin.script, call);
        ASSERT_TRUE(plugin.beginCreating());
        ASSERT_TRUE(plugin.container.pump([&] { return stop.reached.isSet(); })) << call;
        int dialogs = 0;
        plugin.boxes.onDialog = [&](HWND) { ++dialogs; };
        for (int id = commandId::kNewDatabase; id <= commandId::kOptions; ++id) {
            plugin.command(id);
        }
        for (const int combo : {controlId::kViewCombo, controlId::kImageSizeCombo}) {
            const HWND control = FindWindowExA(plugin.pane(0), nullptr, nullptr, nullptr);
            SendMessageA(plugin.pane(0), WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE),
                         reinterpret_cast<LPARAM>(control));
        }
        SendMessageA(plugin.pane(0), WM_TIMER, 1, 0);
        for (const int id : {paneId::kOverview, paneId::kAlbumDetails, paneId::kLog}) {
            for (const UINT message : {UINT(WM_CONTEXTMENU), UINT(WM_KEYDOWN)}) {
                SendMessageA(plugin.pane(id), message, VK_SPACE, 0);
            }
            SendMessageA(plugin.pane(id), WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200));
            ShowWindow(plugin.pane(id), SW_SHOWNA);
            RedrawWindow(plugin.pane(id), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        }
        plugin.container.pumpFor(50);
        EXPECT_EQ(dialogs, 0);
        EXPECT_TRUE(plugin.busy());
        EXPECT_FALSE(IsWindowEnabled(plugin.window()));
        stop.letGo();
        ASSERT_TRUE(plugin.waitForJob());
        EXPECT_TRUE(IsWindowEnabled(plugin.window()));
        plugin.script->onCall = nullptr;
        EXPECT_TRUE(plugin.boxes.texts.empty());
        EXPECT_EQ(plugin.shownPane(), paneId::kLog) << "it was chosen meanwhile";
    }
}

// A host that fails or answers nothing at one of its calls; the build's own tests take each of them.
TEST_F(JobsTest, HostMayFailAtAnyCall)
{
    makeDatabase(5);
    const auto script = smallLibrary(2);
    RunningPlugin plugin(script);
    plugin.start();
    ASSERT_TRUE(plugin.create());
    script->calls = 0;
    ASSERT_TRUE(plugin.create());
    const int total = script->calls;
    ASSERT_GT(total, 10);
    constexpr int kStride = 7;
    int refused = 0;
    auto loads = std::ranges::count(plugin.log(), "Loading treeview");
    for (int& number : {std::ref(script->failAt), std::ref(script->nullAt)}) {
        for (int call = 1; call <= total; call += kStride) {
            plugin.boxes.texts.clear();
            script->calls = 0;
            number = call;
            ASSERT_TRUE(plugin.create()) << call;
            number = 0;
            expectIdle(plugin);
            const bool told = !plugin.boxes.texts.empty();
            refused += told ? 1 : 0;
            const auto loadsNow = std::ranges::count(plugin.log(), "Loading treeview");
            const bool loaded = loadsNow > loads;
            EXPECT_TRUE(told || loaded) << call;
            // A refusal ends the job; nothing where something is due may only be an assertion.
            EXPECT_FALSE(told && loaded && &number == &script->failAt) << call;
            loads = loadsNow;
            EXPECT_TRUE(systemFiles().exists(path)) << call;
        }
    }
    EXPECT_GE(refused,
              (total + kStride - 1) / kStride); // every refusal is told, and some of the empty answers
    plugin.stop();
    EXPECT_EQ(script->live, 1);
    EXPECT_EQ(script->strayReleases, 0);
}

} // namespace
} // namespace tessera
