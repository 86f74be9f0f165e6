// A host or container that ends the plug-in, or runs a message loop, inside any of the calls that a
// session makes. TESSERA_EVERY_CALL=1 in the environment takes every call, else one of 80 is taken.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "ui/ids.h"
#include "windowing/Control.h"
#include "windowing/ListView.h"
#include "windowing/TreeView.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace tessera {
namespace {

enum class Kind { Nothing, Terminate, DropControl, DestroyFrame, PostQuit, PumpMessages };
constexpr const char* kKindNames[] = {"nothing",       "terminate", "drop control",
                                      "destroy frame", "post quit", "pump messages"};

class EveryCallTest : public testing::Test {
protected:
    EveryCallTest() : folder("shell-every-call")
    {
        storeSettings(false);
        RunningPlugin builder(smallLibrary(kTracks));
        builder.start();
        EXPECT_TRUE(builder.create());
        builder.stop();
    }
    void storeSettings(bool loading) const
    {
        forgetSettings();
        GeneralSettings general;
        general.lastPane = paneId::kAlbumDetails;
        store(general);
        DatabaseSettings database;
        database.lastUsed = folder.file("music.ts2");
        database.loadLastAtStartup = loading;
        store(database);
    }

    // One call, on any thread. What a host does inside a worker's call it does on its own thread.
    void called(const std::string& where)
    {
        if (++m_calls != m_at)
            return;
        std::printf("%s inside call %d, %s\n", kKindNames[static_cast<int>(m_kind)], m_at, where.c_str());
        std::fflush(stdout);
        if (GetCurrentThreadId() == plugin->script->uiThread) {
            act();
        } else {
            m_due = true;
            Sleep(5);
        }
    }
    void act()
    {
        switch (m_kind) {
        case Kind::Nothing:
            break;
        case Kind::Terminate:
            terminate(plugin->control);
            break;
        case Kind::DropControl:
            plugin->container.drop();
            plugin->control.reset();
            break;
        case Kind::DestroyFrame:
            DestroyWindow(plugin->container.frame());
            break;
        case Kind::PostQuit:
            PostQuitMessage(0);
            break;
        case Kind::PumpMessages:
            plugin->container.pumpFor(20);
            break;
        }
    }
    bool over() const { return plugin->container.quit || !plugin->pane(paneId::kMain); }
    void settle(DWORD milliseconds = 0)
    {
        plugin->container.pump(
            [this] {
                if (m_due.exchange(false))
                    act();
                return over();
            },
            milliseconds);
    }
    void waitForJob()
    {
        for (int i = 0; i < 400 && !over() && plugin->busy(); ++i)
            settle(10);
    }

