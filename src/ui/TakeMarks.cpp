#include "ui/TakeMarks.h"

#include "base/Files.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "library/KeptDatabases.h"
#include "ui/Commands.h"
#include "windowing/FileDialogs.h"

#include <array>
#include <utility>

namespace tessera {

namespace {

constexpr const char* kCaption = "Take marks from another database";
constexpr UINT_PTR kTypingTimer = 1;
constexpr UINT kTypingPause = 300; // ms without a key, then the file is looked at

DialogTemplate pattern()
{
    DialogTemplate pattern(kCaption, 260, 102);
    pattern.label("&Database:", 0, {7, 7, 246, 8}, 0)
        .edit(TakeMarks::kFileName, {7, 18, 192, 14}, ES_AUTOHSCROLL | WS_TABSTOP)
        .button("&Browse...", TakeMarks::kBrowse, {203, 18, 50, 14})
        .label("", TakeMarks::kReport, {7, 40, 246, 34})
        .button("OK", IDOK, {149, 81, 50, 14}, BS_DEFPUSHBUTTON)
        .button("Cancel", IDCANCEL, {203, 81, 50, 14});
    return pattern;
}

std::string line(const char* kind, std::size_t found, std::size_t matched)
{
    return format("%s: %ld found, %ld matched\n", kind, static_cast<long>(found), static_cast<long>(matched));
}

} // namespace

std::span<const MapEntry<TakeMarks>> TakeMarks::messageMap()
{
    static constexpr std::array<MapEntry<TakeMarks>, 3> kMap{{
        {WM_TIMER, &TakeMarks::onTimer},
        {kFileName, EN_CHANGE, &TakeMarks::onNameChanged},
        {kBrowse, BN_CLICKED, &TakeMarks::onBrowse},
    }};
    return kMap;
}

std::optional<MarksPlan> TakeMarks::ask(HWND owner)
{
    if (showModal(owner, pattern()) != IDOK) {
        return std::nullopt;
    }
    return std::move(m_plan);
}

bool TakeMarks::onInitDialog()
{
    setItemText(kFileName, suggestedName());
    look();
    return true;
}

// OK is enabled while the plan belongs to the name in the box, or to read a database from the network.
void TakeMarks::onOk()
{
    if (std::exchange(m_waiting, false)) {
        look();
    } else if (IsWindowEnabled(item(IDOK))) {
        Dialog::onOk();
    }
}

std::string TakeMarks::suggestedName() const
{
    if (!m_suggested.empty())
        return m_suggested;
    const std::string previous = previousDatabase(m_commands.database().lastUsed);
    return systemFiles().exists(previous) ? previous : std::string();
}

bool TakeMarks::isInUse(const std::string& fileName) const
{
    return equalNoCase(fileName, m_commands.database().lastUsed);
}

void TakeMarks::look()
{
    KillTimer(handle(), kTypingTimer);
    m_fileName = itemText(kFileName);
    m_plan = {};
    if (isDevice(m_fileName)) {
        m_plan.failure = "This is no file.";
    } else if (!m_fileName.empty() && !isInUse(m_fileName)) {
        m_plan = planMarks(m_fileName, m_commands.library(), systemFiles());
    }
    setItemText(kReport, report());
    EnableWindow(item(IDOK), m_plan.matched.any());
}

std::string TakeMarks::report() const
{
    if (m_fileName.empty()) {
        return "Choose the database that holds the marks.";
    }
    if (isInUse(m_fileName)) {
        return "This is the database in use.";
    }
    if (!m_plan.failure.empty()) {
        return m_plan.failure;
    }
    const MarkCounts& found = m_plan.found;
    const MarkCounts& matched = m_plan.matched;
    const bool allThere = matched.any() && m_plan.changes.empty();
    return line("Ranks", found.ranks, matched.ranks) +
           line("Favourites", found.favourites, matched.favourites) + line("New", found.news, matched.news) +
           (allThere ? "Your albums have all of them already." : "");
}

// A name is typed key by key; the files on its way are not read.
void TakeMarks::onNameChanged(const Command&)
{
    if (itemText(kFileName) == m_fileName) {
        return;
    }
    m_fileName.clear();
    m_waiting = false;
    EnableWindow(item(IDOK), FALSE);
    SetTimer(handle(), kTypingTimer, kTypingPause, nullptr);
}

Handled TakeMarks::onTimer(const Message& message)
{
    if (message.wParam != kTypingTimer) {
        return kDefault;
    }
    KillTimer(handle(), kTypingTimer);
    m_waiting = !networkShare(itemText(kFileName)).empty();
    if (m_waiting) { // half a name is another server, which would learn who asks
        setItemText(kReport, "Press OK to look at the database on the network.");
        EnableWindow(item(IDOK), TRUE);
    } else {
        look();
    }
    return 0;
}

void TakeMarks::onBrowse(const Command&)
{
    const FileDialogOptions options{.title = "Select the database to take marks from",
                                    .filter =
                                        "Database Files (*.ts2;*.bak)|*.ts2;*.bak|All Files (*.*)|*.*||",
                                    .initialName = itemText(kFileName),
                                    .flags = kOpenFlags};
    if (const std::optional<std::string> path = openFile(handle(), options)) {
        setItemText(kFileName, *path);
        look();
    }
}

std::optional<MarksPlan> askMarks(HWND owner, Commands& commands, const std::string& fileName)
{
    return TakeMarks(commands, fileName).ask(owner);
}

} // namespace tessera
