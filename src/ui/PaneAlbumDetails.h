#pragma once

#include "ports/Log.h"
#include "ui/ContentPane.h"
#include "ui/LibrarySummary.h"

namespace tessera {

// The albums by artist, genre and rank.
class PaneAlbumDetails final : public Mapped<PaneAlbumDetails, ContentPane> {
public:
    static std::span<const MapEntry<PaneAlbumDetails>> messageMap() { return {}; }

    explicit PaneAlbumDetails(Commands& commands);
    ~PaneAlbumDetails() override;

    bool createPane(HWND parent);
    // Everything anew from the library, after a load; a step of the job that loads.
    void rebuildTrees(Log& log);
    void reload() override;
    void clearRecords() override;
    void setView(ListStyle style) override;

private:
    void paintContent(HDC dc, const RECT& content) override;
    void showSummary();

    LibrarySummary m_summary;
};

} // namespace tessera
