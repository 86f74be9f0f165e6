// How a tree gets its nodes.

#include "ui/AlbumTree.h"

#include "base/Errors.h"
#include "ui/ids.h"

namespace tessera {

namespace {

constexpr const char* kUnit = "PaneAlbumDetails";
constexpr const char* kGroupFailed = "hItem";
constexpr std::size_t kRankPrefix = 2; // sorts ranks, and is not shown

// What every node of a kind has.
struct Look {
    const char* root;
    LPARAM rootData; // as scripts know them
    LPARAM outerData;
    LPARAM innerData;
    int outerImage;
    const char* leafFailed;
};

constexpr Look kLooks[kGroupings] = {
    {"Artist/Album", 100, 101, 0, icon::kPerson, "pTVI->m_hArtistAlbums"},
    {"Genre", 300, 202, 202, icon::kGenre, "pTVI->m_hGenre"},
    {"Rank", 0, 301, 302, icon::kPerson, "pTVI->m_hRank"},
};

const Look& lookOf(Grouping grouping)
{
    return kLooks[static_cast<std::size_t>(grouping)];
}

} // namespace

AlbumTree::AlbumTree(int id, const char* expression) : m_id(id), m_expression(expression) {}

bool AlbumTree::create(HWND parent)
{
    const bool made =
        m_tvw.create(parent, static_cast<UINT>(m_id), {0, 0, 0, 0}, TreeView::kTree | TVS_DISABLEDRAGDROP, 0);
    if (!made) {
        assertionFailed(m_expression, kUnit, __LINE__);
        return false;
    }
    m_tvw.show(false);
    for (std::size_t i = 0; i < kGroupings; ++i) {
        m_roots[i] = m_tvw.add(TVI_ROOT, kLooks[i].root, icon::kGroup, kLooks[i].rootData);
        if (!m_roots[i])
            insertionFailed(kGroupFailed);
    }
    return true;
}

void AlbumTree::begin(const AlbumCatalogue& catalogue, const AlbumTreeNames& names, AlbumPlaces places,
                      bool sameLibrary)
{
    abandon();
    m_filled = false;
    m_tvw.select(nullptr);
    m_catalogue = &catalogue;
    m_names = &names;
    m_given = std::move(places);
    m_sameLibrary = sameLibrary;
    m_stage = Stage::Groups;
    m_grouping = 0;
    m_at = 0;
    m_reported = {};
}

void AlbumTree::release()
{
    abandon();
    m_filled = false;
    m_tvw.select(nullptr);
}

// A change that is half done leaves nodes of both libraries: all go.
void AlbumTree::abandon()
{
    const bool begun = m_stage != Stage::Done && (m_stage != Stage::Groups || m_grouping > 0);
    m_stage = Stage::Done;
    if (!begun)
        return;
    const TreeUpdate update(m_tvw);
    for (const HTREEITEM root : m_roots) {
        while (const HTREEITEM group = m_tvw.child(root))
            m_tvw.remove(group);
    }
    m_contents = {};
    m_next = {};
}

// One list of groups or the albums of one group at a time. All groups come before the albums: some
// systems look for an item's parent among all items from the oldest on.
bool AlbumTree::step()
{
    Contents& next = m_next[m_grouping % kGroupings];
    switch (m_stage) {
    case Stage::Groups:
        listOuter();
        advance();
        break;
    case Stage::InnerGroups:
        if (m_at < next.outer.size() && m_grouping > 0)
            listInner(next.outer[m_at++]);
        else
            advance();
        break;
    case Stage::Albums:
        if (const std::vector<Node>& nodes = deepest(m_next); m_at < nodes.size())
            fillLeaves(nodes[m_at++]);
        else
            advance();
        break;
    case Stage::Done:
        break;
    }
    return m_stage != Stage::Done;
}

void AlbumTree::advance()
{
    m_at = 0;
    if (++m_grouping < kGroupings)
        return;
    m_grouping = 0;
    m_stage = static_cast<Stage>(static_cast<int>(m_stage) + 1);
    if (m_stage == Stage::Done) {
        m_contents = std::exchange(m_next, {});
        m_filled = true;
    }
}

// The groups that hold albums.
std::vector<AlbumTree::Node>& AlbumTree::deepest(std::array<Contents, kGroupings>& contents) const
{
    return m_grouping == 0 ? contents[m_grouping].outer : contents[m_grouping].inner;
}

AlbumTree::Level AlbumTree::level(bool inner) const
{
    const auto grouping = static_cast<Grouping>(m_grouping);
    if (inner || grouping == Grouping::Artist)
        return {grouping, inner, m_names->artists};
    return {grouping, inner, grouping == Grouping::Genre ? m_names->genres : m_names->ranks};
}

void AlbumTree::listOuter()
{
    const Naming artists{m_names->artists, m_names->artistOf};
    const Naming genres{m_names->genres, m_names->genreOf};
    const Naming ranks{m_names->ranks, m_names->rankOf};
    const Naming* const kOuter[kGroupings] = {&artists, &genres, &ranks};
    AlbumGroups groups = groupAlbums(m_given, *kOuter[m_grouping], m_grouping == 0 ? nullptr : &artists);
    Contents& next = m_next[m_grouping];
    next = {};
    next.places = std::move(groups.places);
    next.leaves.resize(next.places.size());
    next.outer.reserve(groups.outer.size());
    next.inner.reserve(groups.inner.size());
    for (const AlbumGroup& group : groups.outer)
        next.outer.push_back({group});
    for (const AlbumGroup& group : groups.inner)
        next.inner.push_back({group});
    describe(next.outer, level(false));
    describe(next.inner, level(true));
    matchNodes(m_roots[m_grouping], m_contents[m_grouping].outer, next.outer, level(false));
}

void AlbumTree::describe(std::span<Node> nodes, const Level& level) const
{
    for (Node& node : nodes) {
        node.keyHash = level.names[node.name].keyHash;
        node.textHash = std::hash<std::string>{}(level.names[node.name].text);
        node.image = level.inner ? icon::kPerson : lookOf(level.grouping).outerImage;
        if (level.grouping != Grouping::Artist || m_id == controlId::kTreeCompleted)
            continue;
        const Artist* const artist = m_catalogue->album(m_next[m_grouping].places[node.first]).artist;
        node.image = artist && artist->complete ? icon::kPerson : icon::kPersonIncomplete;
    }
}

void AlbumTree::listInner(const Node& outer)
{
    const Contents& before = m_contents[m_grouping];
    const Node* const old = oldOf(outer, before.outer);
    const std::uint32_t first = old ? old->firstInner : 0;
    const std::span<const Node> oldInner =
        old ? std::span(before.inner).subspan(first, old->lastInner - first) : std::span<const Node>();
    const std::span<Node> inner =
        std::span(m_next[m_grouping].inner).subspan(outer.firstInner, outer.lastInner - outer.firstInner);
    matchNodes(outer.item, oldInner, inner, level(true));
    for (Node& node : inner) {
        if (node.before != kNoGroup)
            node.before += first;
    }
}

std::string AlbumTree::textOf(const Node& node, const Level& level)
{
    const std::string& text = level.names[node.name].text;
    const bool isRank = level.grouping == Grouping::Rank && !level.inner;
    return isRank && text.size() > kRankPrefix ? text.substr(kRankPrefix) : text;
}

const AlbumTree::Node* AlbumTree::oldOf(const Node& node, const std::vector<Node>& old) const
{
    return node.before == kNoGroup ? nullptr : &old[node.before];
}

void AlbumTree::matchNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next,
                           const Level& level)
{
    pairNodes(parent, old, next);
    std::vector<bool> kept(old.size());
    for (const Node& node : next) {
        if (node.before != kNoGroup)
            kept[node.before] = true;
    }
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (!kept[i] && old[i].item)
            m_tvw.remove(old[i].item);
    }
    const auto& look = lookOf(level.grouping);
    const LPARAM data = level.inner ? look.innerData : look.outerData;
    HTREEITEM behind = TVI_FIRST;
    for (Node& node : next) {
        if (node.before == kNoGroup) {
            node.item = addGroup(parent, node, level, old.empty() ? TVI_LAST : behind);
        } else {
            const Node& was = old[node.before];
            node.item = was.item;
            const bool same =
                was.keyHash == node.keyHash && was.textHash == node.textHash && was.image == node.image;
            if (!same)
                m_tvw.set(node.item, textOf(node, level), node.image, data);
        }
        behind = node.item ? node.item : behind;
    }
}

