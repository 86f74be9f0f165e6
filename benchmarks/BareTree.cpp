#include "BareTree.h"

#include "Report.h"
#include "ui/AlbumTree.h"
#include "ui/ids.h"

#include <algorithm>
#include <random>

namespace tessera::bench {

namespace {

struct Groups {
    int root;
    const NameTable& names;
    AlbumGroups divided;
    std::vector<int> outer; // their items
    std::vector<int> inner;
};

class Maker {
public:
    Maker(const AlbumCatalogue& catalogue, const AlbumTreeNames& names)
        : m_catalogue(catalogue), m_names(names)
    {
    }

    BareItems make(const AlbumPlaces& places)
    {
        const Naming artists{m_names.artists, m_names.artistOf};
        Groups all[kGroupings] = {
            {add("Rank"),
             m_names.ranks,
             groupAlbums(places, {m_names.ranks, m_names.rankOf}, &artists),
             {},
             {}},
            {add("Genre"),
             m_names.genres,
             groupAlbums(places, {m_names.genres, m_names.genreOf}, &artists),
             {},
             {}},
            {add("Artist/Album"), m_names.artists, groupAlbums(places, artists, nullptr), {}, {}}};
        for (Groups& groups : all)
            addOuter(groups);
        for (Groups& groups : all)
            addInner(groups);
        m_list.groups = m_list.items.size();
        for (Groups& groups : all) {
            const bool divided = !groups.inner.empty();
            addAlbums(divided ? groups.divided.inner : groups.divided.outer,
                      divided ? groups.inner : groups.outer, groups.divided.places);
        }
        return std::move(m_list);
    }

private:
    int add(const std::string& text, int parent = -1, bool sorted = true, int image = icon::kPerson,
            LPARAM data = 100)
    {
        m_list.items.push_back({text, image, data, parent, sorted});
        return static_cast<int>(m_list.items.size()) - 1;
    }
    std::vector<std::size_t> mixed(std::size_t count)
    {
        std::vector<std::size_t> order(count);
        for (std::size_t i = 0; i < count; ++i)
            order[i] = i;
        std::ranges::shuffle(order, m_random);
        return order;
    }
    void addOuter(Groups& groups)
    {
        const std::vector<AlbumGroup>& list = groups.divided.outer;
        groups.outer.resize(list.size());
        for (const std::size_t i : mixed(list.size()))
            groups.outer[i] =
                add(groups.names[list[i].name].text, groups.root, !groups.divided.inner.empty());
    }
    void addInner(Groups& groups)
    {
        const std::vector<AlbumGroup>& list = groups.divided.inner;
        groups.inner.resize(list.size());
        std::vector<int> parents(list.size());
        for (std::size_t i = 0; i < groups.outer.size(); ++i) {
            const AlbumGroup& outer = groups.divided.outer[i];
            std::fill(parents.begin() + outer.firstInner, parents.begin() + outer.lastInner, groups.outer[i]);
        }
        for (const std::size_t i : mixed(list.size()))
            groups.inner[i] = add(m_names.artists[list[i].name].text, parents[i], false);
    }
    void addAlbums(const std::vector<AlbumGroup>& list, const std::vector<int>& items,
                   const AlbumPlaces& places)
    {
        for (std::size_t i = 0; i < list.size(); ++i) {
            for (std::uint32_t at = list[i].first; at < list[i].last; ++at) {
                Album& album = m_catalogue.album(places[at]);
                add(album.displayTitle, items[i], false, icon::kAlbum, reinterpret_cast<LPARAM>(&album));
            }
        }
    }

    const AlbumCatalogue& m_catalogue;
    const AlbumTreeNames& m_names;
    BareItems m_list;
    std::mt19937 m_random{5};
};

} // namespace

BareItems bareItems(const AlbumCatalogue& catalogue, const AlbumTreeNames& names, const AlbumPlaces& places)
{
    return Maker(catalogue, names).make(places);
}

TreeView bareTree(HWND parent)
{
    TreeView tree;
    require(tree.create(parent, 7000, {0, 0, 300, 600}, TreeView::kTree, 0), "no bare tree");
    tree.show(false);
    return tree;
}

void insertBare(const TreeView& tree, const BareItems& list, std::size_t first, std::size_t last,
                std::vector<HTREEITEM>& made)
{
    made.resize(list.items.size());
    for (std::size_t i = first; i < last; ++i) {
        const BareItem& item = list.items[i];
        made[i] = tree.add(item.parent < 0 ? TVI_ROOT : made[static_cast<std::size_t>(item.parent)],
                           item.text, item.image, item.data);
    }
}

void insertAndSort(const TreeView& tree, const BareItems& list)
{
    const TreeUpdate update(tree);
    std::vector<HTREEITEM> made;
    insertBare(tree, list, 0, list.items.size(), made);
    for (std::size_t i = 0; i < list.groups; ++i) {
        if (list.items[i].sorted)
            tree.send(TVM_SORTCHILDREN, 0, reinterpret_cast<LPARAM>(made[i]));
    }
}

} // namespace tessera::bench
