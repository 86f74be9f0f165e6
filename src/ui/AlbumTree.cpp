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

constexpr std::size_t kNodesAtATime = 64; // a millisecond, or a few on slow systems

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

template <class Value>
Value taken(std::vector<Value>& values)
{
    const Value value = values.back();
    values.pop_back();
    return value;
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
    m_change.reset();
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

// A few groups or the albums of one group at a time. Some systems look for an item's parent among all
// items from the oldest on: all groups come before the albums, and of the groupings the artists, which
// are many, come last.
bool AlbumTree::step()
{
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
        if (!m_change)
            matchNodes(m_roots[m_grouping], m_contents[m_grouping].outer, m_next[m_grouping].outer,
                       level(false));
        if (!changeGroups())
            advance();
        break;
    case Stage::InnerGroups:
        if (!m_change && !beginNextInner())
            advance();
        else
            changeGroups();
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
    m_change.reset();
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

bool AlbumTree::beginNextInner()
{
    const std::vector<Node>& outer = m_next[m_grouping].outer;
    if (m_grouping == 0 || m_at == outer.size())
        return false;
    beginInner(outer[m_at++]);
    return true;
}

void AlbumTree::beginInner(const Node& outer)
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

// Plans the change; nothing is asked of the control yet.
void AlbumTree::matchNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next,
                           const Level& level)
{
    pairNodes(old, next);
    GroupChange& change = m_change.emplace(GroupChange{parent, level, next, {}, {}, {}});
    std::vector<bool> kept(old.size());
    for (std::uint32_t i = 0; i < next.size(); ++i) {
        Node& node = next[i];
        if (node.before == kNoGroup)
            continue;
        const Node& was = old[node.before];
        kept[node.before] = true;
        node.item = was.item;
        node.filled = was.filled;
        if (was.textHash != node.textHash || was.image != node.image)
            change.renewals.push_back(i);
    }
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (!kept[i] && old[i].item)
            change.removals.push_back(old[i].item);
    }
    std::vector<HTREEITEM> items(next.size());
    std::ranges::transform(next, items.begin(), &Node::item);
    change.insertions = insertionsOf(items);
    std::ranges::reverse(change.insertions); // they are taken from the end
    std::ranges::reverse(change.removals);
}

// What is missing (null), each where it costs least: some systems walk all siblings to the last place
// and to the node that another is put behind, so where none of them stays all go to the front, from
// the last to the first.
std::vector<AlbumTree::Insertion> AlbumTree::insertionsOf(const std::vector<HTREEITEM>& items)
{
    std::vector<Insertion> insertions;
    HTREEITEM behind = TVI_FIRST;
    std::uint32_t ending = 0; // comes behind all that is there
    for (std::uint32_t i = 0; i < items.size(); ++i) {
        if (!items[i]) {
            insertions.push_back({i, behind});
            continue;
        }
        behind = items[i];
        ending = i + 1;
    }
    const auto firstOfEnd = std::ranges::lower_bound(insertions, ending, {}, &Insertion::at);
    const bool anyStays = ending > 0;
    for (auto each = firstOfEnd; anyStays && each != insertions.end(); ++each)
        each->behind = TVI_LAST;
    // Those behind the same node come out in order when the last is put in first.
    std::reverse(insertions.begin(), anyStays ? firstOfEnd : insertions.end());
    return insertions;
}

// A part of the change under way; false when nothing is left of it.
bool AlbumTree::changeGroups()
{
    GroupChange& change = *m_change;
    const auto& look = lookOf(change.level.grouping);
    const LPARAM data = change.level.inner ? look.innerData : look.outerData;
    for (std::size_t i = 0; i < kNodesAtATime; ++i) {
        if (!change.renewals.empty()) {
            const Node& node = change.next[taken(change.renewals)];
            m_tvw.set(node.item, textOf(node, change.level), node.image, data);
        } else if (!change.insertions.empty()) {
            const Insertion next = taken(change.insertions);
            change.next[next.at].item = addGroup(change, change.next[next.at], next.behind);
        } else if (!change.removals.empty()) {
            m_tvw.remove(taken(change.removals)); // last: a node without others below would close
        } else {
            m_change.reset();
            return false;
        }
    }
    return true;
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

HTREEITEM AlbumTree::addGroup(const GroupChange& change, const Node& node, HTREEITEM behind)
{
    const Level& level = change.level;
    const auto& look = lookOf(level.grouping);
    const bool holdsAlbums = level.inner || level.grouping == Grouping::Artist;
    const HTREEITEM item = change.parent ? m_tvw.add(change.parent, textOf(node, level), node.image,
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
