#include "ui/PaneAlbumDetails.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "ui/Commands.h"
#include "ui/ids.h"
#include "windowing/Menu.h"

namespace tessera {

namespace {

constexpr const char* kUnit = "PaneAlbumDetails";
constexpr const char* kViewName = "AlbumDetails";
constexpr const char* kShownTree = "AlbumDetailsTree";
constexpr const char* kShownBelow = "AlbumDetailsBelow";

constexpr const char* kTreeNames[AlbumTrees::kCount] = {"TreeLibrary", "TreeNew", "TreeFavourites",
                                                        "TreeCompleted"};

using Keys = CommandKeys;
constexpr Keys::Key kListKeys[] = {
    {'1', Keys::kControl, albumCommand::kRankNone + 1},
    {'2', Keys::kControl, albumCommand::kRankNone + 2},
    {'3', Keys::kControl, albumCommand::kRankNone + 3},
    {'4', Keys::kControl, albumCommand::kRankNone + 4},
    {'5', Keys::kControl, albumCommand::kRankNone + 5},
    {'6', Keys::kControl, albumCommand::kRankNone + 6},
    {'7', Keys::kControl, albumCommand::kRankNone + 7},
    {'8', Keys::kControl, albumCommand::kRankNone + 8},
    {'9', Keys::kControl, albumCommand::kRankNone + 9},
    {'0', Keys::kControl, albumCommand::kRankNone + 10},
    {VK_BACK, Keys::kControl, albumCommand::kRankNone},
    {'B', Keys::kControl, albumCommand::kToggleFavourite},
    {'N', Keys::kControl | Keys::kShift, albumCommand::kNewToday},
    {'Z', Keys::kControl, albumCommand::kTakeBack},
};
constexpr Keys::Key kTreeKeys[] = {{'Z', Keys::kControl, albumCommand::kTakeBack}};

} // namespace

PaneAlbumDetails::PaneAlbumDetails(Commands& commands)
    : Mapped(paneId::kAlbumDetails, kUnit, "Album Details", commands),
      m_trees(commands),
      m_plvwAlbums(commands, commands.catalogue()),
      m_plvwAlbumInfo(commands),
      m_plvwAlbumTracks(commands),
      m_plvwPlayingNow(commands),
      m_trackDetails(commands)
{
}

PaneAlbumDetails::~PaneAlbumDetails()
{
    destroy();
}

std::span<const MapEntry<PaneAlbumDetails>> PaneAlbumDetails::messageMap()
{
    using P = PaneAlbumDetails;
    namespace id = controlId;
    namespace album = albumCommand;
    static constexpr UINT kAlbums = id::kDetailsAlbums;
    static constexpr IdRange kTrees{id::kTreeLibrary, id::kTreeCompleted};
    static constexpr IdRange kTrackLists{id::kAlbumTracks, id::kPlayingNow};
    static constexpr std::array<MapEntry<P>, 35> kMap{{
        {WM_NOTIFY, &P::onNotify},
        {kTrees, TVN_SELCHANGEDA, &P::onNodeSelected},
        {kTrees, TVN_SELCHANGEDW, &P::onNodeSelected},
        {kTrees, TVN_ITEMEXPANDEDA, &P::onNodeFolded},
        {kTrees, TVN_ITEMEXPANDEDW, &P::onNodeFolded},
        {kTrees, NM_RCLICK, &P::onNodeRightClick},
        {kTrees, NM_DBLCLK, &P::onNodeDoubleClicked},
        {kTrees, NM_RETURN, &P::onNodeEntered},
        {WM_CONTEXTMENU, &P::onTreeMenuKey},
        {kAlbums, LVN_ITEMCHANGED, &P::onRowSelected},
        {kAlbums, LVN_ODSTATECHANGED, &P::onRowSelected},
        {kAlbums, NM_DBLCLK, &P::onRowDoubleClicked},
        {kAlbums, NM_RETURN, &P::onRowEntered},
        {kAlbums, NM_RCLICK, &P::onRowRightClick},
        {kTrackLists, LVN_ITEMCHANGED, &P::onTrackSelected},
        {IdRange{id::kSplitMain, id::kSplitTracks}, 0, &P::onBarMoved},
        {id::kTreeCombo, CBN_SELCHANGE, &P::onTreeChosen},
        {id::kAlbumInfoCombo, CBN_SELCHANGE, &P::onBelowChosen},
        {id::kTrackDetailsCombo, CBN_SELCHANGE, &P::onDetailsChosen},
        {album::kNewDate, &P::onMarkNewDate},
        {IdRange{album::kNewToday, album::kNotNew}, &P::onMark},
        {IdRange{album::kRankNone, album::kRankLast}, &P::onMark},
        {IdRange{album::kFavourite, album::kNoFavourite}, &P::onMark},
        {album::kToggleFavourite, &P::onToggleFavourite},
        {album::kTakeBack, &P::onTakeBack},
        {album::kTakeMarks, &P::onTakeMarks},
        {album::kDismissMarks, &P::onDismissMarks},
        {IdRange{album::kSortFirst, album::kSortLast}, &P::onSort},
        {IdRange{album::kAppend, album::kPlay}, &P::onPlay},
        {album::kGoToDirectory, &P::onGoToDirectory},
        {kSelectionMessage, &P::onSelectionChanged},
        {kFocusListMessage, &P::onFocusList},
        {kFoldedMessage, &P::onFolded},
        {WM_MOUSEWHEEL, &P::onWheel},
        {WM_DESTROY, &P::onDestroy},
    }};
    return kMap;
}

bool PaneAlbumDetails::createPane(HWND parent)
{
    if (!createWindow(parent))
        return false;
    addCaptionMenu();
    m_view = loadViewState(commands().viewStore(), kViewName);
    createTrees();
    createAlbumList();
    createLists();
    createTrackDetails();
    createBars();
    skinControls();
    commands().covers().addListener(*this);
    settingsChanged();
    reload();
    return true;
}

void PaneAlbumDetails::createTrees()
{
    static constexpr struct {
        const char* text;
        int image;
    } kTrees[AlbumTrees::kCount] = {{"Entire Library", icon::kLibrary},
                                    {"New", icon::kNew},
                                    {"Favourites", icon::kFavourite},
                                    {"Completed Only", icon::kAlbum}};
    if (!m_pcboView.create(handle(), controlId::kTreeCombo, {0, 0, 100, 100},
                           CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP))
        assertionFailed("m_pcboView", kUnit, __LINE__);
    m_pcboView.setImageList(commands().smallIcons());
    for (std::size_t i = 0; i < AlbumTrees::kCount; ++i)
        m_pcboView.add(kTrees[i].text, kTrees[i].image,
                       LPARAM{controlId::kTreeLibrary} + static_cast<LPARAM>(i));
    createLines(m_psepView, controlId::kSeparatorFirst, {"m_psepView", "m_psepView2"});
    m_trees.create(handle());
    std::array<TreeState, AlbumTrees::kCount> states;
    std::ranges::transform(kTreeNames, states.begin(),
                           [&](const char* name) { return loadTreeState(commands().viewStore(), name); });
    m_trees.setStates(std::move(states));
    for (std::size_t i = 0; i < AlbumTrees::kCount; ++i)
        m_treeKeys[i].attachTo(m_trees.tree(i).view().handle(), kTreeKeys);
    const std::int32_t shown = loadViewNumber(commands().viewStore(), kShownTree, 0);
    m_trees.show(shown > 0 && shown < static_cast<std::int32_t>(AlbumTrees::kCount)
                     ? static_cast<std::size_t>(shown)
                     : 0);
    m_pcboView.select(static_cast<int>(m_trees.shownIndex()));
}

void PaneAlbumDetails::createAlbumList()
{
    const ListStyle style = listStyleOf(commands().albumDetails().listviewStyle, ListStyle::Details);
    commands().albumDetails().listviewStyle = static_cast<int>(style);
    if (!m_plvwAlbums.initAlbumList(handle(), controlId::kDetailsAlbums, style))
        assertionFailed("m_plvwAlbums->GetSafeHwnd()", kUnit, __LINE__);
    m_plvwAlbums.setSort(m_view.sortColumn, m_view.ascending);
    m_listKeys.attachTo(m_plvwAlbums.handle(), kListKeys);
}

void PaneAlbumDetails::createLists()
{
    static constexpr struct {
        const char* text;
        int image;
    } kLists[] = {
        {"Album Overview", icon::kAlbum}, {"Album Tracks", icon::kGenre}, {"Playing Now", icon::kPlay}};
    if (!m_pcboAlbumInfo.create(handle(), controlId::kAlbumInfoCombo, {0, 0, 100, 100},
                                CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP))
        assertionFailed("m_pcboAlbumInfo", kUnit, __LINE__);
    m_pcboAlbumInfo.setImageList(commands().smallIcons());
    for (const auto& list : kLists)
        m_pcboAlbumInfo.add(list.text, list.image);
    createLines(m_psepAlbumInfo, controlId::kSeparatorFirst + 2, {"m_psepAlbumInfo", "m_psepAlbumInfo2"});
    const auto expect = [](bool created, const char* expression) {
        if (!created)
            assertionFailed(expression, kUnit, __LINE__);
    };
    expect(m_plvwAlbumInfo.createAlbumInfo(handle()), "m_plvwAlbumInfo->GetSafeHwnd()");
    expect(m_plvwAlbumTracks.createTrackList(handle()), "m_plvwAlbumTracks->GetSafeHwnd()");
    expect(m_plvwPlayingNow.createPlayingNow(handle()), "m_plvwPlayingNow->GetSafeHwnd()");
    const std::int32_t below = loadViewNumber(commands().viewStore(), kShownBelow, 1);
    m_below = below >= 0 && below <= 2 ? static_cast<Below>(below) : Below::AlbumTracks;
    m_pcboAlbumInfo.select(static_cast<int>(m_below));
}

void PaneAlbumDetails::createTrackDetails()
{
    m_trackDetails.createTrackDetails(handle(), kUnit);
    createLines(m_psepTrackDetails, controlId::kSeparatorFirst + 4,
                {"m_psepTrackDetails", "m_psepTrackDetails2"});
}

void PaneAlbumDetails::createLines(std::array<Static, 2>& lines, UINT id,
                                   const std::array<const char*, 2>& names)
{
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].create(handle(), id + static_cast<UINT>(i), {}, "", SS_ETCHEDHORZ))
            assertionFailed(names[i], kUnit, __LINE__);
    }
}