// By their keys as far as the order allows. What is new between two pairs takes over what is left
// there, closed nodes only. Nodes that may be in view are made again instead: the tree measures each
// new text of those at once.
void AlbumTree::pairNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next) const
{
    if (old.empty())
        return;
    std::unordered_map<std::size_t, std::uint32_t> byKey;
    for (std::uint32_t i = 0; i < old.size(); ++i) {
        if (old[i].item)
            byKey.emplace(old[i].keyHash, i);
    }
    std::uint32_t from = 0;
    for (Node& node : next) {
        const auto found = byKey.find(node.keyHash);
        if (found == byKey.end() || found->second < from)
            continue;
        node.before = found->second;
        from = node.before + 1;
    }
    if (m_tvw.expanded(parent))
        return;
    std::uint32_t spare = 0;
    for (std::size_t i = 0; i < next.size();) {
        std::size_t end = i;
        while (end < next.size() && next[end].before == kNoGroup)
            ++end;
        const auto limit = end < next.size() ? next[end].before : static_cast<std::uint32_t>(old.size());
        for (; i < end && spare < limit; ++spare) {
            if (old[spare].item && !m_tvw.expanded(old[spare].item))
                next[i++].before = spare;
        }
        spare = limit + 1;
        i = end + 1;
    }
}

