#pragma once

#include "BoxWatcher.h"
#include "Plugin.h"
#include "TestContainer.h"

#include "settings/Settings.h"

#include <string>
#include <vector>

namespace tessera {

// A control of the plug-in in a container, with a host that the caller brings; ends in the order of
// a host.
class HostedPlugin {
public:
    explicit HostedPlugin(ComPtr<IDispatch> host);
    ~HostedPlugin();
    HostedPlugin(const HostedPlugin&) = delete;
    HostedPlugin& operator=(const HostedPlugin&) = delete;

    void start();
    void stop();

    HWND window() const { return container.controlWindow(); }
    HWND pane(int id) const { return GetDlgItem(window(), id); }
    // The pane below the main pane that shows; 0: none.
    int shownPane() const;
    void command(int id) const { SendMessageA(pane(0), WM_COMMAND, static_cast<WPARAM>(id), 0); }
    // Descriptions in the log, a line each.
    std::string logText() const;
    // Those from a row on, without their indentation.
    std::vector<std::string> log(int firstRow = 0) const;
    int logCount() const;
    bool logged(const std::string& text) const;
    // A job creates or loads: the control shows the wait cursor.
    bool busy() const;
    // Pumps until no job runs any more; false after the time.
    bool waitForJob(DWORD milliseconds = 10000);
    // Presses the new-database button and walks the wizard; answers when the job has begun.
    bool beginCreating();
    // The same to the end of the job.
    bool create() { return beginCreating() && waitForJob(); }
    // By the open button and the system's dialog; answers when the job has begun, or is over.
    bool beginOpening(const std::string& path);
    bool open(const std::string& path) { return beginOpening(path) && waitForJob(); }

    PluginModule module;
    ComPtr<IDispatch> host;
    TestContainer container;
    BoxWatcher boxes;
    ComPtr<IDispatch> control;
};

// Stores a group as the plug-in finds it at its start.
void store(const GeneralSettings& general);
void store(const DatabaseSettings& database);
GeneralSettings storedGeneral();
DatabaseSettings storedDatabase();

} // namespace tessera
