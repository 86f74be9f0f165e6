// What a tree's nodes stand for.

#include "ui/AlbumTree.h"

#include <algorithm>
#include <set>

namespace tessera {

namespace {

// Everything above is an album's record; a pointer may be a negative number.
constexpr ULONG_PTR kLastGroupData = 303;

constexpr const char* kRootKeys[kGroupings] = {"ART", "GNR", "RNK"};
constexpr char kKeySeparator = '\t';
constexpr char kAlbumMark = '#';

bool isGroupData(LPARAM data)
{
    return static_cast<ULONG_PTR>(data) <= kLastGroupData;
}

std::string albumKey(const Album& album)
{
    return kAlbumMark + std::to_string(album.id);
}

const Album* albumOf(const TreeView& tree, HTREEITEM leaf)
{
    return reinterpret_cast<const Album*>(tree.data(leaf));
}

} // namespace

bool AlbumTree::isLeaf(HTREEITEM item) const
{
    return item && !isGroupData(m_tvw.data(item));
}

const AlbumTree::GroupItem* AlbumTree::findGroup(HTREEITEM item) const
{
    const auto found = std::ranges::lower_bound(m_groups, item, std::less(), &GroupItem::item);
    return item && found != m_groups.end() && found->item == item ? &*found : nullptr;
}

void AlbumTree::albumsOf(HTREEITEM item, const AlbumCatalogue& catalogue, AlbumPlaces& albums) const
{
    albums.clear();
    if (!m_ready || !item)
        return;
    const LPARAM data = m_tvw.data(item);
    if (!isGroupData(data)) {
        const std::uint32_t place = catalogue.find(albumOf(m_tvw, item)->id);
        if (place < catalogue.size())
            albums.push_back(place);
        return;
    }
    const auto root = std::ranges::find(m_roots, item);
    if (root != m_roots.end()) {
        albums = m_contents[static_cast<std::size_t>(root - m_roots.begin())].places;
        return;
    }
    if (const GroupItem* const group = findGroup(item)) {
        const AlbumPlaces& places = m_contents[group->grouping].places;
        albums.assign(places.begin() + group->node->first, places.begin() + group->node->last);
    }
}

std::string AlbumTree::pathOf(HTREEITEM item) const
{
    std::string path;
    for (; item && isGroupData(m_tvw.data(item)); item = m_tvw.parent(item))
        path.insert(0, m_tvw.text(item) + " - ");
    return path;
}

// From top to bottom, each with the keys from its root to it.
void AlbumTree::forEachGroup(const AlbumTreeNames& names, const Visit& visit) const
{
    const NameTable* const kOuter[kGroupings] = {&names.artists, &names.genres, &names.ranks};
    for (std::size_t i = 0; i < kGroupings; ++i) {
        const Contents& contents = m_contents[i];
        if (!visit(kRootKeys[i], m_roots[i], true))
            continue;
        for (const Node& outer : contents.outer) {
            const std::string path = kRootKeys[i] + (kKeySeparator + (*kOuter[i])[outer.name].key);
            if (!visit(path, outer.item, !holdsAlbums(outer) || outer.filled))
                continue;
            for (std::uint32_t at = outer.firstInner; at < outer.lastInner; ++at) {
                const Node& inner = contents.inner[at];
                visit(path + kKeySeparator + names.artists[inner.name].key, inner.item, inner.filled);
            }
        }
    }
}

TreeState AlbumTree::state(const AlbumTreeNames& names) const
{
    TreeState state;
    if (!m_ready)
        return state;
    HTREEITEM top = m_tvw.top();
    std::string ending;
    if (isLeaf(top)) {
        ending = kKeySeparator + albumKey(*albumOf(m_tvw, top));
        top = m_tvw.parent(top);
    }
    forEachGroup(names, [&](const std::string& path, HTREEITEM item, bool mayBeOpen) {
        const UINT opened = mayBeOpen ? m_tvw.state(item) & (TVIS_EXPANDED | TVIS_EXPANDEDONCE) : 0;
        if ((opened & TVIS_EXPANDED) != 0)
            state.open.push_back(path);
        if (item == top)
            state.top = path + ending;
        // Below other groups nothing is open or in view. There are many of them, and asking takes time.
        return opened != 0 || std::ranges::find(m_roots, item) != m_roots.end();
    });
    return state;
}

void AlbumTree::restore(const TreeState& state, const AlbumTreeNames& names) const
{
    if (!m_ready || state.empty())
        return;
    const std::set<std::string> open(state.open.begin(), state.open.end());
    const std::size_t album = state.top.rfind(std::string{kKeySeparator, kAlbumMark});
    const std::string topGroup = state.top.substr(0, album);
    std::vector<HTREEITEM> opening;
    HTREEITEM top = nullptr;
    forEachGroup(names, [&](const std::string& path, HTREEITEM item, bool) {
        if (item && open.contains(path) && !m_tvw.expanded(item))
            opening.push_back(item);
        if (path == topGroup)
            top = item;
        return true;
    });
    // What is inside first: a node that nobody sees opens at no cost.
    for (auto item = opening.rbegin(); item != opening.rend(); ++item)
        m_tvw.expand(*item);
    if (top && album != std::string::npos)
        top = findAlbum(top, state.top.substr(album + 1));
    if (top)
        m_tvw.scrollToTop(top);
}

// The group itself when it does not hold the album any more.
HTREEITEM AlbumTree::findAlbum(HTREEITEM group, const std::string& key) const
{
    for (HTREEITEM item = m_tvw.child(group); item; item = m_tvw.next(item)) {
        if (isLeaf(item) && albumKey(*albumOf(m_tvw, item)) == key)
            return item;
    }
    return group;
}

} // namespace tessera
