// Creating and loading databases in the real plug-in, with a fake host.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "base/Files.h"
#include "base/Text.h"
#include "ui/ids.h"

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

    // A database of the small library, as an earlier run left it.
    void makeDatabase()
    {
        RunningPlugin plugin;
        plugin.start();
        plugin.create();
        ASSERT_TRUE(plugin.waitForLoad());
        ASSERT_TRUE(systemFiles().exists(path));
    }
    void loadAtStartup()
    {
        database.loadLastAtStartup = true;
        store(database);
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
    plugin.create();
    ASSERT_TRUE(plugin.waitForLoad());
    EXPECT_TRUE(systemFiles().exists(path));
    EXPECT_EQ(plugin.shownPane(), paneId::kOverview);
    const std::vector<std::string> log = plugin.log();
    EXPECT_TRUE(plugin.logged("Creating Database"));
    EXPECT_TRUE(plugin.logged("Entries in MJ database - 30"));
    EXPECT_TRUE(plugin.logged("Loading Database"));
    EXPECT_TRUE(plugin.logged("Loading treeview"));
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.back(), "Finished");
    EXPECT_TRUE(plugin.boxes.texts.empty());
}

} // namespace
} // namespace tessera
