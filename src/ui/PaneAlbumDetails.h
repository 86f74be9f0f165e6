#pragma once

#include "artwork/Covers.h"
#include "library/KeptDatabases.h"
#include "library/MarksTransfer.h"
#include "ports/Log.h"
#include "settings/ViewState.h"
#include "ui/AlbumInfoList.h"
#include "ui/AlbumList.h"
#include "ui/AlbumMarks.h"
#include "ui/AlbumTrackList.h"
#include "ui/AlbumTrees.h"
#include "ui/CommandKeys.h"
#include "ui/ContentPane.h"
#include "ui/LibrarySummary.h"
#include "ui/PlayingNowList.h"
#include "ui/SplitterCtrl.h"
#include "ui/TrackDetails.h"
#include "windowing/ComboBoxEx.h"
#include "windowing/WheelNotches.h"

#include <array>

namespace tessera {

// Four trees of albums at the left; at the right the albums of the node that is selected, and below
// them what is known of the selected ones, their tracks or what the host plays, and one track in
// detail. Without a database: how to get one.
class PaneAlbumDetails final : public Mapped<PaneAlbumDetails, ContentPane>, private CoverListener {
public:
    static std::span<const MapEntry<PaneAlbumDetails>> messageMap();

    explicit PaneAlbumDetails(Commands& commands);
    ~PaneAlbumDetails() override;

    bool createPane(HWND parent);
    // Everything anew from the library after a load, in turns: `begin`, then `step` until it answers
    // false. The log lives as long.
    void beginRebuild(Log& log);
    bool stepRebuild();
    // Says in the caption that kept databases hold marks, and offers to take them, one after the other,
    // until they are taken or dismissed or the library goes. None: nothing is offered.
    void offerMarks(std::vector<KeptMarks> kept);

    void settingsChanged() override;
    void storeState() override;
    void reload() override;
    void clearRecords() override;
    void marksChanged(std::span<Album* const> changed) override;
    void setView(ListStyle style) override;
    void trackCursor(POINT screen, bool moved) override;
    HWND exportList() const override { return m_plvwAlbums.handle(); }
    const char* exportBaseName() const override { return "TesseraData"; }
    std::string exportText(int item, int column) const override;
    HWND focusWindow() const override;

    const std::string& status() const { return m_status; }
    const AlbumList& albumList() const { return m_plvwAlbums; }
    // For the present selection, over a tree or over the list; empty-handed when it cannot be made.
    Menu contextMenu(bool overList) const;

private:
    // To itself: the lists below follow the selection; albums have been played; a node has opened or
    // closed.
    static constexpr UINT kSelectionMessage = WM_APP + 1;
    static constexpr UINT kFocusListMessage = WM_APP + 2;
    static constexpr UINT kFoldedMessage = WM_APP + 3;

    enum class Below { AlbumInfo, AlbumTracks, PlayingNow };
    struct Strip { // a combo box between two lines
        const ComboBoxEx& combo;
        std::array<Static, 2>& lines;
    };

    // making and laying out
    void createTrees();
    void createAlbumList();
    void createLists();
    void createTrackDetails();
    void createLines(std::array<Static, 2>& lines, UINT id, const std::array<const char*, 2>& names);
    void createBars();
    void layoutContent(const RECT& content) override;
    RECT layoutStrip(const Strip& strip, const RECT& area);
    void layoutTracksBar(const RECT& area);
    void paintContent(HDC dc, const RECT& content) override;
    void showControls();
    void showBelow();
    Menu captionMenu() const override;

    // selection
    void rebuildTrees(TreeRebuild kind);
    void afterRebuild();
    void selectNode(HTREEITEM item);
    void followTree();
    void showAlbums(const AlbumPlaces& places);
    void selectionChanged();
    void showSelection();
    void showTrack();
    std::vector<Album*> selectedAlbums() const;
    std::string statusText() const;
    void updateStatus();
    void showStatus(const std::string& text);
    void focusList();

    // messages
    Handled onNotify(const Message& message);
    Handled onNodeSelected(NMHDR& header);
    Handled onNodeFolded(NMHDR& header);
    Handled onNodeRightClick(NMHDR& header);
    Handled onNodeActivated(NMHDR& header);
    Handled onNodeEntered(NMHDR& header);
    Handled onNodeDoubleClicked(NMHDR& header);
    Handled onTreeMenuKey(const Message& message);
    Handled onRowSelected(NMHDR& header);
    Handled onRowEntered(NMHDR& header);
    Handled onRowDoubleClicked(NMHDR& header);
    Handled onRowRightClick(NMHDR& header);
    Handled onTrackSelected(NMHDR& header);
    Handled onBarMoved(NMHDR& header);
    Handled onWheel(const Message& message);
    Handled onSelectionChanged(const Message& message);
    Handled onFocusList(const Message& message);
    Handled onFolded(const Message& message);
    Handled onDestroy(const Message& message);
    void onTreeChosen(const Command& command);
    void onBelowChosen(const Command& command);
    void onDetailsChosen(const Command& command);

    // commands
    std::vector<Album*> albumsFor(const Command& command) const;
    void play(const std::vector<Album*>& albums, bool append);
    void onPlay(const Command& command);
    void onMark(const Command& command);
    void onMarkNewDate(const Command& command);
    void onToggleFavourite(const Command& command);
    void onTakeBack(const Command& command);
    void onTakeMarks(const Command& command);
    void onDismissMarks(const Command& command);
    void onSort(const Command& command);
    void onGoToDirectory(const Command& command);
    void mark(const std::vector<Album*>& albums, UINT command, std::int32_t date);
    void change(const std::vector<MarksPlan::Change>& changes, const std::string& name, bool movesAlbums);
    void takeMarks(const MarksPlan& plan);
    void written(const std::vector<Album*>& albums, bool movesAlbums);

    void coversArrived(const std::vector<Album*>& albums) override;
    void imageListsRebuilt() override;

    AlbumTrees m_trees;
    ComboBoxEx m_pcboView;
    std::array<Static, 2> m_psepView;
    AlbumList m_plvwAlbums;
    ComboBoxEx m_pcboAlbumInfo;
    std::array<Static, 2> m_psepAlbumInfo;
    AlbumInfoList m_plvwAlbumInfo;
    AlbumTrackList m_plvwAlbumTracks;
    PlayingNowList m_plvwPlayingNow;
    std::array<Static, 2> m_psepTrackDetails;
    TrackDetails m_trackDetails;
    SplitterCtrl m_pSplitMain;
    SplitterCtrl m_pSplitDetails;
    SplitterCtrl m_pSplitTracks;
    CommandKeys m_listKeys;
    WheelNotches m_wheel;
    std::array<CommandKeys, AlbumTrees::kCount> m_treeKeys;
    std::vector<RECT> m_strips;

    LibrarySummary m_summary;
    Below m_below = Below::AlbumInfo;
    bool m_selectionPosted = false;
    HTREEITEM m_followed = nullptr; // what was selected in the tree when its albums were taken last
    std::string m_path;             // of the selected node
    std::string m_status;
    ViewState m_view;
    MarkHistory m_history;
    std::vector<KeptMarks> m_kept; // what is offered, the first one now
};

} // namespace tessera