void PaneAlbumDetails::createBars()
{
    constexpr int kLeast = 20; // percent
    constexpr int kMost = 80;
    const AlbumDetailsSettings& settings = commands().albumDetails();
    const COLORREF colour = commands().frameFace();
    using enum SplitterOrientation;
    m_pSplitMain.create(handle(), controlId::kSplitMain, Vertical, kLeast, kMost, settings.splitMain, colour);
    m_pSplitDetails.create(handle(), controlId::kSplitDetails, Horizontal, kLeast, kMost,
                           settings.splitDetails, colour);
    m_pSplitTracks.create(handle(), controlId::kSplitTracks, Vertical, kLeast, kMost, settings.splitTracks,
                          colour);
}

Handled PaneAlbumDetails::onDestroy(const Message&)
{
    commands().covers().removeListener(*this);
    return kDefault;
}

void PaneAlbumDetails::settingsChanged()
{
    for (const ComboBoxEx* combo :
         std::initializer_list<const ComboBoxEx*>{&m_pcboView, &m_pcboAlbumInfo, &m_trackDetails.combo()})
        combo->setFont(commands().comboFont());
    m_trees.settingsChanged();
    m_plvwAlbums.settingsChanged();
    m_plvwAlbumInfo.settingsChanged();
    m_plvwAlbumTracks.settingsChanged();
    m_plvwPlayingNow.settingsChanged();
    m_trackDetails.settingsChanged();
    for (SplitterCtrl* bar : {&m_pSplitMain, &m_pSplitDetails, &m_pSplitTracks})
        bar->setColour(commands().frameFace());
    ContentPane::settingsChanged();
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void PaneAlbumDetails::storeState()
{
    AlbumDetailsSettings& settings = commands().albumDetails();
    settings.splitMain = m_pSplitMain.position();
    settings.splitDetails = m_pSplitDetails.position();
    settings.splitTracks = m_pSplitTracks.position();
    settings.trackDetailsCombo = m_trackDetails.selectedEntry();
    SettingsStore& store = commands().viewStore();
    m_plvwAlbums.keepView(m_view);
    m_view.selectedAlbums.clear(); // the node that showed them is not selected at the next start
    saveViewState(store, kViewName, m_view);
    saveViewNumber(store, kShownTree, static_cast<std::int32_t>(m_trees.shownIndex()));
    saveViewNumber(store, kShownBelow, static_cast<std::int32_t>(m_below));
    const auto states = m_trees.states();
    for (std::size_t i = 0; i < states.size(); ++i)
        saveTreeState(store, kTreeNames[i], states[i]);
}

void PaneAlbumDetails::setView(ListStyle style)
{
    commands().albumDetails().listviewStyle = static_cast<int>(style);
    m_plvwAlbums.setStyle(style);
}

HWND PaneAlbumDetails::focusWindow() const
{
    const HWND tree = m_trees.tree(m_trees.shownIndex()).view().handle();
    return m_summary.albums() > 0 && tree ? tree : handle();
}

void PaneAlbumDetails::trackCursor(POINT, bool)
{
    if (commands().isBusy() || !IsWindowVisible(handle()))
        return;
    followTree();
    m_plvwPlayingNow.tick();
    m_plvwAlbumTracks.tick();
    m_plvwAlbumInfo.tick();
    m_trackDetails.tick();
}

std::string PaneAlbumDetails::exportText(int item, int column) const
{
    return columnTexts(m_plvwAlbums.album(item))[static_cast<std::size_t>(column)];
}

void PaneAlbumDetails::coversArrived(const std::vector<Album*>& albums)
{
    m_plvwAlbums.coversArrived(albums);
}

void PaneAlbumDetails::imageListsRebuilt()
{
    m_plvwAlbums.refreshImageLists();
}

} // namespace tessera