HTREEITEM AlbumTree::addGroup(HTREEITEM parent, const Node& node, const Level& level, HTREEITEM behind)
{
    const auto& look = lookOf(level.grouping);
    const HTREEITEM item = parent ? m_tvw.add(parent, textOf(node, level), node.image,
                                              level.inner ? look.innerData : look.outerData, behind)
                                  : nullptr;
    if (!item)
        insertionFailed(kGroupFailed);
    return item;
}

// Both sequences are in ascending order: of the same library, albums that are in both keep their
// nodes as they are. Else the nodes of a closed group are any album's.
void AlbumTree::fillLeaves(const Node& node)
{
    const Contents& before = m_contents[m_grouping];
    Contents& next = m_next[m_grouping];
    const Node* const old = oldOf(node, deepest(m_contents));
    std::uint32_t oldAt = old ? old->first : 0;
    const std::uint32_t oldEnd = old ? old->last : 0;
    const bool takeAny = !m_sameLibrary && oldAt < oldEnd && !m_tvw.expanded(node.item);
    const auto dropOld = [&] {
        if (before.leaves[oldAt])
            m_tvw.remove(before.leaves[oldAt]);
        ++oldAt;
    };
    while (!m_sameLibrary && !takeAny && oldAt < oldEnd)
        dropOld();
    HTREEITEM behind = oldAt < oldEnd ? TVI_FIRST : TVI_LAST;
    for (std::uint32_t at = node.first; at < node.last; ++at) {
        const std::uint32_t place = next.places[at];
        while (m_sameLibrary && oldAt < oldEnd && before.places[oldAt] < place)
            dropOld();
        const bool reuse =
            oldAt < oldEnd && before.leaves[oldAt] && (takeAny || before.places[oldAt] == place);
        HTREEITEM& leaf = next.leaves[at];
        leaf = reuse ? before.leaves[oldAt++] : addLeaf(node.item, place, behind);
        if (reuse && !m_sameLibrary)
            setLeaf(leaf, place);
        if (leaf && behind != TVI_LAST)
            behind = leaf;
    }
    while (oldAt < oldEnd)
        dropOld();
}

namespace {

int leafImage(const Album& album)
{
    return album.has(kAlbumHasImage) ? icon::kAlbum : icon::kAlbumWithoutImage;
}

} // namespace

HTREEITEM AlbumTree::addLeaf(HTREEITEM parent, std::uint32_t place, HTREEITEM behind)
{
    Album& album = m_catalogue->album(place);
    const HTREEITEM item = parent ? m_tvw.add(parent, album.displayTitle, leafImage(album),
                                              reinterpret_cast<LPARAM>(&album), behind)
                                  : nullptr;
    if (!item)
        insertionFailed(kLooks[m_grouping].leafFailed);
    return item;
}

void AlbumTree::setLeaf(HTREEITEM item, std::uint32_t place) const
{
    Album& album = m_catalogue->album(place);
    m_tvw.set(item, album.displayTitle, leafImage(album), reinterpret_cast<LPARAM>(&album));
}

// Each kind once a rebuild: there may be as many as albums.
void AlbumTree::insertionFailed(const char* expression)
{
    for (const char*& reported : m_reported) {
        if (reported == expression)
            return;
        if (!reported) {
            reported = expression;
            assertionFailed(expression, kUnit, __LINE__);
            return;
        }
    }
}

} // namespace tessera