    HWND details(int control) const { return GetDlgItem(plugin->pane(paneId::kAlbumDetails), control); }
    ListView list() const { return ListView(details(controlId::kDetailsAlbums)); }
    void choose(HWND combo, int entry) const
    {
        SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
        SendMessageA(GetParent(combo), WM_COMMAND,
                     MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(combo)), CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo));
    }
    HWND mainCombo(int id) const
    {
        return GetDlgItem(GetDlgItem(plugin->pane(paneId::kMain), controlId::kMainRebar), id);
    }
    void tick() const { SendMessageA(plugin->pane(paneId::kMain), WM_TIMER, 1, 0); }
    void restPointer(HWND window) const
    {
        SetForegroundWindow(plugin->container.frame());
        POINT point{20, 30};
        ClientToScreen(window, &point);
        SetCursorPos(static_cast<int>(point.x), static_cast<int>(point.y));
        for (int i = 0; i < 3; ++i)
            tick();
    }
    void command(int id) const
    {
        SendMessageA(plugin->pane(paneId::kAlbumDetails), WM_COMMAND, static_cast<WPARAM>(id), 0);
    }
    void selectRows() const
    {
        list().select(0);
        list().select(1);
    }
    void selectNodes() const
    {
        for (int id = controlId::kTreeLibrary; id <= controlId::kTreeCompleted; ++id) {
            const TreeView tree(details(id));
            tree.expand(tree.root());
            tree.select(tree.child(tree.root()));
        }
        const TreeView tree(details(controlId::kTreeLibrary));
        tree.select(nullptr);
        tree.select(tree.root());
    }
    void build()
    {
        plugin->boxes.onDialog = walkWizard;
        plugin->command(commandId::kNewDatabase);
        settle(150);
        waitForJob();
    }

    // The same file by the command and its dialog, which is told of it once its fields are there.
    void openDatabase()
    {
        constexpr int kNameField = 0x47c;
        const std::string path = folder.file("music.ts2");
        int looks = 0;
        plugin->boxes.onDialog = [&](HWND dialog) {
            const HWND field = GetDlgItem(dialog, kNameField);
            if (!field || ++looks != 2)
                return;
            SendMessageA(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
            PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        };
        plugin->command(commandId::kOpenDatabase);
        settle(150);
        waitForJob();
        m_opened = m_opened || looks >= 2;
        plugin->boxes.onDialog = nullptr;
    }

    // What a user does, a step each.
    std::vector<std::function<void()>> steps()
    {
        std::vector<std::function<void()>> steps{
            [this] { waitForJob(); },  [this] { plugin->command(commandId::kViewDetails); },
            [this] { selectNodes(); }, [this] { restPointer(list().handle()); },
            [this] { selectRows(); },
        };
        for (int entry = 0; entry < 9; ++entry)
            steps.emplace_back([this, entry] { choose(details(controlId::kTrackDetailsCombo), entry); });
        for (int entry = 0; entry < 3; ++entry) {
            steps.emplace_back([this, entry] {
                choose(details(controlId::kAlbumInfoCombo), entry);
                tick();
                for (int id : {controlId::kAlbumTracks, controlId::kPlayingNow})
                    ListView(details(id)).select(0);
            });
        }
        const std::initializer_list<std::function<void()>> rest{
            [this] { choose(mainCombo(controlId::kImageSizeCombo), 2); },
            [this] { settle(30); },
            [this] { command(albumCommand::kPlay); },
            [this] { command(albumCommand::kAppend); },
            [this] { command(albumCommand::kFavourite); },
            [this] { command(albumCommand::kRankNone + 3); },
            [this] { choose(mainCombo(controlId::kViewCombo), 0); },
            [this] { restPointer(GetDlgItem(plugin->pane(paneId::kOverview), controlId::kOverviewList)); },
            [this] {
                SetWindowTextA(GetDlgItem(plugin->pane(paneId::kOverview), controlId::kCriteria), "Album 2");
            },
            [this] { settle(60); },
            [this] {
                RedrawWindow(plugin->window(), nullptr, nullptr,
                             RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            },
            [this] { openDatabase(); },
            [this] { build(); },
        };
        steps.insert(steps.end(), rest);
        return steps;
    }

    // Answers the number of calls that were made.
    int session(Kind kind, int at)
    {
        storeSettings(true);
        m_calls = 0;
        m_at = at;
        m_kind = kind;
        m_due = false;
        const auto script = smallLibrary(kTracks);
        script->skinned = 1;
        plugin = std::make_unique<RunningPlugin>(script);
        plugin->container.quitsWithFrame = kind == Kind::DestroyFrame;
        plugin->container.drop();
        script->onCall = [this, script](int) { called("member " + std::to_string(script->member)); };
        script->onQuery = [this] { called("query"); };
        plugin->container.onCall = [this](const char* name) { called(name); };
        plugin->container.host(ComPtr<IDispatch>(plugin->control));
        if (plugin->control)
            plugin->start();
        const auto userSteps = steps();
        for (const auto& step : userSteps) {
            if (over())
                break;
            step();
            settle();
        }
        settle();
        end(kind);
        return m_calls;
    }

    void end(Kind kind)
    {
        if (plugin->control)
            terminate(plugin->control);
        EXPECT_FALSE(plugin->pane(paneId::kMain));
        plugin->container.drop();
        plugin->control.reset();
        EXPECT_TRUE(plugin->container.pump([this] { return plugin->module.canUnload(); }, 2000));
        plugin->container.pumpFor(0);
        const bool quits = kind == Kind::PostQuit || kind == Kind::DestroyFrame;
        EXPECT_TRUE(!quits || plugin->container.quit || m_calls < m_at);
        EXPECT_EQ(plugin->script->live, 1);
        EXPECT_EQ(plugin->script->strayReleases, 0);
        plugin->script->onCall = nullptr;
        plugin->script->onQuery = nullptr;
        plugin->container.onCall = nullptr;
        plugin.reset();
    }

    bool m_opened = false; // a database, by its dialog
    static constexpr int kTracks = 10;
    TemporaryFolder folder;
    std::unique_ptr<RunningPlugin> plugin;

private:
    std::atomic<int> m_calls{0};
    int m_at = 0;
    Kind m_kind = Kind::Nothing;
    std::atomic<bool> m_due{false};
};

// The container's own calls come first; of the others TESSERA_EVERY_CALL says of how many one is taken.
bool isTaken(int call, Kind kind)
{
    constexpr int kFirstCalls = 8;
    constexpr int kUsualStride = 80;
    const char* const wanted = std::getenv("TESSERA_EVERY_CALL");
    const int stride = wanted ? std::max(std::atoi(wanted), 1) : kUsualStride;
    return call <= kFirstCalls || (call + static_cast<int>(kind) * 7) % stride == 0;
}

TEST_F(EveryCallTest, TheHostMayEndThePlugInOrPumpMessages)
{
    const int total = session(Kind::Nothing, 0);
    ASSERT_GT(total, 100);
    ASSERT_TRUE(m_opened);
    std::printf("%d calls\n", total);
    for (const Kind kind :
         {Kind::Terminate, Kind::DropControl, Kind::DestroyFrame, Kind::PostQuit, Kind::PumpMessages}) {
        for (int at = 1; at <= total; ++at) {
            SCOPED_TRACE(std::string(kKindNames[static_cast<int>(kind)]) + ", call " + std::to_string(at));
            if (isTaken(at, kind))
                session(kind, at);
        }
    }
}

} // namespace
} // namespace tessera
