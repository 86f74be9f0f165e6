// What panes, pages and jobs ask of the controller.

#include "shell/ControlWindow.h"
#include "shell/TesseraMain.h"

#include "base/Errors.h"
#include "base/PatientFiles.h"
#include "library/FirstNames.h"
#include "library/Format.h"
#include "options/NewDatabaseWizard.h"
#include "system/Border.h"
#include "ui/ListExport.h"
#include "ui/PaneAlbumDetails.h"
#include "ui/PaneMain.h"
#include "ui/PaneOverview.h"
#include "windowing/FileDialogs.h"

namespace tessera {

namespace {

void showWaitCursor()
{
    SetCursor(LoadCursor(nullptr, IDC_WAIT));
}

} // namespace

bool TesseraMain::maySelect() const
{
    return !isBusy() && !m_host.inCall() && !m_terminating;
}

// One dialog at a time, and none from a message loop that the host runs inside a call of ours.
bool TesseraMain::mayOpenDialog() const
{
    return maySelect() && !m_modal->running();
}

// What the user marked is written first, as far as it can be. The box that says what is lost may
// outlast the plug-in.
bool TesseraMain::mayReplaceLibrary()
{
    if (!maySelect()) {
        return false;
    }
    PatientFiles files(systemFiles(), m_terminating, showWaitCursor);
    m_database.saveUnsaved(m_settings.database.lastUsed, files, m_prompt);
    return maySelect();
}

// Dialogs belong to the host's top-level window, so that it is disabled while they are open.
HWND TesseraMain::dialogOwner() const
{
    return GetAncestor(m_hwndOwner, GA_ROOT);
}

int TesseraMain::showMessage(UINT flags, const std::string& text)
{
    return tessera::showMessage(m_hwndOwner, flags, text);
}

// Commands that open dialogs are put off until the message that brought them is done with: a
// dialog's loop may outlast the panes.
void TesseraMain::newDatabase()
{
    if (mayOpenDialog()) {
        m_queue.post([main = shared_from_this()] { main->runNewDatabase(); });
    }
}

void TesseraMain::openDatabase()
{
    if (mayOpenDialog()) {
        m_queue.post([main = shared_from_this()] { main->runOpenDatabase(); });
    }
}

void TesseraMain::exportCurrentList()
{
    if (mayOpenDialog()) {
        m_queue.post([main = shared_from_this()] { main->runExport(); });
    }
}

void TesseraMain::runNewDatabase()
{
    if (!mayOpenDialog()) {
        return;
    }
    DatabaseSettings edited = m_settings.database;
    {
        const ModalLoops::Scope modal(*m_modal);
        const ActivationScope scope(m_context);
        if (!runNewDatabaseWizard(dialogOwner(), *this, edited)) {
            return;
        }
    }
    if (!mayReplaceLibrary()) {
        return;
    }
    m_settings.database = edited;
    saveDatabaseSettings();
    m_jobs.start(edited, true, currentPane());
}

void TesseraMain::runOpenDatabase()
{
    if (!mayOpenDialog()) {
        return;
    }
    std::optional<std::string> path;
    {
        const ModalLoops::Scope modal(*m_modal);
        const ActivationScope scope(m_context);
        path = openFile(dialogOwner(), {.title = "Select the database to open",
                                        .filter = "Database Files (*.ts2)|*.ts2|All Files (*.*)|*.*||",
                                        .initialName = m_settings.database.lastUsed,
                                        .defaultExtension = "",
                                        .flags = kOpenFlags});
    }
    if (!path || !mayReplaceLibrary()) {
        return;
    }
    m_settings.database.lastUsed = *path;
    saveDatabaseSettings();
    m_jobs.start(m_settings.database, false, currentPane());
}

void TesseraMain::runExport()
{
    Pane* const pane = m_panes.current();
    if (!pane || !mayOpenDialog()) {
        return;
    }
    {
        const ModalLoops::Scope modal(*m_modal);
        const ActivationScope scope(m_context);
        exportListToText(*this, *pane);
    }
    if (!m_terminating) {
        InvalidateRect(pane->window(), nullptr, TRUE);
    }
}

void TesseraMain::postDialog(std::function<void(HWND owner)> dialog)
{
    if (mayOpenDialog()) {
        m_queue.post([main = shared_from_this(), dialog = std::move(dialog)] { main->runDialog(dialog); });
    }
}

void TesseraMain::runDialog(const std::function<void(HWND owner)>& dialog)
{
    if (!mayOpenDialog()) {
        return;
    }
    const ModalLoops::Scope modal(*m_modal);
    const ActivationScope scope(m_context);
    dialog(dialogOwner());
}

void TesseraMain::runLoop(const std::function<void()>& loop)
{
    const std::shared_ptr<ModalLoops> loops = m_modal;
    const ModalLoops::Scope scope(*loops);
    loop();
}

void TesseraMain::saveDatabaseSettings()
{
    saveSettings(m_store, m_settings.database);
}

void TesseraMain::selectPane(int id)
{
    if (id == paneId::kMain || !m_panes.has(id)) {
        return;
    }
    if (maySelect()) {
        showPane(id);
    } else if (isBusy()) {
        m_paneAfterJob = id;
    } else {
        return;
    }
    m_settings.general.lastPane = id;
}

// The panes ask the host as they show; each stays alive without its window.
void TesseraMain::showPane(int id)
{
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    m_panes.hideCurrent();
    m_paneMain->showCurrentPane(id);
    m_panes.show(id);
    m_paneMain->refreshCommands();
}

void TesseraMain::setCurrentView(ListStyle style)
{
    Pane* const pane = m_panes.current();
    if (pane && maySelect()) {
        pane->setView(style);
    }
}

void TesseraMain::imageSizeChosen(int index)
{
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    if (maySelect()) {
        m_settings.artwork.imageSizeIndex = index;
        m_artwork.resetImageLists(true); // which tells the panes
        startLoadingCovers();
    }
}

// Behind what is going on now, so that it never comes before the end of a load.
void TesseraMain::startLoadingCovers()
{
    m_queue.post([main = shared_from_this()] { main->m_artwork.startBackgroundLoading(); });
}

namespace {

BOOL CALLBACK tellColours(HWND window, LPARAM) noexcept
{
    SendMessageA(window, WM_SYSCOLORCHANGE, 0, 0);
    return TRUE;
}

} // namespace

// A window inside the host's hears of other colours of the system only from a host that passes them on;
// the frame of the host's skin may change at any time, and painting does not ask.
void TesseraMain::followColours()
{
    const bool system = m_colours.followSystem();
    const bool skin = m_colours.read();
    if ((!system && !skin) || !maySelect()) {
        return;
    }
    if (system) {
        EnumChildWindows(m_hwndOwner, tellColours, 0);
    }
    m_panes.forEach([](Pane& pane) { pane.settingsChanged(); });
    if (m_terminating) {
        return;
    }
    m_artwork.resetImageLists(true);
    RedrawWindow(m_hwndOwner, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    startLoadingCovers();
}

void TesseraMain::trackCursor(POINT screen, bool moved)
{
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    if (maySelect()) {
        followColours();
    }
    if (maySelect()) {
        m_panes.forEach([&](Pane& pane) { pane.trackCursor(screen, moved); });
    }
}

// The focus follows the new trees only where it is inside the plug-in already.
void TesseraMain::refreshAfterChange(bool reload)
{
    if (reload) {
        m_panes.forEach([](Pane& pane) { pane.reload(); });
    }
    const HWND focus = GetFocus();
    const Pane* const pane = m_panes.current();
    if (pane && pane->id() == paneId::kAlbumDetails && IsChild(m_hwndOwner, focus)) {
        SetFocus(pane->focusWindow());
    }
}

void TesseraMain::skinControl(HWND control)
{
    if (m_colours.usesHost() && !m_terminating) {
        const auto window = static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(control));
        quietBorder(0, [&] { return m_host.skin(window, 1); });
    }
}

void TesseraMain::layoutPanes(SIZE size)
{
    m_panes.layout(m_hwndOwner, size, m_bandHeight);
}

HWND TesseraMain::focusTarget() const
{
    const Pane* const pane = m_panes.current();
    return pane ? pane->focusWindow() : nullptr;
}

void TesseraMain::loadArtistFirstNames()
{
    const std::string& path = m_settings.general.artistFirstNames;
    m_firstNames.clear();
    if (path.empty()) {
        return;
    }
    if (const auto bytes = systemFiles().readAll(path)) {
        m_firstNames = parseFirstNames({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
        return;
    }
    m_prompt.message(Severity::Exclamation,
                     format("Could not open the artist first names file '%s'!", shownName(path).c_str()));
}

// The panes follow whether or not the file could be written: the marks hold in memory. Once a wait for the
// file was in vain, nobody waits for each mark that follows.
void TesseraMain::marksChanged(std::span<Album* const> changed)
{
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    PatientFiles patient(systemFiles(), m_terminating, showWaitCursor);
    FileSystem& files = m_database.unsavedAlbums() > 0 ? systemFiles() : patient;
    m_database.update(m_settings.database.lastUsed, changed, files, m_prompt);
    if (m_terminating) {
        return;
    }
    m_catalogue.marksChanged();
    m_panes.forEach([&](Pane& pane) { pane.marksChanged(changed); });
}

void TesseraMain::playFiles(const PlayRequest& request)
{
    if (maySelect()) {
        m_host.playFiles(request);
    }
}

Library TesseraMain::emptyLibrary()
{
    m_artwork.stopBackgroundLoading();
    m_panes.forEach([](Pane& pane) { pane.clearRecords(); });
    m_catalogue.clear();
    m_artwork.closeLibrary();
    return m_database.takeLibrary();
}

void TesseraMain::beginFill(Log& log)
{
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    loadArtistFirstNames();
    if (m_terminating) {
        return;
    }
    log.line("Loading treeview");
    m_catalogue.fill(library());
    m_detailsFilled = false;
    m_paneAlbumDetails->beginRebuild(log);
}

bool TesseraMain::stepFill()
{
    if (m_terminating) {
        return false;
    }
    if (m_detailsFilled) {
        m_paneOverview->reload();
        return false;
    }
    m_detailsFilled = !m_paneAlbumDetails->stepRebuild();
    return true;
}

// The remembered pane stays what is saved while the log is in front.
void TesseraMain::jobStarts(bool creating)
{
    m_paneAfterJob.reset();
    showPane(paneId::kLog);
    if (creating) {
        EnableWindow(m_hwndOwner, FALSE);
    }
}

void TesseraMain::jobEnded(bool loaded, std::vector<KeptMarks> kept, int rememberedPane)
{
    m_host.releaseDropped();
    if (loaded) {
        m_artwork.openLibrary(library(), (m_database.flags() & ts2::kHasImages) != 0);
    }
    EnableWindow(m_hwndOwner, TRUE);
    refreshAfterChange(!loaded);
    if (loaded || m_paneAfterJob) {
        selectPane(m_paneAfterJob.value_or(rememberedPane));
    }
    if (loaded) {
        startLoadingCovers();
        m_paneAlbumDetails->offerMarks(std::move(kept)); // a build begins without any
    }
    m_paneMain->refreshCommands();
}

} // namespace tessera
