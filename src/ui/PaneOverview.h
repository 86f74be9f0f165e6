#pragma once

#include "artwork/Covers.h"
#include "settings/ViewState.h"
#include "ui/AlbumBalloon.h"
#include "ui/AlbumList.h"
#include "ui/CommandKeys.h"
#include "ui/ContentPane.h"
#include "ui/LibrarySummary.h"
#include "windowing/Menu.h"
#include "windowing/WheelNotches.h"

#include <array>

namespace tessera {

// The albums of the database that a search finds. Without a database: how to get one.
class PaneOverview final : public Mapped<PaneOverview, ContentPane>, private CoverListener {
public:
    static std::span<const MapEntry<PaneOverview>> messageMap();

    explicit PaneOverview(Commands& commands);
    ~PaneOverview() override;

    bool createPane(HWND parent);
    void settingsChanged() override;
    void storeState() override;
    void reload() override;
    void clearRecords() override;
    void marksChanged(std::span<Album* const> changed) override;
    void setView(ListStyle style) override;
    void trackCursor(POINT screen, bool moved) override;
    HWND focusWindow() const override;

    // Finds the albums anew and hands them to the list where they are others than before.
    void applySearch(const std::string& criteria);
    const std::string& status() const { return m_status; }
    // For the present selection; empty-handed when it cannot be made.
    Menu contextMenu() const;
    const AlbumList& albumList() const { return m_plvwDetails; }

private:
    static constexpr std::size_t kSwitches = 3;
    static constexpr UINT kPlayedMessage = WM_APP + 1; // to itself, when albums have been played

    // search box
    static std::span<const CommandKeys::Key> searchKeys(); // outside the box
    void createSearchBox();
    void layoutSearchBox(const RECT& strip);
    int searchBoxHeight() const;
    bool searchShown() const;
    std::string criteria() const;
    void showSwitches();
    Handled onControlColour(const Message& message);
    void onCriteriaChanged(const Command& command);
    void onSwitch(const Command& command);
    void onFind(const Command& command);
    void onClearSearch(const Command& command);
    void onEnterList(const Command& command);
    void onSelectCriteria(const Command& command);

    // list
    Handled onNotify(const Message& message);
    Handled onSelectionChanged(NMHDR& header);
    Handled onDoubleClick(NMHDR& header);
    Handled onEnter(NMHDR& header);
    Handled onRightClick(NMHDR& header);
    Handled onWheel(const Message& message);
    Handled onShow(const Message& message);
    Handled onDestroy(const Message& message);
    Handled onPlayed(const Message& message);
    void onPlay(const Command& command);
    void onSort(const Command& command);
    void onGoToDirectory(const Command& command);

    void coversArrived(const std::vector<Album*>& albums) override;
    void imageListsRebuilt() override;
    void layoutContent(const RECT& content) override;
    void paintContent(HDC dc, const RECT& content) override;
    void orderControls(bool boxFirst);
    RECT stripRect(const RECT& content) const;
    void showControls();
    void keepView();
    void restoreView();
    void updateOverviewStatus();
    std::string statusText() const;
    void play(const std::vector<Album*>& albums, bool append);

    AlbumList m_plvwDetails;
    Static m_lblCriteria;
    Edit m_pedtCriteria;
    std::array<Button, kSwitches> m_chkFields;
    std::array<CommandKeys, kSwitches + 2> m_keys;
    WheelNotches m_wheel;
    BrushHandle m_brushFace;
    COLORREF m_face = CLR_INVALID; // of the brush
    LibrarySummary m_summary;
    ViewState m_view;        // as it was left last
    bool m_restores = false; // and not come back to yet
    std::string m_database;  // the list is filled from
    std::string m_statusPrefix;
    std::string m_status;
    AlbumPlaces m_found;     // kept for its memory
    bool m_searched = false; // and nothing of the result was selected yet
    AlbumBalloon m_balloon;
};

} // namespace tessera
