// What can be done with the albums of the details pane.

#include "base/Errors.h"
#include "base/Text.h"
#include "ui/AlbumMenu.h"
#include "ui/Commands.h"
#include "ui/DatePicker.h"
#include "ui/IconSizes.h"
#include "ui/PaneAlbumDetails.h"
#include "ui/SortMenu.h"
#include "ui/TakeMarks.h"
#include "ui/ids.h"

#include <algorithm>
#include <windowsx.h>

namespace tessera {

namespace {

constexpr const char* kUnit = "PaneAlbumDetails";
constexpr UINT kFromAccelerator = 1;

Menu subMenu(const char* expression)
{
    Menu menu = Menu::popup();
    if (!menu)
        assertionFailed(expression, kUnit, __LINE__);
    return menu;
}

Menu newMenu()
{
    Menu mnuPopupNew = subMenu("mnuPopupNew.CreatePopupMenu()");
    if (mnuPopupNew) {
        mnuPopupNew.add(albumCommand::kNewToday, "Yes - Use today's date");
        mnuPopupNew.add(albumCommand::kNewDate, "Yes - Use a specified date");
        mnuPopupNew.addSeparator();
        mnuPopupNew.add(albumCommand::kNotNew, "No");
    }
    return mnuPopupNew;
}

Menu rankMenu()
{
    Menu mnuPopupRank = subMenu("mnuPopupRank.CreatePopupMenu()");
    if (mnuPopupRank) {
        for (int rank = 1; rank <= albumCommand::kRankLast - albumCommand::kRankNone; ++rank)
            mnuPopupRank.add(static_cast<UINT>(albumCommand::kRankNone + rank), format("%d", rank));
        mnuPopupRank.addSeparator();
        mnuPopupRank.add(albumCommand::kRankNone, "Remove Ranking");
    }
    return mnuPopupRank;
}

Menu favouriteMenu()
{
    Menu mnuPopupFavourites = subMenu("mnuPopupFavourites.CreatePopupMenu()");
    if (mnuPopupFavourites) {
        mnuPopupFavourites.add(albumCommand::kFavourite, "Yes");
        mnuPopupFavourites.addSeparator();
        mnuPopupFavourites.add(albumCommand::kNoFavourite, "No");
    }
    return mnuPopupFavourites;
}

std::vector<std::int32_t> idsOf(const std::vector<Album*>& albums)
{
    std::vector<std::int32_t> ids(albums.size());
    std::ranges::transform(albums, ids.begin(), &Album::id);
    return ids;
}

// As far as they are still there.
std::vector<Album*> albumsWith(const Library& library, const std::vector<std::int32_t>& ids)
{
    std::vector<Album*> albums;
    for (const std::int32_t id : ids) {
        if (const auto found = library.albums.find(id); found != library.albums.end())
            albums.push_back(found->second.get());
    }
    return albums;
}

} // namespace

Menu PaneAlbumDetails::contextMenu(bool overList) const
{
    const std::vector<Album*> albums = selectedAlbums();
    Menu mnu = beginAlbumMenu(albums, kUnit);
    if (!mnu)
        return mnu;
    mnu.addSeparator();
    mnu.addSubMenu(newMenu(), "New");
    mnu.addSubMenu(rankMenu(), "Rank");
    mnu.addSubMenu(favouriteMenu(), albums.size() == 1 ? "Favourite" : "Favourites");
    if (overList)
        addSortMenu(mnu.get(), m_plvwAlbums.handle(), albumCommand::kSortFirst, m_plvwAlbums.sortColumn());
    addFolderEntry(mnu, albums.size());
    return mnu;
}

// The node below the pointer is selected first; the menu is for all its albums.
Handled PaneAlbumDetails::onNodeRightClick(NMHDR&)
{
    if (commands().isBusy())
        return 1;
    const TreeView& tree = m_trees.shown().view();
    POINT cursor{};
    GetCursorPos(&cursor);
    if (const HTREEITEM item = tree.itemAt(cursor))
        tree.select(item);
    m_plvwAlbums.deselect();
    if (m_plvwAlbums.count() == 0)
        return 1;
    if (const Menu mnu = contextMenu(false))
        runAlbumMenu(commands(), handle(), mnu);
    return 1;
}

// The Applications key and Shift+F10 come as this message; the pointer goes to the node.
Handled PaneAlbumDetails::onTreeMenuKey(const Message& message)
{
    const TreeView& tree = m_trees.shown().view();
    if (message.lParam != -1 || reinterpret_cast<HWND>(message.wParam) != tree.handle())
        return kDefault;
    if (const HTREEITEM item = tree.selection()) {
        tree.makeVisible(item);
        const RECT place = tree.visibleRect(item);
        SetCursorPos(static_cast<int>(place.left + place.right) / 2,
                     static_cast<int>(place.top + place.bottom) / 2);
        NMHDR header{tree.handle(), static_cast<UINT_PTR>(m_trees.shown().id()), NM_RCLICK};
        onNodeRightClick(header);
    }
    return 0;
}

Handled PaneAlbumDetails::onRowRightClick(NMHDR&)
{
    if (commands().isBusy() || m_plvwAlbums.selectedCount() == 0)
        return 1;
    if (const Menu mnu = contextMenu(true))
        runAlbumMenu(commands(), handle(), mnu);
    return 1;
}

// An album plays.
Handled PaneAlbumDetails::onNodeActivated(NMHDR&)
{
    const HTREEITEM item = m_trees.shown().view().selection();
    if (commands().isBusy() || !item || !m_trees.shown().isLeaf(item))
        return kDefault;
    play(selectedAlbums(), GetKeyState(VK_CONTROL) < 0);
    return 1;
}

// A double click opens and closes a group by itself, Enter does not.
Handled PaneAlbumDetails::onNodeEntered(NMHDR& header)
{
    const AlbumTree& tree = m_trees.shown();
    const HTREEITEM item = tree.view().selection();
    if (!commands().isBusy() && item && !tree.isLeaf(item)) {
        tree.view().expand(item, tree.view().expanded(item) ? TVE_COLLAPSE : TVE_EXPAND);
        return 1;
    }
    return onNodeActivated(header);
}

// Buttons and the place beside a node are not the node, though the control tells of them, too.
Handled PaneAlbumDetails::onNodeDoubleClicked(NMHDR& header)
{
    const DWORD place = GetMessagePos();
    const TreeView& tree = m_trees.shown().view();
    const bool hit = tree.itemHit({GET_X_LPARAM(place), GET_Y_LPARAM(place)}) == tree.selection();
    return hit ? onNodeActivated(header) : kDefault;
}

Handled PaneAlbumDetails::onRowEntered(NMHDR&)
{
    play(m_plvwAlbums.selectedAlbums(), GetKeyState(VK_CONTROL) < 0);
    return 0;
}

// Of the row under the pointer, which the Ctrl key may just have taken out of the selection.
Handled PaneAlbumDetails::onRowDoubleClicked(NMHDR& header)
{
    if (const int row = notificationAs<NMITEMACTIVATE>(header).iItem; row >= 0 && !commands().isBusy())
        play({&m_plvwAlbums.album(row)}, GetKeyState(VK_CONTROL) < 0);
    return 0;
}

// Keys are for selected rows only, so that no key reaches albums that nobody sees.
std::vector<Album*> PaneAlbumDetails::albumsFor(const Command& command) const
{
    if (commands().isBusy())
        return {};
    return command.code == kFromAccelerator ? m_plvwAlbums.selectedAlbums() : selectedAlbums();
}

void PaneAlbumDetails::onPlay(const Command& command)
{
    play(albumsFor(command), command.id == albumCommand::kAppend);
}

// A host call may end the plug-in, so the message comes first.
void PaneAlbumDetails::play(const std::vector<Album*>& albums, bool append)
{
    if (albums.empty() || commands().isBusy())
        return;
    if (!append)
        PostMessageA(handle(), kFocusListMessage, 0, 0);
    commands().playAlbums(albums, append);
    m_plvwPlayingNow.refresh();
}

Handled PaneAlbumDetails::onFocusList(const Message&)
{
    focusList();
    return 0;
}

void PaneAlbumDetails::onMark(const Command& command)
{
    mark(albumsFor(command), command.id, today());
}

void PaneAlbumDetails::onMarkNewDate(const Command& command)
{
    const std::vector<std::int32_t> ids = idsOf(albumsFor(command));
    if (ids.empty())
        return;
    commands().postDialog([this, ids](HWND owner) {
        const std::optional<std::int32_t> date = DatePicker().pickDate(owner);
        if (date && handle() && !commands().isBusy())
            mark(albumsWith(commands().library(), ids), albumCommand::kNewDate, *date);
    });
}

// On for all of them, unless all are favourites.
void PaneAlbumDetails::onToggleFavourite(const Command& command)
{
    const std::vector<Album*> albums = albumsFor(command);
    const bool all =
        std::ranges::all_of(albums, [](const Album* album) { return album->has(kAlbumFavourite); });
    mark(albums, all ? albumCommand::kNoFavourite : albumCommand::kFavourite, 0);
}

void PaneAlbumDetails::mark(const std::vector<Album*>& albums, UINT command, std::int32_t date)
{
    std::vector<MarksPlan::Change> changes;
    for (Album* const album : albums) {
        if (const Marks marks = markedBy(command, marksOf(*album), date); marks != marksOf(*album))
            changes.push_back({album, marks});
    }
    const bool moves = movesAlbums(command) && !changes.empty();
    change(changes, markName(command), moves);
    if (!albums.empty())
        written(albums, moves);
}

// A change that changes nothing is none.
void PaneAlbumDetails::change(const std::vector<MarksPlan::Change>& changes, const std::string& name,
                              bool movesAlbums)
{
    if (changes.empty())
        return;
    std::vector<Album*> albums(changes.size());
    std::ranges::transform(changes, albums.begin(), &MarksPlan::Change::album);
    m_history.remember(albums, name, movesAlbums);
    for (const MarksPlan::Change& each : changes)
        setMarks(*each.album, each.marks);
}

void PaneAlbumDetails::onTakeBack(const Command&)
{
    if (commands().isBusy())
        return;
    const std::optional<MarkHistory::Change> change = m_history.takeLast();
    if (!change)
        return showStatus("Nothing to undo");
    std::vector<Album*> albums;
    for (const auto& [id, marks] : change->before) {
        const auto found = commands().library().albums.find(id);
        if (found == commands().library().albums.end())
            continue;
        setMarks(*found->second, marks);
        albums.push_back(found->second.get());
    }
    written(albums, change->movesAlbums);
    if (handle() && !commands().isBusy())
        showStatus("Undone: " + describeChange(*change));
}

// To the file, then to the trees. A message about the file may outlast the pane.
void PaneAlbumDetails::written(const std::vector<Album*>& albums, bool movesAlbums)
{
    commands().marksChanged(albums);
    if (!movesAlbums || !handle() || commands().isBusy())
        return;
    rebuildTrees(TreeRebuild::Marks);
    const int shown = m_trees.shown().id();
    if (shown == controlId::kTreeNew || shown == controlId::kTreeFavourites)
        selectNode(nullptr);
    else
        updateStatus();
    focusList();
}

Menu PaneAlbumDetails::captionMenu() const
{
    Menu menu = Menu::popup();
    if (!menu)
        return menu;
    const MarkHistory::Change* const last = m_history.last();
    menu.add(albumCommand::kTakeBack, (last ? "Undo: " + describeChange(*last) : "Undo") + "\tCtrl+Z",
             last ? MF_ENABLED : MF_GRAYED);
    menu.addSeparator();
    menu.add(albumCommand::kTakeMarks, "Take marks from another database...",
             m_summary.albums() > 0 ? MF_ENABLED : MF_GRAYED);
    if (!m_kept.empty())
        menu.add(albumCommand::kDismissMarks, "Do not offer marks of earlier databases");
    return menu;
}

void PaneAlbumDetails::offerMarks(std::vector<KeptMarks> kept)
{
    m_kept = std::move(kept);
    if (m_kept.empty())
        return setOffer({}, 0);
    const KeptMarks& first = m_kept.front();
    const bool previous = first.fileName == previousDatabase(commands().database().lastUsed);
    setOffer(format("%s database holds marks of %ld album%s. Take them...",
                    previous ? "The previous" : "An earlier", static_cast<long>(first.albums),
                    first.albums == 1 ? "" : "s"),
             albumCommand::kTakeMarks);
}

void PaneAlbumDetails::onDismissMarks(const Command&)
{
    offerMarks({});
}

void PaneAlbumDetails::onTakeMarks(const Command&)
{
    if (commands().isBusy() || m_summary.albums() == 0)
        return;
    commands().postDialog([this](HWND owner) {
        const std::optional<MarksPlan> plan =
            askMarks(owner, commands(), m_kept.empty() ? std::string() : m_kept.front().fileName);
        if (plan && handle() && !commands().isBusy())
            takeMarks(*plan);
    });
}

void PaneAlbumDetails::takeMarks(const MarksPlan& plan)
{
    std::erase_if(m_kept, [&](const KeptMarks& kept) { return equalNoCase(kept.fileName, plan.fileName); });
    offerMarks(std::move(m_kept));
    if (plan.changes.empty())
        return;
    std::vector<Album*> albums(plan.changes.size());
    std::ranges::transform(plan.changes, albums.begin(), &MarksPlan::Change::album);
    change(plan.changes, "Marks from another database", true);
    written(albums, true);
}

void PaneAlbumDetails::onSort(const Command& command)
{
    const int column = static_cast<int>(command.id) - albumCommand::kSortFirst;
    if (!commands().isBusy() && column < static_cast<int>(kColumnCount)) {
        m_plvwAlbums.columnClicked(column);
        updateStatus();
    }
}

void PaneAlbumDetails::onGoToDirectory(const Command& command)
{
    if (const std::vector<Album*> albums = albumsFor(command); !albums.empty())
        commands().openFolder(*albums.front());
}

Handled PaneAlbumDetails::onWheel(const Message& message)
{
    return m_plvwAlbums.style() == ListStyle::Icons ? stepIconSize(commands(), m_wheel, message) : kDefault;
}

} // namespace tessera
