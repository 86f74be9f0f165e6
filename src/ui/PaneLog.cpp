#include "ui/PaneLog.h"

#include "base/Errors.h"
#include "ui/Commands.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tessera {

namespace {

constexpr UINT kLogChangedMessage = WM_APP + 1;
constexpr UINT_PTR kLookAgain = 1;
constexpr UINT kPause = 50; // milliseconds between two looks at the percentages
constexpr int kDescription = 2;
constexpr int kLeastDescriptionWidth = 90; // what its header needs
constexpr struct {
    const char* title;
    int width;
} kColumns[] = {{"Time", 100}, {"Progress", 75}, {"Description", kLeastDescriptionWidth}};

} // namespace

PaneLog::PaneLog(Commands& commands, ActivityLog& log)
    : Mapped(paneId::kLog, "PaneLog", "Activity Log", commands), m_log(log)
{
}

PaneLog::~PaneLog()
{
    destroy();
}

std::span<const MapEntry<PaneLog>> PaneLog::messageMap()
{
    static constexpr std::array<MapEntry<PaneLog>, 3> kMap{{
        {kLogChangedMessage, &PaneLog::onLogChanged},
        {WM_TIMER, &PaneLog::onTimer},
        {WM_DESTROY, &PaneLog::onDestroy},
    }};
    return kMap;
}

bool PaneLog::createPane(HWND parent)
{
    if (!createWindow(parent))
        return false;
    createList();
    skinControls();
    m_log.attach(handle(), kLogChangedMessage);
    return static_cast<bool>(m_lvwLog);
}

void PaneLog::createList()
{
    if (!m_lvwLog.create(handle(), controlId::kLogList, contentRect(),
                         ListView::kReport | LVS_NOSORTHEADER | WS_TABSTOP, 0)) {
        assertionFailed("m_lvwLog.GetSafeHwnd()", "PaneLog", __LINE__);
        return;
    }
    m_lvwLog.setExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    for (const auto& column : kColumns)
        m_lvwLog.addColumn(column.title, scaled(column.width, handle()));
    settingsChanged();
}

void PaneLog::settingsChanged()
{
    m_lvwLog.setFont(commands().listFont());
    m_lvwLog.setColours(commands().treeBackground(), commands().treeText());
    ContentPane::settingsChanged();
}

void PaneLog::layoutContent(const RECT& content)
{
    m_lvwLog.move(content);
    fillColumns(m_lvwLog.count());
}

// The last column takes what the others leave. Of the scroll bar it keeps clear before it comes,
// or a second one would come with it.
void PaneLog::fillColumns(int rows)
{
    if (!m_lvwLog)
        return;
    int left = static_cast<int>(m_lvwLog.rect().right - m_lvwLog.rect().left);
    if (rows > static_cast<int>(m_lvwLog.send(LVM_GETCOUNTPERPAGE)))
        left -= GetSystemMetrics(SM_CXVSCROLL);
    for (int column = 0; column < kDescription; ++column)
        left -= m_lvwLog.columnWidth(column);
    left = std::max(left, scaled(kLeastDescriptionWidth, handle()));
    if (left != m_lvwLog.columnWidth(kDescription))
        m_lvwLog.setColumnWidth(kDescription, left);
}

Handled PaneLog::onLogChanged(const Message& message)
{
    showChanges();
    if (message.wParam == ActivityLog::kPaintNow)
        UpdateWindow(m_lvwLog.handle());
    return 0;
}

Handled PaneLog::onTimer(const Message&)
{
    showChanges();
    return 0;
}

// A fast job changes its percentage every millisecond. Messages of as many would keep paint and
// timers waiting, which come last; a timer waits its turn with them.
void PaneLog::showChanges()
{
    const LogChanges changes = m_log.takeChanges(true);
    if (changes.empty()) {
        KillTimer(handle(), kLookAgain);
        return;
    }
    SetTimer(handle(), kLookAgain, kPause, nullptr);
    for (const auto& [row, percent] : changes.percents)
        m_lvwLog.setText(static_cast<int>(row), 1, format("%d%%", percent));
    if (!changes.lines.empty())
        appendRows(changes.lines);
}

void PaneLog::appendRows(const std::vector<LogLine>& lines)
{
    fillColumns(m_lvwLog.count() + static_cast<int>(lines.size()));
    {
        // One repaint for many rows; a single one is cheaper drawn by itself.
        std::optional<RedrawOff> quiet;
        if (lines.size() > 1)
            quiet.emplace(m_lvwLog.handle(), false);
        for (const LogLine& line : lines)
            m_lvwLog.addRow({line.begin(), line.end()});
    }
    m_lvwLog.makeVisible(m_lvwLog.count() - 1);
}

Handled PaneLog::onDestroy(const Message&)
{
    m_log.detach();
    m_lvwLog.attach(nullptr);
    return kDefault;
}

} // namespace tessera
