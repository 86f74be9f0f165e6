#pragma once

#include "ui/ActivityLog.h"
#include "ui/ContentPane.h"
#include "windowing/ListView.h"

namespace tessera {

// Shows the activity log; the lines' numbers are the rows.
class PaneLog final : public Mapped<PaneLog, ContentPane> {
public:
    static std::span<const MapEntry<PaneLog>> messageMap();

    PaneLog(Commands& commands, ActivityLog& log);
    ~PaneLog() override;

    bool createPane(HWND parent);
    void settingsChanged() override;
    HWND exportList() const override { return m_lvwLog.handle(); }
    const char* exportBaseName() const override { return "TesseraLog"; }
    HWND focusWindow() const override { return m_lvwLog ? m_lvwLog.handle() : handle(); }

private:
    void layoutContent(const RECT& content) override;
    Handled onLogChanged(const Message& message);
    Handled onTimer(const Message& message);
    Handled onDestroy(const Message& message);
    void createList();
    void showChanges();
    void fillColumns(int rows);
    void appendRows(const std::vector<LogLine>& lines);

    ActivityLog& m_log;
    ListView m_lvwLog;
};

} // namespace tessera
