// Figures of the whole plug-in: the real module in a container, with a stub host of 100,000 tracks
// in 8,400 albums, without covers.

#include "Report.h"
#include "StubHost.h"

#include "base/Files.h"
#include "support/HostedPlugin.h"
#include "support/TemporaryFolder.h"
#include "ui/ActivityLog.h"
#include "ui/ids.h"
#include "windowing/ListView.h"

#include <algorithm>
#include <cstdio>
#include <thread>

using namespace tessera;
using namespace tessera::bench;

namespace {

constexpr DWORD kLongest = 600000; // milliseconds that a job may take

// Time that this thread has run, in milliseconds; waiting for a core does not count.
double ownTime()
{
    FILETIME created;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    require(GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user) != FALSE,
            "the system does not tell a thread's time");
    const auto ticks = [](const FILETIME& time) { // of 100 ns
        return static_cast<double>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    };
    return (ticks(kernel) + ticks(user)) / 10000;
}

struct Gap {
    double all = 0; // milliseconds
    double own = 0; // of this thread, as finely as the system tells
};

Gap worst(const Gap& left, const Gap& right)
{
    return {std::max(left.all, right.all), std::max(left.own, right.own)};
}

Gap best(const Gap& left, const Gap& right)
{
    return {std::min(left.all, right.all), std::min(left.own, right.own)};
}

// A 20 ms timer of this thread, which is the user interface's: how long it is kept waiting.
class GapWatch {
public:
    GapWatch() : m_timer(SetTimer(nullptr, 0, 20, tick)) { g_watch = this; }
    ~GapWatch()
    {
        KillTimer(nullptr, m_timer);
        g_watch = nullptr;
    }
    GapWatch(const GapWatch&) = delete;
    GapWatch& operator=(const GapWatch&) = delete;

    // Time up to now counts.
    Gap longest() const { return worst(m_longest, {millisecondsSince(m_last), ownTime() - m_lastOwn}); }

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD)
    {
        if (g_watch == nullptr)
            return;
        g_watch->m_longest = g_watch->longest();
        g_watch->m_last = Clock::now();
        g_watch->m_lastOwn = ownTime();
    }

    static GapWatch* g_watch;
    UINT_PTR m_timer;
    Clock::time_point m_last = Clock::now();
    double m_lastOwn = ownTime();
    Gap m_longest;
};
GapWatch* GapWatch::g_watch = nullptr;

void storeSettings(const std::string& file)
{
    forgetSettings();
    GeneralSettings general;
    general.lastPane = paneId::kOverview;
    general.firstTime = false;
    store(general);
    DatabaseSettings database;
    database.lastUsed = file;
    database.artworkDirectories.clear();
    store(database);
}

void requireLoaded(const HostedPlugin& plugin, std::size_t loads)
{
    for (const std::string& text : plugin.boxes.texts)
        std::fprintf(stderr, "bench: message: %s\n", text.c_str());
    require(plugin.boxes.texts.empty(), "the plug-in shows a message");
    const std::vector<std::string> log = plugin.log();
    require(std::ranges::count(log, "Loading treeview") == static_cast<std::ptrdiff_t>(loads),
            "the load failed");
}

// What one run of the plug-in shows, in milliseconds and megabytes.
struct Figures {
    double memory = 0;
    Gap loadGap;
    Gap buildGap;
    double build = 0;
};

// The load at start-up; what it takes of memory and of the user-interface thread.
void watchLoad(HostedPlugin& plugin, Figures& figures)
{
    const std::optional<double> before = privateMemory();
    plugin.start();
    const GapWatch gaps;
    require(plugin.waitForJob(kLongest), "the load takes too long");
    plugin.container.pumpFor(1000); // what is posted at its end
    const std::optional<double> after = privateMemory();
    requireLoaded(plugin, 1);
    require(before && after, "the system does not tell the memory in use");
    figures.memory = *after - *before;
    figures.loadGap = gaps.longest();
}

