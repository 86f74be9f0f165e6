// Background loading of covers in the real plug-in.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "system/Registry.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tessera {
namespace {

std::string samplePicture()
{
    std::string path = "Z:" TESSERA_TEST_DATA "\\pictures\\progressive.jpg";
    std::ranges::replace(path, '/', '\\');
    return path;
}

class CoversTest : public testing::Test {
protected:
    CoversTest() : folder("shell-covers")
    {
        forgetSettings();
        general.lastPane = paneId::kOverview;
        database.lastUsed = folder.file("music.ts2");
        database.loadLastAtStartup = false;
        database.artworkDirectories = samplePicture();
        store(general);
        store(database);
    }

    static HWND sizeCombo(const RunningPlugin& plugin)
    {
        const HWND rebar = GetDlgItem(plugin.pane(paneId::kMain), controlId::kMainRebar);
        return GetDlgItem(rebar, controlId::kImageSizeCombo);
    }
    static std::ptrdiff_t count(const RunningPlugin& plugin, const char* text)
    {
        return std::ranges::count(plugin.log(), text);
    }
    // The loader's passes, the last one ended.
    static bool waitForPasses(RunningPlugin& plugin, int passes)
    {
        return plugin.container.pump([&] {
            return count(plugin, "Beginning background loading of images") == passes &&
                   plugin.log().back() == "Finished";
        });
    }

    TemporaryFolder folder;
    GeneralSettings general;
    DatabaseSettings database;
};

TEST_F(CoversTest, LoaderStartsBehindTheLoadAndFixesTheSize)
{
    RunningPlugin plugin(smallLibrary(400));
    plugin.start();
    ASSERT_TRUE(plugin.create());
    const HWND combo = sizeCombo(plugin);
    ASSERT_NE(combo, nullptr);
    ASSERT_TRUE(plugin.container.pump([&] { return !IsWindowEnabled(combo); }));
    ASSERT_TRUE(waitForPasses(plugin, 1));
    ASSERT_TRUE(plugin.container.pump([&] { return IsWindowEnabled(combo); }));
    const std::vector<std::string> log = plugin.log();
    ASSERT_GE(log.size(), 4u);
    EXPECT_EQ(std::vector<std::string>(log.end() - 4, log.end()),
              (std::vector<std::string>{"Finished", "Beginning background loading of images", "Loading",
                                        "Finished"}));

    SendMessageA(combo, CB_SETCURSEL, 3, 0);
    SendMessageA(plugin.pane(paneId::kMain), WM_COMMAND,
                 MAKEWPARAM(controlId::kImageSizeCombo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
    ASSERT_TRUE(waitForPasses(plugin, 2));
    EXPECT_TRUE(plugin.boxes.texts.empty());
}

TEST_F(CoversTest, PluginEndsWhileCoversLoad)
{
    RunningPlugin plugin(smallLibrary(2000));
    plugin.start();
    ASSERT_TRUE(plugin.create());
    ASSERT_TRUE(
        plugin.container.pump([&] { return plugin.logged("Beginning background loading of images"); }));
    const DWORD start = GetTickCount();
    plugin.stop();
    EXPECT_LT(GetTickCount() - start, 2000u);
    EXPECT_TRUE(plugin.boxes.texts.empty());
}

TEST_F(CoversTest, OpeningAgainStopsTheLoader)
{
    RunningPlugin plugin(smallLibrary(1000));
    plugin.start();
    ASSERT_TRUE(plugin.create());
    ASSERT_TRUE(
        plugin.container.pump([&] { return plugin.logged("Beginning background loading of images"); }));
    ASSERT_TRUE(plugin.create());
    ASSERT_TRUE(
        plugin.container.pump([&] { return count(plugin, "Beginning background loading of images") == 2; }));
    EXPECT_TRUE(plugin.boxes.texts.empty());
}

// A host that is skinned, and pictures that only it has. Lists of what the host tells read it before
// their first paint.
TEST_F(CoversTest, NothingCallsTheHostWhileItPaints)
{
    ArtworkSettings artwork;
    artwork.backgroundLoading = false;
    RegistryStore registry;
    saveSettings(registry, artwork);
    database.artworkDirectories = "C:\\missing.jpg";
    store(database);
    for (const int pane : {paneId::kAlbumDetails, paneId::kOverview}) {
        general.lastPane = pane;
        store(general);
        RunningPlugin plugin;
        plugin.script->skinned = 1;
        plugin.script->embeddedImage = samplePicture();
        bool painting = false;
        int calls = 0;
        plugin.script->onCall = [&](int) {
            calls += painting && GetCurrentThreadId() == plugin.script->uiThread;
        };
        const auto paint = [&] {
            painting = true;
            RedrawWindow(plugin.container.frame(), nullptr, nullptr,
                         RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            painting = false;
        };
        const auto images = [&] { return std::ranges::count(plugin.script->journal(), "image"); };
        plugin.start();
        ASSERT_TRUE(plugin.create());
        ASSERT_EQ(plugin.shownPane(), pane);
        EXPECT_EQ(images(), 6); // of the build
        if (pane == paneId::kOverview) {
            paint();
            EXPECT_EQ(images(), 6);
            EXPECT_TRUE(plugin.container.pump([&] { return images() == 12; }));
        } else {
            plugin.container.pumpFor(400); // the lists read what they show
        }
        for (const int view : {commandId::kViewTiles, commandId::kViewDetails, commandId::kViewIcons}) {
            plugin.command(view);
            paint();
        }
        EXPECT_EQ(calls, 0) << pane;
    }
}

} // namespace
} // namespace tessera
