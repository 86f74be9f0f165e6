#include "base/Clock.h"
#include "jukebox/MainWindow.h"
#include "jukebox/Options.h"
#include "jukebox/TrackFile.h"
#include "jukebox/Walk.h"
#include "jukebox/WideText.h"

#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>

using namespace tessera;
using namespace tessera::jukebox;

namespace {

constexpr std::size_t kComplaintsShown = 20;

void tellComplaints(const std::vector<std::string>& complaints, const std::wstring& path)
{
    for (std::size_t i = 0; i < std::min(complaints.size(), kComplaintsShown); ++i) {
        std::fprintf(stderr, "%s, %s\n", toUtf8(path).c_str(), complaints[i].c_str());
    }
    if (complaints.size() > kComplaintsShown) {
        std::fprintf(stderr, "... and %u more lines like these\n",
                     static_cast<unsigned>(complaints.size() - kComplaintsShown));
    }
}

std::optional<Library> readLibrary(const std::wstring& path)
{
    std::optional<std::string> text = readWholeFile(path);
    if (!text) {
        std::fprintf(stderr, "The library file %s cannot be read.\n", toUtf8(path).c_str());
        return std::nullopt;
    }
    std::vector<std::string> complaints;
    std::optional<Library> library = Library::parse(std::move(*text), complaints);
    tellComplaints(complaints, path);
    return library;
}

// A walk with what it needs round it: the thread, the watch for boxes, and an end that comes
// even when the main thread hangs.
class WalkThread {
public:
    WalkThread(HWND window, const Options& options)
        : m_watch(m_report, L"Tessera 2.0"),
          m_walk(window, options, m_report, m_watch),
          m_thread("walk", [this, window] { walk(window); })
    {
    }
    int exitCode() const { return m_exitCode; }
    void closed() { m_closed.set(); }

private:
    void walk(HWND window)
    {
        m_exitCode = m_walk.run();
        PostMessageA(window, WM_CLOSE, 0, 0);
        if (!m_closed.wait(kClosingMs)) {
            m_report.step("FAILED: the player did not close");
            TerminateProcess(GetCurrentProcess(), 1);
        }
    }

    static constexpr DWORD kClosingMs = 30 * 1000;
    Report m_report;
    MessageWatch m_watch;
    Walk m_walk;
    Event m_closed;
    std::atomic<int> m_exitCode = 1; // also when somebody closes the window meanwhile
    Thread m_thread;
};

int runPlayer(const Options& options)
{
    const std::optional<Library> library = readLibrary(options.library);
    if (!library) {
        return 2;
    }
    const OleInit ole;
    Player player(*library, tickCount);
    HostState state{*library, player, options.skin};
    MainWindow window(state);
    if (!window.open()) {
        std::fprintf(stderr, "The main window could not be created; is there a display?\n");
        return 1;
    }
    std::unique_ptr<WalkThread> walk;
    if (options.walk) {
        // Pictures of the screen then show the player alone.
        MoveWindow(window.handle(), 0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN), TRUE);
        walk = std::make_unique<WalkThread>(window.handle(), options);
    }
    window.run();
    if (!walk) {
        return 0;
    }
    walk->closed();
    return walk->exitCode();
}

} // namespace

extern "C" int wmain(int count, wchar_t** arguments)
{
    _setmode(_fileno(stdout), _O_BINARY); // lines end as those of other commands do
    _setmode(_fileno(stderr), _O_BINARY);
    std::string problem;
    const std::optional<Options> options =
        parseOptions({arguments + std::min(count, 1), arguments + count}, problem);
    if (!options) {
        std::fprintf(stderr, "%s\n%s", problem.c_str(), kUsage);
        return 2;
    }
    return runPlayer(*options);
}
