// The control from its creation to the unloading of the module.

#include "RunningPlugin.h"

#include "system/Registry.h"
#include "ui/ids.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

namespace tessera {
namespace {

class LifeTest : public testing::Test {
protected:
    LifeTest() { forgetSettings(); }
};

int threadCount()
{
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Thread32First(snapshot.get(), &entry); more;
         more = Thread32Next(snapshot.get(), &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    return count;
}

bool classRegistered(const char* name)
{
    WNDCLASSA record{};
    return GetClassInfoA(GetModuleHandleA("tessera2.dll"), name, &record) != FALSE;
}

TEST_F(LifeTest, MappingTheModuleChangesNothing)
{
    CoFreeUnusedLibrariesEx(0, 0);
    const int threads = threadCount();
    {
        const PluginModule module;
        ASSERT_TRUE(module);
        EXPECT_EQ(threadCount(), threads);
        EXPECT_FALSE(classRegistered("TesseraInterface"));
        EXPECT_TRUE(module.canUnload());
    }
    EXPECT_FALSE(pluginLoaded());
}

TEST_F(LifeTest, FirstStartShowsTheLogInFourPanes)
{
    RunningPlugin plugin;
    ASSERT_TRUE(plugin.window());
    EXPECT_FALSE(plugin.pane(paneId::kLog));
    plugin.start();
    for (const int id : {paneId::kMain, paneId::kOverview, paneId::kAlbumDetails, paneId::kLog}) {
        EXPECT_TRUE(plugin.pane(id)) << id;
    }
    EXPECT_EQ(plugin.shownPane(), paneId::kLog);
    EXPECT_EQ(plugin.script->journal(), std::vector<std::string>{"skin query -1"});

    plugin.container.resize(500, 400);
    RECT place{};
    GetWindowRect(plugin.pane(paneId::kLog), &place);
    MapWindowPoints(nullptr, plugin.window(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.top, 32);
    EXPECT_EQ(place.bottom, 400);
    EXPECT_EQ(place.right, 500);

    plugin.stop();
    EXPECT_FALSE(plugin.pane(paneId::kMain));
    EXPECT_FALSE(storedGeneral().firstTime);
    EXPECT_EQ(storedGeneral().lastPane, paneId::kLog);
}

TEST_F(LifeTest, HostWithoutSkinIsToldBeforeAndAfter)
{
    GeneralSettings general;
    general.supportSkinning = false;
    store(general);
    RunningPlugin plugin;
    plugin.start();
    EXPECT_EQ(plugin.script->journal(), (std::vector<std::string>{"draw skin 0", "draw skin 1"}));
}

TEST_F(LifeTest, TwoRoundsLeaveNothingBehind)
{
    int threads = 0;
    for (int round = 0; round < 2; ++round) {
        auto script = smallLibrary();
        {
            RunningPlugin plugin(script);
            plugin.start();
            plugin.stop();
            plugin.control.reset();
            plugin.container.drop();
            EXPECT_TRUE(plugin.module.canUnload());
            EXPECT_EQ(plugin.container.references(), 1U);
            for (const char* name : {"TesseraInterface", "TesseraQueue", "TesseraWindow"}) {
                EXPECT_FALSE(classRegistered(name)) << name;
            }
        }
        EXPECT_EQ(script->live, 0);
        CoFreeUnusedLibrariesEx(0, 0); // what an earlier test has had from the system
        EXPECT_FALSE(pluginLoaded());
        EXPECT_TRUE(round == 0 || threadCount() == threads);
        threads = threadCount();
    }
}

TEST_F(LifeTest, EveryOrderOfCallsIsAnswered)
{
    RunningPlugin plugin;
    EXPECT_EQ(terminate(plugin.control), S_OK); // without a start
    plugin.start();
    plugin.start(); // the second changes nothing
    EXPECT_TRUE(plugin.pane(paneId::kLog));
    plugin.stop();
    plugin.stop();
    EXPECT_FALSE(plugin.pane(paneId::kLog));
    plugin.start(); // works anew
    EXPECT_EQ(plugin.shownPane(), paneId::kLog);
    plugin.container.drop(); // without an end
    plugin.control.reset();
    EXPECT_TRUE(plugin.module.canUnload());
    EXPECT_FALSE(storedGeneral().firstTime);
}

TEST_F(LifeTest, SecondControlStaysPlainUntilTheFirstHasEnded)
{
    RunningPlugin first;
    first.start();
    TestContainer container;
    ComPtr<IDispatch> second = first.module.makeControl();
    ASSERT_TRUE(container.host(second));
    EXPECT_EQ(init(second, first.host.get()), S_OK);
    EXPECT_FALSE(GetDlgItem(container.controlWindow(), paneId::kLog));
    EXPECT_EQ(terminate(second), S_OK);
    EXPECT_TRUE(first.pane(paneId::kLog));
    first.stop();
    EXPECT_EQ(init(second, first.host.get()), S_OK);
    EXPECT_TRUE(GetDlgItem(container.controlWindow(), paneId::kLog));
    EXPECT_EQ(terminate(second), S_OK);
}

// Refuses even the most general of its interfaces.
class NoHost final : public DispatchServer<NoHost> {
public:
    explicit NoHost(HRESULT answer = E_NOINTERFACE) : m_answer(answer) {}

    static std::span<const DispatchEntry<NoHost>> members() { return {}; }
    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return m_answer;
    }

private:
    HRESULT m_answer;
};

TEST_F(LifeTest, HostThatRefusesGetsAPlugInWithoutSkin)
{
    const auto refusing = makeObject<NoHost>();
    for (const bool skinning : {true, false}) {
        GeneralSettings general;
        general.supportSkinning = skinning;
        store(general);
        for (IDispatch* host : {static_cast<IDispatch*>(nullptr), static_cast<IDispatch*>(refusing.get())}) {
            RunningPlugin plugin;
            EXPECT_EQ(init(plugin.control, host), S_OK);
            EXPECT_EQ(plugin.shownPane(), paneId::kLog);
            plugin.container.pumpFor(50);
            EXPECT_TRUE(plugin.boxes.texts.empty());
        }
    }
}

TEST_F(LifeTest, HostThatFailsToAnswerForItsInterfaceIsTold)
{
    RunningPlugin plugin;
    EXPECT_EQ(init(plugin.control, makeObject<NoHost>(E_OUTOFMEMORY).get()), S_OK);
    ASSERT_EQ(plugin.boxes.texts.size(), 1u);
    EXPECT_NE(plugin.boxes.texts[0].find("0x8007000E"), std::string::npos);
    EXPECT_EQ(plugin.shownPane(), paneId::kLog);
}

TEST_F(LifeTest, AnEndInsideTheFirstBoxLeavesTheSettingsAlone)
{
    GeneralSettings general;
    general.lastPane = paneId::kOverview;
    general.tileWidth = 401;
    store(general);
    DatabaseSettings database;
    database.lastUsed = "C:\\music\\all.ts2";
    store(database);
    RunningPlugin plugin;
    plugin.boxes.onBox = [&](HWND) { terminate(plugin.control); };
    EXPECT_EQ(init(plugin.control, makeObject<NoHost>(E_OUTOFMEMORY).get()), S_OK);
    plugin.container.pumpFor(100);
    plugin.container.drop();
    plugin.control.reset();
    EXPECT_TRUE(plugin.module.canUnload());
    EXPECT_EQ(storedGeneral().tileWidth, 401);
    EXPECT_EQ(storedGeneral().lastPane, paneId::kOverview);
    EXPECT_EQ(storedDatabase().lastUsed, database.lastUsed);
}

TEST_F(LifeTest, HostThatFailsAtAnyCallOfTheStartGetsItsPanes)
{
    for (int call = 1; call <= 8; ++call) {
        auto script = smallLibrary();
        script->skinned = 1;
        script->failAt = call;
        RunningPlugin plugin(script);
        plugin.start();
        EXPECT_EQ(plugin.shownPane(), paneId::kLog) << call;
        EXPECT_TRUE(plugin.boxes.texts.empty()) << call;
    }
}

TEST_F(LifeTest, BadSettingsLeaveTheDefaults)
{
    RegistryStore registry;
    const auto put = [&](const char* group, const char* name, StorageType type, const std::string& bytes) {
        registry.write(group, name, {type, {bytes.begin(), bytes.end()}});
    };
    put("General", "LastPane", StorageType::Number, std::string("\x07\0\0\0", 4));       // no such pane
    put("General", "SupportSkinning", StorageType::Binary, "\x01\x02\x03");              // three bytes
    put("General", "ArtistFirstNames", StorageType::Binary, std::string("\xFF\xFF", 2)); // no text
    put("Database", "LoadLastAtStartup", StorageType::Text, "yes");
    put("Artwork", "ImageSizeIndex", StorageType::Number, std::string("\xFF\xFF\xFF\x7F", 4));
    RegistryKey host =
        RegistryKey::create(HKEY_CURRENT_USER, "Software\\J. River\\Music Exchange\\1.0\\Media Jukebox");
    host.write("LastFont", {StorageType::Binary, std::vector<std::uint8_t>(59, 0xFF)});

    RunningPlugin plugin;
    plugin.start();
    EXPECT_EQ(plugin.shownPane(), paneId::kLog);
    EXPECT_EQ(plugin.script->journal(), std::vector<std::string>{"skin query -1"});
    EXPECT_TRUE(plugin.boxes.texts.empty());
    plugin.stop();
    EXPECT_EQ(storedGeneral().lastPane, paneId::kLog);
    EXPECT_TRUE(storedDatabase().loadLastAtStartup);
}

} // namespace
} // namespace tessera