// Minutes, seconds and milliseconds of a line of the log.
double logTime(const HostedPlugin& plugin, int row)
{
    const ListView list(GetDlgItem(plugin.pane(paneId::kLog), controlId::kLogList));
    int minutes = 0;
    int seconds = 0;
    int milliseconds = 0;
    const std::string text = list.text(row, 0);
    require(std::sscanf(text.c_str(), "%d:%d.%d", &minutes, &seconds, &milliseconds) == 3,
            "no time in the log");
    return (minutes * 60 + seconds) * 1000.0 + milliseconds;
}

// From Finish of the wizard, with a loaded library that goes first.
void watchBuild(HostedPlugin& plugin, Figures& figures)
{
    const int firstRow = plugin.logCount();
    std::optional<GapWatch> gaps;
    plugin.boxes.onDialog = [&](HWND dialog) {
        walkWizard(dialog);
        gaps.emplace();
    };
    plugin.command(commandId::kNewDatabase);
    require(plugin.container.pump([&] { return plugin.busy(); }), "the build does not begin");
    require(plugin.waitForJob(kLongest), "the build takes too long");
    plugin.container.pumpFor(1000);
    requireLoaded(plugin, 2);
    figures.buildGap = gaps->longest();

    const std::vector<std::string> log = plugin.log(firstRow);
    const auto loading = std::ranges::find(log, "Loading Database");
    require(loading != log.end(), "the build did not end");
    figures.build = logTime(plugin, firstRow + static_cast<int>(loading - log.begin()) - 1);
}

// What a job's progress costs it while a window shows it.
double progressTime()
{
    constexpr std::uint32_t kReports = 100000;
    constexpr UINT kChanged = WM_APP;
    ActivityLog log;
    const HWND window =
        CreateWindowExA(0, "Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    log.attach(window, kChanged);
    const auto job = log.newJob();
    job->line("Linking tracks to MJ");
    std::atomic<bool> done{false};
    double time = 0;
    std::thread worker([&] {
        const Clock::time_point start = Clock::now();
        for (std::uint32_t i = 1; i <= kReports; ++i)
            job->progress(i, kReports);
        time = millisecondsSince(start);
        done = true;
    });
    while (!done) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == kChanged)
                log.takeChanges();
        }
        Sleep(1);
    }
    worker.join();
    log.detach();
    DestroyWindow(window);
    return time;
}

// The memory of the first run, before other work leaves some that is used again; of the times the
// best, since neighbours on a busy machine keep threads waiting, too.
Figures bestOfRuns(const GeneratedLibrary& library)
{
    constexpr int kRuns = 5;
    const auto tracks = std::make_shared<StubTracks>();
    Figures bests;
    for (int run = 0; run < kRuns; ++run) {
        Figures figures;
        HostedPlugin plugin(makeStubHost(tracks));
        watchLoad(plugin, figures);
        if (run == 0) {
            tracks->fill(library);
            bests = figures;
        }
        watchBuild(plugin, figures);
        bests.loadGap = best(bests.loadGap, figures.loadGap);
        bests.buildGap = run == 0 ? figures.buildGap : best(bests.buildGap, figures.buildGap);
        bests.build = run == 0 ? figures.build : std::min(bests.build, figures.build);
    }
    return bests;
}

} // namespace

int main()
{
    const OleInit ole;
    const TemporaryFolder folder("bench-plugin");
    const std::string file = folder.file("music.ts2");
    const GeneratedLibrary library(shapeOf(100000));
    library.writeFile(file);
    storeSettings(file);
    const Figures bests = bestOfRuns(library);
    forgetSettings();
    report({"growth of private memory, Init and load", bests.memory, "MB", std::nullopt, 40.0});
    report({"longest gap of a 20 ms timer, load", bests.loadGap.all, "ms", std::nullopt, 100.0},
           OnWindows::Needed);
    report({"  most of the thread's own time in a gap", bests.loadGap.own, "ms"});
    report({"longest gap of a 20 ms timer, build and load", bests.buildGap.all, "ms", std::nullopt, 100.0},
           OnWindows::Needed);
    report({"  most of the thread's own time in a gap, build and load", bests.buildGap.own, "ms"});
    report({"build without covers, the whole plug-in", bests.build, "ms"});
    report({"100,000 progress reports, against that build", progressTime(), "ms", bests.build, 0.01},
           OnWindows::Helpful);
    return 0;
}
