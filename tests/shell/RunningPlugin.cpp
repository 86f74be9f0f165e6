#include "RunningPlugin.h"

#include "base/Text.h"
#include "system/Registry.h"
#include "ui/ids.h"
#include "windowing/ListView.h"

#include <algorithm>

namespace tessera {

RunningPlugin::RunningPlugin(std::shared_ptr<HostScript> script_)
    : script(std::move(script_)), host(makeFakeHost(script)), control(module.makeControl())
{
    container.host(control);
}

RunningPlugin::~RunningPlugin()
{
    if (control) {
        stop();
    }
    container.drop();
}

void RunningPlugin::start()
{
    init(control, host.get());
}

void RunningPlugin::stop()
{
    terminate(control);
}

int RunningPlugin::shownPane() const
{
    for (const int id : {paneId::kOverview, paneId::kAlbumDetails, paneId::kLog}) {
        if (IsWindowVisible(pane(id))) {
            return id;
        }
    }
    return 0;
}

std::vector<std::string> RunningPlugin::log(int firstRow) const
{
    const ListView list(GetDlgItem(pane(paneId::kLog), controlId::kLogList));
    std::vector<std::string> lines;
    for (int row = firstRow; row < list.count(); ++row) {
        const std::string text = list.text(row, 2);
        lines.push_back(text.substr(std::min(text.find_first_not_of(' '), text.size())));
    }
    return lines;
}

int RunningPlugin::logCount() const
{
    return ListView(GetDlgItem(pane(paneId::kLog), controlId::kLogList)).count();
}

bool RunningPlugin::logged(const std::string& text) const
{
    return std::ranges::count(log(), text) > 0;
}

bool RunningPlugin::busy() const
{
    SetCursor(LoadCursorA(nullptr, IDC_ARROW));
    SendMessageA(window(), WM_SETCURSOR, reinterpret_cast<WPARAM>(window()),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor() == LoadCursorA(nullptr, IDC_WAIT);
}

bool RunningPlugin::waitForJob()
{
    return container.pump([this] { return !busy(); });
}

bool RunningPlugin::beginCreating()
{
    boxes.onDialog = walkWizard;
    const int before = logCount();
    command(commandId::kNewDatabase);
    // Covers may be loading meanwhile, with lines of their own.
    return container.pump([&] { return busy() || std::ranges::count(log(before), "Creating Database") > 0; });
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
