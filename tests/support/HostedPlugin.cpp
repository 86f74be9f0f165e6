#include "HostedPlugin.h"

#include "base/Text.h"
#include "system/Registry.h"
#include "ui/ids.h"
#include "windowing/ListView.h"

#include <algorithm>

namespace tessera {

HostedPlugin::HostedPlugin(ComPtr<IDispatch> host_) : host(std::move(host_)), control(module.makeControl())
{
    container.host(control);
}

HostedPlugin::~HostedPlugin()
{
    if (control) {
        stop();
    }
    container.drop();
}

void HostedPlugin::start()
{
    init(control, host.get());
}

void HostedPlugin::stop()
{
    terminate(control);
}

int HostedPlugin::shownPane() const
{
    for (const int id : {paneId::kOverview, paneId::kAlbumDetails, paneId::kLog}) {
        if (IsWindowVisible(pane(id))) {
            return id;
        }
    }
    return 0;
}

namespace {

ListView logList(const HostedPlugin& plugin)
{
    return ListView(GetDlgItem(plugin.pane(paneId::kLog), controlId::kLogList));
}

} // namespace

std::string HostedPlugin::logText() const
{
    const ListView list = logList(*this);
    std::string text;
    for (int row = 0; row < list.count(); ++row) {
        text += list.text(row, 2) + '\n';
    }
    return text;
}

std::vector<std::string> HostedPlugin::log(int firstRow) const
{
    const ListView list = logList(*this);
    std::vector<std::string> lines;
    for (int row = firstRow; row < list.count(); ++row) {
        const std::string text = list.text(row, 2);
        lines.push_back(text.substr(std::min(text.find_first_not_of(' '), text.size())));
    }
    return lines;
}

int HostedPlugin::logCount() const
{
    return logList(*this).count();
}

bool HostedPlugin::logged(const std::string& text) const
{
    return std::ranges::count(log(), text) > 0;
}

bool HostedPlugin::busy() const
{
    SetCursor(LoadCursorA(nullptr, IDC_ARROW));
    SendMessageA(window(), WM_SETCURSOR, reinterpret_cast<WPARAM>(window()),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor() == LoadCursorA(nullptr, IDC_WAIT);
}

bool HostedPlugin::waitForJob(DWORD milliseconds)
{
    return container.pump([this] { return !busy(); }, milliseconds);
}

bool HostedPlugin::beginCreating()
{
    boxes.onDialog = walkWizard;
    const int before = logCount();
    command(commandId::kNewDatabase);
    // Covers may be loading meanwhile, with lines of their own.
    return container.pump([&] { return busy() || std::ranges::count(log(before), "Creating Database") > 0; });
}

bool HostedPlugin::beginOpening(const std::string& path)
{
    constexpr int kFileName = 0x47c; // of the system's dialog
    // It may still be filling itself when it is first seen.
    boxes.onDialog = [&](HWND dialog) {
        const HWND name = GetDlgItem(dialog, kFileName);
        if (windowText(dialog) != "Select the database to open" || !name) {
            return;
        }
        if (windowText(name) == path) {
            PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        } else {
            SendMessageA(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        }
    };
    const int before = logCount();
    command(commandId::kOpenDatabase);
    const bool begun =
        container.pump([&] { return std::ranges::count(log(before), "Loading Database") > 0; });
    boxes.onDialog = nullptr;
    return begun;
}

namespace {

template <class Group>
void storeGroup(const Group& group)
{
    RegistryStore registry;
    saveSettings(registry, group);
}

template <class Group>
Group storedGroup()
{
    RegistryStore registry;
    return loadSettings<Group>(registry);
}

} // namespace

void store(const GeneralSettings& general)
{
    storeGroup(general);
}

void store(const DatabaseSettings& database)
{
    storeGroup(database);
}

GeneralSettings storedGeneral()
{
    return storedGroup<GeneralSettings>();
}

DatabaseSettings storedDatabase()
{
    return storedGroup<DatabaseSettings>();
}

} // namespace tessera
