#include "jukebox/Walk.h"

#include "base/Text.h"
#include "jukebox/Screen.h"
#include "jukebox/TrackFile.h"
#include "jukebox/WideText.h"
#include "system/Border.h"

#include <commctrl.h>

namespace tessera::jukebox {

namespace {

constexpr int kOverviewPane = 1000;
constexpr int kDetailsPane = 2000;
constexpr int kLogPane = 3000;
constexpr int kLogList = 3001;
constexpr int kViewCombo = 1;
constexpr UINT kNewDatabase = 57600;
constexpr UINT kOpenDatabase = 57601;
constexpr int kWizardPages = 6;
constexpr int kFileNameBox = 0x47c; // of the system's file dialogs

constexpr unsigned kPollMs = 50;
constexpr unsigned kStartMs = 60 * 1000;
constexpr unsigned kDialogMs = 20 * 1000;
constexpr unsigned kChoiceMs = 1000;
constexpr unsigned kJobMs = 570 * 1000;
constexpr unsigned kStallMs = 120 * 1000; // without a change in the log
constexpr unsigned kQuietMs = 5 * 1000;   // the same after a message, or with nothing going on
constexpr unsigned kPictureMs = 15 * 1000;
constexpr unsigned kSettleMs = 400;

std::wstring pageCaption(int page)
{
    return L"Step " + std::to_wstring(page) + L" of " + std::to_wstring(kWizardPages);
}

std::string seconds(unsigned milliseconds)
{
    return format("%.3f s", milliseconds / 1000.0);
}

HWND visibleEdit(HWND dialog)
{
    for (const HWND child : descendantsOf(dialog)) {
        if (classOf(child) == "Edit" && IsWindowVisible(child)) {
            return child;
        }
    }
    return nullptr;
}

} // namespace

Walk::Walk(HWND mainWindow, const Options& options, Report& report, const MessageWatch& messages)
    : m_mainWindow(mainWindow), m_options(options), m_report(report), m_messages(messages)
{
}

int Walk::run()
{
    try {
        m_options.checkMarks.empty() ? tryOut() : readMarksBack();
        step("Done");
        return 0;
    } catch (const StepFailed& failure) {
        tellFailure(failure.reason);
    } catch (...) {
        tellFailure(caughtMessage());
    }
    return 1;
}

void Walk::tryOut()
{
    findPlugin();
    waitUntilIdle();
    m_options.open.empty() ? createDatabase() : openDatabase(m_options.open);
    watchJob();
    writeLog();
    takePictures();
    markAlbums();
}

void Walk::step(const std::string& text)
{
    m_step = text;
    m_report.step(text);
}

void Walk::waitFor(const std::function<bool()>& condition, unsigned milliseconds, const std::string& reason)
{
    const unsigned start = m_report.elapsedMs();
    while (!condition()) {
        if (!IsWindow(m_mainWindow)) {
            throw StepFailed{"the player was closed"};
        }
        if (m_report.elapsedMs() - start > milliseconds) {
            throw StepFailed{reason};
        }
        Sleep(kPollMs);
    }
}

void Walk::findPlugin()
{
    step("Waiting for the plug-in");
    waitFor(
        [this] {
            failIfPluginIsMissing();
            return findPanes() && answers(m_control);
        },
        kStartMs, "the plug-in's panes did not appear");
    m_log = ActivityLog(childWithId(childWithId(m_control, kLogPane), kLogList));
    step("The plug-in is there");
}

void Walk::failIfPluginIsMissing() const
{
    for (const HWND child : childrenOf(m_mainWindow)) {
        const std::wstring text = classOf(child) == "MJPluginArea" ? textOf(child) : std::wstring();
        if (!text.empty()) {
            throw StepFailed{"the player says: " + onOneLine(toUtf8(text))};
        }
    }
}

bool Walk::findPanes()
{
    for (const HWND window : descendantsOf(m_mainWindow)) {
        const HWND mainPane = childWithId(window, 0);
        const HWND logPane = childWithId(window, kLogPane);
        if (mainPane && logPane && childWithId(logPane, kLogList) && childWithId(window, kOverviewPane) &&
            childWithId(window, kDetailsPane)) {
            m_control = window;
            m_mainPane = mainPane;
            return true;
        }
    }
    return false;
}

// The plug-in may be opening its last database.
void Walk::waitUntilIdle()
{
    m_lastChange = m_report.elapsedMs();
    waitFor(
        [this] {
            if (!m_log.update() || !IsWindowEnabled(m_control)) {
                return false;
            }
            noteLogChange();
            const JobState state = jobState(m_log.lines());
            const unsigned quiet = m_report.elapsedMs() - m_lastChange;
            // A load that fails says so in a box and never finishes.
            const bool between =
                state == JobState::None || state == JobState::Finished || m_messages.count() != 0;
            return quiet > (between ? kSettleMs : kQuietMs);
        },
        kJobMs, "the plug-in did not come to rest after its start");
    m_firstLine = m_log.lines().size();
    m_messagesBefore = m_messages.count();
}

void Walk::createDatabase()
{
    step("Pressing the new-database button");
    PostMessageA(m_mainPane, WM_COMMAND, MAKEWPARAM(kNewDatabase, 0), 0);
    HWND wizard = nullptr;
    waitFor([&] { return (wizard = dialogCaptioned(pageCaption(1))) != nullptr; }, kDialogMs,
            "the wizard did not open");
    for (int page = 1; page < kWizardPages; ++page) {
        if (page == 2) {
            enterDatabase(wizard);
        }
        nextPage(wizard, page);
    }
    step("Pressing Finish");
    m_jobStart = m_report.elapsedMs();
    PostMessageA(wizard, PSM_PRESSBUTTON, PSBTN_FINISH, 0);
    waitFor([&] { return !IsWindow(wizard) || !IsWindowVisible(wizard); }, kDialogMs,
            "the wizard did not close");
}

void Walk::enterDatabase(HWND wizard)
{
    HWND edit = nullptr;
    waitFor([&] { return (edit = visibleEdit(wizard)) != nullptr; }, kDialogMs,
            "the page has no field for the database");
    if (m_options.database.empty()) {
        m_database = textOf(edit);
        m_report.step("The wizard proposes the database " + toUtf8(m_database));
        return;
    }
    if (!setText(edit, m_options.database) || textOf(edit) != m_options.database) {
        throw StepFailed{"the name of the database could not be entered"};
    }
    m_database = m_options.database;
    m_report.step("Entered the database " + toUtf8(m_database));
}

void Walk::nextPage(HWND wizard, int page)
{
    step("Wizard, step " + std::to_string(page) + ": pressing Next");
    PostMessageA(wizard, PSM_PRESSBUTTON, PSBTN_NEXT, 0);
    waitFor([&] { return textOf(wizard) == pageCaption(page + 1); }, kDialogMs,
            "the wizard stays at '" + toUtf8(textOf(wizard)) + "'");
}

void Walk::openDatabase(const std::wstring& path)
{
    step("Pressing the open button");
    PostMessageA(m_mainPane, WM_COMMAND, MAKEWPARAM(kOpenDatabase, 0), 0);
    HWND dialog = nullptr;
    waitFor([&] { return (dialog = dialogCaptioned(L"Select the database to open")) != nullptr; }, kDialogMs,
            "the open dialog did not appear");
    Sleep(700); // the dialog fills its own fields after it is shown
    const HWND box = GetDlgItem(dialog, kFileNameBox);
    if (!box || !setText(box, path)) {
        throw StepFailed{"the name of the database could not be entered"};
    }
    step("Opening " + toUtf8(path));
    m_database = path;
    m_jobStart = m_report.elapsedMs();
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
    waitFor([&] { return !IsWindow(dialog) || !IsWindowVisible(dialog); }, kDialogMs,
            "the open dialog did not close");
}

void Walk::watchJob()
{
    step("Waiting for the database");
    m_lastChange = m_report.elapsedMs();
    waitFor([this] { return isJobDone(); }, kJobMs, "the plug-in did not finish in time");
    const JobTimes times = jobTimes(m_log.lines(), m_firstLine);
    if (times.creating) {
        m_report.step("Created the database in " + seconds(*times.creating));
    }
    m_report.step("Loaded the database in " + seconds(times.loading.value_or(0)));
    step("The plug-in is ready after " + seconds(m_report.elapsedMs() - m_jobStart));
}

bool Walk::isJobDone()
{
    if (!m_log.update()) {
        return false;
    }
    const JobState state = jobState(m_log.lines(), m_firstLine);
    if (state == JobState::Finished && IsWindowEnabled(m_control) && answers(m_control)) {
        return true;
    }
    failIfStalled();
    return false;
}

void Walk::noteLogChange()
{
    const std::string seen = lastLogLines();
    if (seen != m_lastSeen) {
        m_lastSeen = seen;
        m_lastChange = m_report.elapsedMs();
    }
}

void Walk::failIfStalled()
{
    noteLogChange();
    const bool gaveUp = IsWindowEnabled(m_control) && m_messages.count() != m_messagesBefore;
    if (m_report.elapsedMs() - m_lastChange > (gaveUp ? kQuietMs : kStallMs)) {
        throw StepFailed{gaveUp ? "the plug-in gave up with a message" : "the activity log stands still"};
    }
}

std::string Walk::lastLogLines() const
{
    const std::vector<LogLine>& lines = m_log.lines();
    if (lines.empty()) {
        return "the log is empty";
    }
    const LogLine& last = lines.back();
    return std::to_string(lines.size()) + " lines, the last: " + last.time + " " + last.progress + " " +
           last.description;
}

bool Walk::saveLog() const
{
    std::string text;
    return m_log.exportText(text) && writeWholeFile(*m_options.walk + L"\\activity-log.txt", text);
}

void Walk::writeLog()
{
    step("Writing activity-log.txt");
    if (!saveLog()) {
        throw StepFailed{"activity-log.txt could not be written"};
    }
}

void Walk::takePictures()
{
    selectPane(0, kOverviewPane);
    waitForCovers();
    takeNamedPicture(L"overview");
    selectPane(2, kLogPane);
    waitForCovers();
    takeNamedPicture(L"activity-log");
    takeOverviewPictures();
    takeDetailsPictures();
}

void Walk::takeNamedPicture(const std::wstring& name)
{
    step("Taking " + toUtf8(name) + ".png");
    if (!takePicture(name)) {
        throw StepFailed{"nobody took the picture"};
    }
}

void Walk::selectPane(int index, int paneId)
{
    const HWND combo = descendantWithId(m_mainPane, kViewCombo, WC_COMBOBOXEXA);
    if (!combo) {
        throw StepFailed{"the main pane has no 'Go To' box"};
    }
    unsigned chosen = 0;
    waitFor(
        [&] {
            // The log says that a job is done a moment before the plug-in takes choices again.
            if (chosen == 0 || m_report.elapsedMs() - chosen > kChoiceMs) {
                chooseEntry(combo, index);
                chosen = m_report.elapsedMs();
            }
            bool only = true;
            for (const int id : {kOverviewPane, kDetailsPane, kLogPane}) {
                only = only && (IsWindowVisible(childWithId(m_control, id)) != FALSE) == (id == paneId);
            }
            return only && answers(m_control);
        },
        kDialogMs, "the pane " + std::to_string(paneId) + " did not come to the front");
    Sleep(kSettleMs);
}

// Somebody outside waits for the request, takes the picture and removes the request.
bool Walk::takePicture(const std::wstring& name)
{
    const std::wstring request = *m_options.walk + L"\\" + name + L".png.request";
    if (!writeWholeFile(request, "")) {
        return false;
    }
    const unsigned start = m_report.elapsedMs();
    while (GetFileAttributesW(request.c_str()) != INVALID_FILE_ATTRIBUTES) {
        if (m_report.elapsedMs() - start > kPictureMs || !IsWindow(m_mainWindow)) {
            DeleteFileW(request.c_str());
            return false;
        }
        Sleep(kPollMs);
    }
    return true;
}

void Walk::tellFailure(const std::string& reason)
{
    m_report.step("FAILED: " + m_step + ": " + reason);
    for (const std::string& line : describeScreen()) {
        m_report.line("screen: " + line);
    }
    if (m_control) {
        (void)m_log.update();
        m_report.line("screen: activity log: " + lastLogLines());
        (void)saveLog();
    }
    if (takePicture(L"failure")) {
        m_report.line("screen: see failure.png");
    }
}

} // namespace tessera::jukebox
