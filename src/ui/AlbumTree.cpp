// How a tree gets its groups.

#include "ui/AlbumTree.h"

#include "base/Errors.h"
#include "ui/ids.h"

#include <algorithm>
#include <unordered_set>

namespace tessera {

namespace {

constexpr const char* kUnit = "PaneAlbumDetails";
constexpr const char* kGroupFailed = "hItem";
constexpr std::size_t kRankPrefix = 2; // sorts ranks, and is not shown
constexpr std::size_t kLastGrouping = kGroupings - 1;

// A node that goes or comes on its own costs some systems as much as so many of a tree that is emptied
// and filled.
constexpr std::size_t kChangeCost = 8;

// What every node of a kind has.
struct Look {
    const char* root;
    LPARAM rootData; // as scripts know them
    LPARAM outerData;
    LPARAM innerData;
    int outerImage;
};

constexpr Look kLooks[kGroupings] = {
    {"Artist/Album", 100, 101, 0, icon::kPerson},
    {"Genre", 300, 202, 202, icon::kGenre},
    {"Rank", 0, 301, 302, icon::kPerson},
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
    attach(m_tvw.handle());
    m_tvw.show(false);
    for (std::size_t i = 0; i < kGroupings; ++i)
        addRoot(i);
    return true;
}

void AlbumTree::addRoot(std::size_t grouping)
{
    const Look& look = kLooks[grouping];
    const HTREEITEM behind = grouping > 0 ? m_roots[grouping - 1] : TVI_FIRST;
    m_roots[grouping] = m_tvw.add(TVI_ROOT, look.root, icon::kGroup, look.rootData, behind);
    if (!m_roots[grouping])
        insertionFailed(kGroupFailed);
}

void AlbumTree::begin(const AlbumCatalogue& catalogue, const AlbumTreeNames& names, AlbumPlaces places,
                      bool sameLibrary)
{
    leave();
    m_catalogue = &catalogue;
    m_names = &names;
    m_given = std::move(places);
    m_sameLibrary = sameLibrary;
    m_stage = Stage::Lists;
    m_grouping = kLastGrouping;
    m_at = 0;
    m_reported = {};
}

void AlbumTree::release()
{
    leave();
}

// A change that is half done leaves nodes of both libraries: all go.
void AlbumTree::leave()
{
    const bool halfDone = m_stage != Stage::Done && m_stage != Stage::Lists;
    m_stage = Stage::Done;
    m_ready = false;
    m_groups.clear();
    m_next = {};
    m_tvw.select(nullptr);
    if (!halfDone)
        return;
    const TreeUpdate update(m_tvw);
    for (std::size_t i = 0; i < kGroupings; ++i)
        clearRoot(i);
}

void AlbumTree::clearRoot(std::size_t grouping)
{
    if (m_roots[grouping])
        m_tvw.remove(m_roots[grouping]);
    addRoot(grouping);
    m_contents[grouping] = {};
}

// One list of groups or the albums of one group at a time. Some systems look for an item's parent
// among all items from the oldest on: all groups come before the albums, and of the groupings the
// artists, which are many, come last.
bool AlbumTree::step()
{
    Contents& next = m_next[m_grouping];
    switch (m_stage) {
    case Stage::Lists:
        listGroups();
        advance();
        break;
    case Stage::Clearing:
        if (m_startOver)
            clearRoot(m_grouping);
        advance();
        break;
    case Stage::Groups:
        matchNodes(m_roots[m_grouping], m_contents[m_grouping].outer, next.outer, level(false));
        advance();
        break;
    case Stage::InnerGroups:
        if (m_at < next.outer.size() && m_grouping > 0)
            listInner(next.outer[m_at++]);
        else
            advance();
        break;
    case Stage::Albums:
        if (!changeNextLeaves())
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
    if (m_grouping > 0) {
        --m_grouping;
        return;
    }
    m_grouping = kLastGrouping;
    m_stage = static_cast<Stage>(static_cast<int>(m_stage) + 1);
    if (m_stage == Stage::Clearing)
        m_startOver = isOther();
    if (m_stage == Stage::Done)
        finish();
}

void AlbumTree::finish()
{
    m_contents = std::exchange(m_next, {});
    for (std::size_t i = 0; i < kGroupings; ++i) {
        for (auto* const nodes : {&m_contents[i].outer, &m_contents[i].inner}) {
            for (Node& node : *nodes)
                m_groups.push_back({node.item, &node, i});
        }
    }
    std::ranges::sort(m_groups, std::less(), &GroupItem::item);
    m_ready = true;
}

void AlbumTree::listGroups()
{
    const Naming artists{m_names->artists, m_names->artistOf};
    const Naming genres{m_names->genres, m_names->genreOf};
    const Naming ranks{m_names->ranks, m_names->rankOf};
    const Naming* const kOuter[kGroupings] = {&artists, &genres, &ranks};
    AlbumGroups groups = groupAlbums(m_given, *kOuter[m_grouping], m_grouping == 0 ? nullptr : &artists);
    Contents& next = m_next[m_grouping];
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
}

// By the artists, which most groups are made of: whether too few stay for changing them one by one.
bool AlbumTree::isOther() const
{
    const std::vector<Node>& old = m_contents[0].outer;
    const std::vector<Node>& next = m_next[0].outer;
    if (m_sameLibrary || old.empty())
        return false;
    std::unordered_set<std::size_t> keys;
    for (const Node& node : old)
        keys.insert(node.keyHash);
    const auto kept = static_cast<std::size_t>(
        std::ranges::count_if(next, [&](const Node& node) { return keys.contains(node.keyHash); }));
    return kept * 2 * kChangeCost < (old.size() + next.size()) * (kChangeCost - 1);
}

AlbumTree::Level AlbumTree::level(bool inner) const
{
    const auto grouping = static_cast<Grouping>(m_grouping);
    if (inner || grouping == Grouping::Artist)
        return {grouping, inner, m_names->artists};
    return {grouping, inner, grouping == Grouping::Genre ? m_names->genres : m_names->ranks};
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

const AlbumTree::Node* AlbumTree::oldOf(const Node& node, const std::vector<Node>& old)
{
    return node.before == kNoGroup ? nullptr : &old[node.before];
}

void AlbumTree::matchNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next,
                           const Level& level)
{
    pairNodes(old, next);
    std::vector<bool> kept(old.size());
    std::size_t firstOfEnd = 0; // what comes behind all nodes that are there
    for (std::size_t i = 0; i < next.size(); ++i) {
        if (next[i].before == kNoGroup)
            continue;
        kept[next[i].before] = true;
        firstOfEnd = i + 1;
    }
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (!kept[i] && old[i].item)
            m_tvw.remove(old[i].item);
    }
    const auto& look = lookOf(level.grouping);
    const LPARAM data = level.inner ? look.innerData : look.outerData;
    HTREEITEM behind = TVI_FIRST;
    for (std::size_t i = 0; i < next.size(); ++i) {
        Node& node = next[i];
        if (node.before == kNoGroup) {
            node.item = addGroup(parent, node, level, i < firstOfEnd ? behind : TVI_LAST);
        } else {
            const Node& was = old[node.before];
            node.item = was.item;
            node.filled = was.filled;
            if (was.textHash != node.textHash || was.image != node.image)
                m_tvw.set(node.item, textOf(node, level), node.image, data);
        }
        behind = node.item ? node.item : behind;
    }
}

// By their keys as far as the order allows.
void AlbumTree::pairNodes(std::span<const Node> old, std::span<Node> next)
{
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
}

HTREEITEM AlbumTree::addGroup(HTREEITEM parent, const Node& node, const Level& level, HTREEITEM behind)
{
    const auto& look = lookOf(level.grouping);
    const bool holdsAlbums = level.inner || level.grouping == Grouping::Artist;
    const HTREEITEM item = parent ? m_tvw.add(parent, textOf(node, level), node.image,
                                              level.inner ? look.innerData : look.outerData, behind,
                                              holdsAlbums ? TreeChildren::Later : TreeChildren::Now)
                                  : nullptr;
    if (!item)
        insertionFailed(kGroupFailed);
    return item;
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
