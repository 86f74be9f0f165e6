// Memory, windows and places in the message queue run short while the plug-in works or ends.

#include "MarksFixture.h"
#include "support/ModuleImport.h"
#include "support/ReplacedImport.h"

#include <cstdlib>
#include <optional>

namespace tessera {
namespace {

using Allocate = void*(__cdecl*)(std::size_t);

// Of the plug-in's allocations on the threads that are chosen, those from one on fail. The C++ runtime does
// not survive it when it finds no memory for its own locks, so blocks of their size are given.
class ShortMemory {
public:
    ShortMemory() : m_import(place(), &allocate) {}
    ~ShortMemory() { stop(); }
    ShortMemory(const ShortMemory&) = delete;
    ShortMemory& operator=(const ShortMemory&) = delete;

    enum class On { UiThread, OtherThreads };
    static void start(On threads, int succeeding)
    {
        s_threads = threads;
        s_made = 0;
        s_succeeding = succeeding;
        s_uiThread = GetCurrentThreadId();
        s_on = true;
    }
    // Answers the number of allocations since the start.
    static int stop()
    {
        s_on = false;
        return s_made;
    }

private:
    static constexpr std::size_t kLockSize = 20;

    static Allocate& place()
    {
        return *test::importPlace<Allocate>(GetModuleHandleA("tessera2.dll"), "malloc");
    }
    static void* __cdecl allocate(std::size_t size)
    {
        const bool counts =
            s_on && size > kLockSize && (GetCurrentThreadId() == s_uiThread) == (s_threads == On::UiThread);
        return counts && s_made++ >= s_succeeding ? nullptr : std::malloc(size);
    }

    static inline std::atomic<bool> s_on{false};
    static inline std::atomic<int> s_made{0};
    static inline On s_threads = On::UiThread;
    static inline int s_succeeding = 0;
    static inline DWORD s_uiThread = 0;
    const test::ReplacedImport<Allocate> m_import;
};

bool isQueue(HWND window)
{
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    return std::strcmp(name, "TesseraQueue") == 0;
}

// Every other message of the queue of tasks is lost.
LRESULT CALLBACK loseTasks(int code, WPARAM how, LPARAM lParam)
{
    static int tasks = 0;
    auto* const message = reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && how == PM_REMOVE && message->message == WM_APP + 1 && isQueue(message->hwnd) &&
        ++tasks % 2 == 1)
        message->message = WM_NULL;
    return CallNextHookEx(nullptr, code, how, lParam);
}

LRESULT CALLBACK refuseQueue(int code, WPARAM window, LPARAM lParam)
{
    if (code == HCBT_CREATEWND && isQueue(reinterpret_cast<HWND>(window)))
        return 1;
    return CallNextHookEx(nullptr, code, window, lParam);
}

class ThreadHook {
public:
    ThreadHook(int kind, HOOKPROC procedure)
        : m_hook(SetWindowsHookExA(kind, procedure, nullptr, GetCurrentThreadId()))
    {
    }
    ~ThreadHook() { UnhookWindowsHookEx(m_hook); }
    ThreadHook(const ThreadHook&) = delete;
    ThreadHook& operator=(const ThreadHook&) = delete;

private:
    HHOOK m_hook;
};

class ShortOfEverythingTest : public MarksTest {};

TEST_F(ShortOfEverythingTest, LostMessagesOfTheTaskQueueDelayAJobAndNoMore)
{
    start();
    const ThreadHook hook(WH_GETMESSAGE, &loseTasks);
    ASSERT_TRUE(plugin->create());
    EXPECT_TRUE(plugin->boxes.texts.empty());
    EXPECT_EQ(leaves(tree()), 6);
}

TEST_F(ShortOfEverythingTest, AQueueThatCannotBeMadeIsTold)
{
    plugin = std::make_unique<RunningPlugin>();
    {
        const ThreadHook hook(WH_CBT, &refuseQueue);
        plugin->start();
    }
    EXPECT_EQ(plugin->boxes.texts, Texts{"There is not enough memory."});
    EXPECT_FALSE(plugin->pane(paneId::kMain));
    plugin->stop();
    plugin->start();
    EXPECT_TRUE(plugin->waitForJob());
    EXPECT_EQ(plugin->shownPane(), paneId::kAlbumDetails);
}

// Whatever the worker is at, the job ends, the user is told, and the next one works.
TEST_F(ShortOfEverythingTest, AWorkerWithoutMemoryEndsItsJob)
{
    start();
    const ShortMemory memory;
    const auto create = [&](int succeeding) {
        plugin->boxes.texts.clear();
        EXPECT_TRUE(plugin->beginCreating());
        ShortMemory::start(ShortMemory::On::OtherThreads, succeeding);
        EXPECT_TRUE(plugin->waitForJob()) << succeeding;
        plugin->container.pumpFor(0);
        return ShortMemory::stop();
    };
    const int total = create(INT_MAX);
    ASSERT_GT(total, 100);
    for (int succeeding = 0; succeeding < total; succeeding += succeeding < 4 ? 1 : total / 8) {
        create(succeeding);
        EXPECT_FALSE(plugin->busy()) << succeeding;
        EXPECT_TRUE(systemFiles().exists(path));
    }
    create(INT_MAX);
    EXPECT_TRUE(plugin->boxes.texts.empty());
    chooseAll();
    EXPECT_EQ(list().count(), 6);
}

// Inside a call of the host, so that the controller must outlast its end.
TEST_F(ShortOfEverythingTest, TheEndNeedsNoMemory)
{
    int total = 1;
    for (int succeeding = 0; succeeding <= total; succeeding += succeeding < 4 ? 1 : total / 6 + 1) {
        start();
        std::optional<ShortMemory> memory(std::in_place);
        chooseRows({"Album 2"});
        int made = 0;
        bool ended = false;
        plugin->script->onCall = [&](int) {
            if (std::exchange(ended, true))
                return;
            ShortMemory::start(ShortMemory::On::UiThread, succeeding == 0 ? INT_MAX : succeeding - 1);
            plugin->stop();
            made = ShortMemory::stop();
        };
        command(albumCommand::kPlay);
        plugin->script->onCall = nullptr;
        memory.reset();
        total = succeeding == 0 ? made : total;
        EXPECT_FALSE(plugin->pane(paneId::kMain)) << succeeding;
        plugin->container.pumpFor(60);
        EXPECT_EQ(plugin->script->live, 1) << succeeding;
        plugin->start(); // nothing of the first is in the way
        EXPECT_TRUE(plugin->pane(paneId::kMain)) << succeeding;
        EXPECT_TRUE(plugin->waitForJob());
        plugin->stop();
        plugin->container.drop();
        plugin->control.reset();
        plugin->container.pumpFor(60);
        EXPECT_TRUE(plugin->module.canUnload()) << succeeding;
        plugin.reset();
    }
    EXPECT_GT(total, 20);
}

} // namespace
} // namespace tessera
