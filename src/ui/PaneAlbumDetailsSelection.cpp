// From the selected node to the albums, from the selected albums to what is shown of them.

#include "base/Text.h"
#include "ui/Commands.h"
#include "ui/PaneAlbumDetails.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <optional>

namespace tessera {

namespace {

constexpr std::chrono::milliseconds kTurn{30};

// Null for a file that is not in the library.
const Track* findTrack(Commands& commands, std::u16string_view wideName)
{
    const std::optional<std::string> name = toCodePageExactly(wideName);
    if (!name || name->empty() || commands.isBusy())
        return nullptr;
    const Tracks& tracks = commands.library().tracks;
    const auto found =
        std::ranges::find_if(tracks, [&](const auto& entry) { return entry.second->fileName == *name; });
    return found == tracks.end() ? nullptr : found->second.get();
}

} // namespace

void PaneAlbumDetails::beginRebuild(Log& log)
{
    m_trees.begin(TreeRebuild::Full, log);
}

bool PaneAlbumDetails::stepRebuild()
{
    if (m_trees.isDone()) {
        afterRebuild();
        return false;
    }
    m_trees.step(kTurn);
    return true;
}

// There is nothing to sort without albums, and so nothing to tell.
void PaneAlbumDetails::rebuildTrees(TreeRebuild kind)
{
    if (commands().library().albums.empty()) {
        SilentLog log;
        m_trees.rebuild(kind, log);
    } else {
        m_trees.rebuild(kind, *commands().newLog());
    }
}

void PaneAlbumDetails::reload()
{
    rebuildTrees(TreeRebuild::Full);
    afterRebuild();
}

void PaneAlbumDetails::afterRebuild()
{
    m_summary.count(commands().library());
    showControls();
    m_plvwAlbums.resetAlbums();
    m_followed = m_trees.shown().view().selection();
    m_path.clear();
    selectionChanged();
    focusList();
}

// The records are still there when this is called.
void PaneAlbumDetails::clearRecords()
{
    EndMenu();
    m_history.clear();
    offerMarks({});
    m_trees.release();
    m_plvwAlbums.resetAlbums();
    m_plvwAlbumInfo.setAlbums({});
    m_plvwAlbumTracks.setAlbums({});
    m_trackDetails.setTrack(nullptr, nullptr);
    m_summary.clear();
    m_path.clear();
    showControls();
    updateStatus();
}

void PaneAlbumDetails::marksChanged(std::span<Album* const> changed)
{
    m_plvwAlbums.marksChanged(changed);
    m_plvwAlbumInfo.refresh();
}

Handled PaneAlbumDetails::onNotify(const Message& message)
{
    NMHDR& header = *reinterpret_cast<NMHDR*>(message.lParam);
    if (const Handled handled = m_trees.answer(header))
        return handled;
    if (const Handled handled = m_plvwAlbums.answer(header))
        return handled;
    for (DetailsList* list :
         std::initializer_list<DetailsList*>{&m_plvwAlbumInfo, &m_plvwAlbumTracks, &m_plvwPlayingNow}) {
        if (const Handled handled = list->answer(header))
            return handled;
    }
    return m_trackDetails.answer(header);
}

Handled PaneAlbumDetails::onNodeSelected(NMHDR& header)
{
    if (!commands().isBusy() && header.hwndFrom == m_trees.shown().view().handle())
        selectNode(m_trees.shown().view().selection());
    return 0;
}

// A group that closes over the selected node is selected instead, which some systems do after this
// and do not tell.
Handled PaneAlbumDetails::onNodeFolded(NMHDR&)
{
    PostMessageA(handle(), kFoldedMessage, 0, 0);
    return 0;
}

Handled PaneAlbumDetails::onFolded(const Message&)
{
    followTree();
    return 0;
}

// Some systems move the selection without a word when a program closes a node over it.
void PaneAlbumDetails::followTree()
{
    const AlbumTree& tree = m_trees.shown();
    const HTREEITEM item = tree.view().selection();
    if (!commands().isBusy() && item && item != m_followed && !tree.isLeaf(item))
        selectNode(item);
}

void PaneAlbumDetails::selectNode(HTREEITEM item)
{
    m_followed = m_trees.shown().view().selection();
    m_path = item ? m_trees.shown().pathOf(item) : std::string();
    AlbumPlaces places;
    if (item)
        m_trees.shown().albumsOf(item, commands().catalogue(), places);
    m_plvwAlbums.setAlbums(places);
    selectionChanged();
}

Handled PaneAlbumDetails::onRowSelected(NMHDR&)
{
    selectionChanged();
    return 0;
}

// The text at once; the lists once for all the changes that one action makes.
void PaneAlbumDetails::selectionChanged()
{
    updateStatus();
    if (!m_selectionPosted)
        m_selectionPosted = PostMessageA(handle(), kSelectionMessage, 0, 0) != FALSE;
}

Handled PaneAlbumDetails::onSelectionChanged(const Message&)
{
    m_selectionPosted = false;
    if (!commands().isBusy())
        showSelection();
    return 0;
}

void PaneAlbumDetails::showSelection()
{
    const std::vector<Album*> albums = selectedAlbums();
    m_plvwAlbumInfo.setAlbums(albums);
    m_plvwAlbumTracks.setAlbums(albums);
    showTrack();
}

Handled PaneAlbumDetails::onTrackSelected(NMHDR&)
{
    if (!commands().isBusy())
        showTrack();
    return 0;
}

// The selected track of the list in view, else the first one of the selected albums.
void PaneAlbumDetails::showTrack()
{
    if (m_below == Below::PlayingNow) {
        if (PlayingNowList::Entry entry = m_plvwPlayingNow.selectedEntry(); entry.file) {
            if (const Track* const track = findTrack(commands(), entry.fileName))
                return m_trackDetails.setTrack(track, track->album);
            return m_trackDetails.setFile(std::move(entry.file));
        }
    }
    const Track* const track = m_plvwAlbumTracks.shownTrack();
    m_trackDetails.setTrack(track, track ? track->album : nullptr);
}

// The selected rows, else all albums of the node.
std::vector<Album*> PaneAlbumDetails::selectedAlbums() const
{
    if (m_plvwAlbums.selectedCount() > 0)
        return m_plvwAlbums.selectedAlbums();
    std::vector<Album*> albums;
    albums.reserve(m_plvwAlbums.count());
    for (const std::uint32_t place : m_plvwAlbums.unsorted())
        albums.push_back(&commands().catalogue().album(place));
    return albums;
}

std::string PaneAlbumDetails::statusText() const
{
    const auto total = static_cast<long>(m_summary.albums());
    const long rows = m_plvwAlbums.selectedCount();
    const long selected = rows > 0 ? rows : static_cast<long>(m_plvwAlbums.count());
    if (selected >= 2)
        return format("Multiple Selection: %ld of %ld", selected, total);
    if (selected == 1) {
        const Album& album = m_plvwAlbums.album(rows > 0 ? m_plvwAlbums.selectedItem() : 0);
        return format("%s - %ld of %ld", album.displayTitle.c_str(), 1L, total);
    }
    return total > 0 ? format("Total Albums: %ld", total) : "Nothing Selected";
}

void PaneAlbumDetails::updateStatus()
{
    showStatus(m_path + statusText());
}

void PaneAlbumDetails::showStatus(const std::string& text)
{
    m_status = text;
    setStatus(text);
}

// Only where the focus is inside the plug-in already, and this pane in front.
void PaneAlbumDetails::focusList()
{
    const HWND focus = GetFocus();
    if (IsWindowVisible(handle()) && focus && IsChild(GetParent(handle()), focus) && m_summary.albums() > 0)
        SetFocus(m_plvwAlbums.handle());
}

void PaneAlbumDetails::onTreeChosen(const Command&)
{
    const int chosen = m_pcboView.selection();
    if (chosen < 0 || commands().isBusy())
        return m_pcboView.select(static_cast<int>(m_trees.shownIndex()));
    m_trees.show(static_cast<std::size_t>(chosen));
    selectNode(m_trees.shown().view().selection());
}

void PaneAlbumDetails::onBelowChosen(const Command&)
{
    m_below = static_cast<Below>(std::max(m_pcboAlbumInfo.selection(), 0));
    showBelow();
    if (!commands().isBusy())
        showTrack();
}

void PaneAlbumDetails::onDetailsChosen(const Command&)
{
    m_trackDetails.choiceMade();
}

} // namespace tessera
