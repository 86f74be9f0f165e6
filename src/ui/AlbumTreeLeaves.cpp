// How the groups of a tree get their albums.

#include "ui/AlbumTree.h"
#include "ui/CommandKeys.h"
#include "ui/ids.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const char* kLeafFailed[kGroupings] = {"pTVI->m_hArtistAlbums", "pTVI->m_hGenre", "pTVI->m_hRank"};

int leafImage(const Album& album)
{
    return album.has(kAlbumHasImage) ? icon::kAlbum : icon::kAlbumWithoutImage;
}

} // namespace

std::span<const MapEntry<AlbumTree>> AlbumTree::messageMap()
{
    static constexpr MapEntry<AlbumTree> kMap[] = {
        {TVM_GETNEXTITEM, &AlbumTree::onNextItem},
        {TVM_GETCOUNT, &AlbumTree::onCount},
        {WM_KEYDOWN, &AlbumTree::onKeyDown},
        {WM_CHAR, &AlbumTree::onCharacter},
    };
    return kMap;
}

// The control tells of it, too, but on some systems not with the Ctrl key.
Handled AlbumTree::onKeyDown(const Message& message)
{
    if (message.wParam != VK_RETURN)
        return kDefault;
    NMHDR entered{m_tvw.handle(), static_cast<UINT_PTR>(m_id), NM_RETURN};
    SendMessageA(GetParent(m_tvw.handle()), WM_NOTIFY, entered.idFrom, reinterpret_cast<LPARAM>(&entered));
    return 0;
}

// The press did it.
Handled AlbumTree::onCharacter(const Message& message)
{
    return isEnter(message.wParam) ? Handled(0) : kDefault;
}

// Scripts and assistive tools walk down without opening anything.
Handled AlbumTree::onNextItem(const Message& message)
{
    if (message.wParam == TVGN_CHILD)
        prepareOpening(reinterpret_cast<HTREEITEM>(message.lParam));
    return kDefault;
}

Handled AlbumTree::onCount(const Message&)
{
    fillAll();
    return kDefault;
}

bool AlbumTree::prepareOpening(HTREEITEM item)
{
    if (!m_ready)
        return false;
    const GroupItem* const group = findGroup(item);
    if (group && holdsAlbums(*group->node))
        fill(*group->node, group->grouping);
    return true;
}

void AlbumTree::fillAll()
{
    if (!m_ready)
        return;
    for (const GroupItem& group : m_groups) {
        if (holdsAlbums(*group.node))
            fill(*group.node, group.grouping);
    }
}

void AlbumTree::fill(Node& node, std::size_t grouping)
{
    if (std::exchange(node.filled, true))
        return;
    addLeaves(node, grouping, m_contents[grouping]);
}

// Those of a group that have no nodes.
void AlbumTree::addLeaves(const Node& node, std::size_t grouping, Contents& contents)
{
    const auto leaves = std::span(contents.leaves).subspan(node.first, node.last - node.first);
    std::vector<HTREEITEM> items(leaves.size());
    std::ranges::transform(leaves, items.begin(), &Leaf::item);
    for (const Insertion& each : insertionsOf(items))
        leaves[each.at] = addLeaf(node.item, contents.places[node.first + each.at], grouping, each.behind);
}

// Of the next group that is filled already; false when there is none.
bool AlbumTree::changeNextLeaves()
{
    const std::vector<Node>& nodes = m_grouping == 0 ? m_next[0].outer : m_next[m_grouping].inner;
    while (m_at < nodes.size() && !nodes[m_at].filled)
        ++m_at;
    if (m_at == nodes.size())
        return false;
    changeLeaves(nodes[m_at++]);
    return true;
}

// Both sequences are in ascending order: of the same library, albums that are in both keep their
// nodes. Else the nodes of a closed group are any album's.
void AlbumTree::changeLeaves(const Node& node)
{
    const Contents& before = m_contents[m_grouping];
    Contents& next = m_next[m_grouping];
    const Node& old = (m_grouping == 0 ? before.outer : before.inner)[node.before];
    if (keepLeaves(node, old))
        return;
    std::uint32_t oldAt = old.first;
    const bool takeAny = !m_sameLibrary && !m_tvw.expanded(node.item);
    std::vector<HTREEITEM> removals;
    const auto dropOld = [&] {
        if (before.leaves[oldAt].item)
            removals.push_back(before.leaves[oldAt].item);
        ++oldAt;
    };
    for (std::uint32_t at = node.first; at < node.last; ++at) {
        const std::uint32_t place = next.places[at];
        while (m_sameLibrary && oldAt < old.last && before.places[oldAt] < place)
            dropOld();
        if (oldAt == old.last || !before.leaves[oldAt].item)
            continue;
        if (takeAny)
            next.leaves[at] = setLeaf(before.leaves[oldAt++].item, place);
        else if (m_sameLibrary && before.places[oldAt] == place)
            next.leaves[at] = before.leaves[oldAt++];
    }
    while (oldAt < old.last)
        dropOld();
    addLeaves(node, m_grouping, next);
    for (const HTREEITEM item : removals)
        m_tvw.remove(item);
}

// True when the group has the albums that it had, and they look the same.
bool AlbumTree::keepLeaves(const Node& node, const Node& old)
{
    const std::span<const Leaf> leaves =
        std::span(m_contents[m_grouping].leaves).subspan(old.first, old.last - old.first);
    Contents& next = m_next[m_grouping];
    if (leaves.size() != node.last - node.first)
        return false;
    for (std::size_t i = 0; i < leaves.size(); ++i) {
        if (!leaves[i].item || leaves[i].look != leafLook(next.places[node.first + i]))
            return false;
    }
    std::ranges::copy(leaves, next.leaves.begin() + node.first);
    return true;
}

// Of all that a node is made of.
std::size_t AlbumTree::leafLook(std::uint32_t place) const
{
    const Album& album = m_catalogue->album(place);
    const auto mixed = [](std::size_t hash, std::size_t value) { return hash * 31 + value; };
    const std::size_t text = std::hash<std::string>{}(album.displayTitle);
    return mixed(mixed(text, reinterpret_cast<std::size_t>(&album)),
                 static_cast<std::size_t>(leafImage(album)));
}

AlbumTree::Leaf AlbumTree::addLeaf(HTREEITEM parent, std::uint32_t place, std::size_t grouping,
                                   HTREEITEM behind)
{
    Album& album = m_catalogue->album(place);
    const HTREEITEM item = parent ? m_tvw.add(parent, album.displayTitle, leafImage(album),
                                              reinterpret_cast<LPARAM>(&album), behind)
                                  : nullptr;
    if (!item)
        insertionFailed(kLeafFailed[grouping]);
    return {item, leafLook(place)};
}

AlbumTree::Leaf AlbumTree::setLeaf(HTREEITEM item, std::uint32_t place) const
{
    Album& album = m_catalogue->album(place);
    m_tvw.set(item, album.displayTitle, leafImage(album), reinterpret_cast<LPARAM>(&album));
    return {item, leafLook(place)};
}

} // namespace tessera
