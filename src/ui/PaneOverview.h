#pragma once

#include "ui/ContentPane.h"
#include "ui/LibrarySummary.h"

namespace tessera {

// Every album of the database.
class PaneOverview final : public Mapped<PaneOverview, ContentPane> {
public:
    static std::span<const MapEntry<PaneOverview>> messageMap() { return {}; }

    explicit PaneOverview(Commands& commands);
    ~PaneOverview() override;

    bool createPane(HWND parent);
    void reload() override;
    void clearRecords() override;
    void setView(ListStyle style) override;

private:
    void paintContent(HDC dc, const RECT& content) override;
    void showSummary();

    LibrarySummary m_summary;
};

} // namespace tessera
