#include "ui/AlbumTrees.h"

#include "base/FlagScope.h"
#include "ui/Commands.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

// Which albums a tree shows: those with the flag, or all.
constexpr std::uint32_t kFlags[AlbumTrees::kCount] = {0, kAlbumNew, kAlbumFavourite, kAlbumHasImage};

constexpr std::chrono::hours kNoHurry(24);
constexpr int kRowSpace = 2; // pixels at 96 dpi; icons as high as their rows reach into the next ones

} // namespace

AlbumTrees::AlbumTrees(Commands& commands)
    : m_commands(commands),
      m_trees{AlbumTree(controlId::kTreeLibrary, "m_tvwLibrary.m_pTVW->GetSafeHwnd()"),
              AlbumTree(controlId::kTreeNew, "m_tvwNew.m_pTVW->GetSafeHwnd()"),
              AlbumTree(controlId::kTreeFavourites, "m_tvwFavourites.m_pTVW->GetSafeHwnd()"),
              AlbumTree(controlId::kTreeCompleted, "m_tvwCompleted.m_pTVW->GetSafeHwnd()")}
{
}

bool AlbumTrees::create(HWND parent)
{
    for (AlbumTree& tree : m_trees) {
        if (!tree.create(parent))
            return false;
    }
    settingsChanged();
    return true;
}

void AlbumTrees::settingsChanged()
{
    for (const AlbumTree& tree : m_trees) {
        tree.view().setFont(m_commands.comboFont());
        tree.view().setImageList(m_commands.smallIcons());
        tree.view().setRowSpace(scaled(kRowSpace, tree.view().handle()));
        tree.view().setColours(m_commands.treeBackground(), m_commands.treeText());
    }
}

void AlbumTrees::move(const RECT& place) const
{
    for (const AlbumTree& tree : m_trees)
        tree.view().move(place);
}

void AlbumTrees::show(std::size_t tree)
{
    m_shown = std::min(tree, kCount - 1);
    for (std::size_t i = 0; i < kCount; ++i)
        m_trees[i].view().show(i == m_shown);
}

void AlbumTrees::rebuild(TreeRebuild kind, Log& log)
{
    begin(kind, log);
    while (step(kNoHurry)) {
    }
}

void AlbumTrees::begin(TreeRebuild kind, Log& log)
{
    const bool named = m_names.artistOf.size() == m_commands.catalogue().size();
    m_kind = named && m_trees[0].isReady() ? kind : TreeRebuild::Full;
    m_log = &log;
    m_named = false;
    m_current = 0;
}

bool AlbumTrees::step(std::chrono::milliseconds turn)
{
    if (m_current == kCount)
        return false;
    const FlagScope changing(m_changing);
    const Clock::time_point start = Clock::now();
    const auto isOver = [&] { return Clock::now() - start >= turn; };
    if (!m_named) {
        makeNames();
        if (isOver())
            return m_current < kCount;
    }
    do {
        AlbumTree& tree = m_trees[m_current];
        const TreeUpdate update(tree.view());
        while (tree.step()) {
            if (isOver())
                return true;
        }
        if (hasState(m_current)) {
            tree.restore(m_states[m_current], m_names);
            m_states[m_current] = {};
        }
        ++m_current;
        beginTree();
    } while (m_current < kCount && !isOver());
    return m_current < kCount;
}

// The albums' names come first, as if they were all added; then they are put in order.
void AlbumTrees::makeNames()
{
    m_named = true;
    const AlbumCatalogue& catalogue = m_commands.catalogue();
    if (m_kind == TreeRebuild::Full) {
        keepStates();
        m_names.fill(catalogue, m_commands.general().moveThe, m_commands.firstNames());
    } else {
        m_names.fillRanks(catalogue);
    }
    m_log->line("Sorting");
    beginTree();
}

// The next tree that is made anew, if there is one.
void AlbumTrees::beginTree()
{
    while (m_current < kCount && !isConcerned(m_current))
        ++m_current;
    if (m_current < kCount)
        m_trees[m_current].begin(m_commands.catalogue(), m_names, placesOf(m_current),
                                 m_kind == TreeRebuild::Marks);
}

bool AlbumTrees::isConcerned(std::size_t tree) const
{
    const int id = m_trees[tree].id();
    return m_kind == TreeRebuild::Full || id == controlId::kTreeNew || id == controlId::kTreeFavourites;
}

AlbumPlaces AlbumTrees::placesOf(std::size_t tree) const
{
    const AlbumCatalogue& catalogue = m_commands.catalogue();
    AlbumPlaces places;
    places.reserve(kFlags[tree] == 0 ? catalogue.size() : 0);
    for (std::uint32_t place = 0; place < catalogue.size(); ++place) {
        if ((catalogue.album(place).flags & kFlags[tree]) == kFlags[tree])
            places.push_back(place);
    }
    return places;
}

void AlbumTrees::release()
{
    const FlagScope changing(m_changing);
    keepStates();
    m_current = kCount;
    for (AlbumTree& tree : m_trees)
        tree.release();
    m_names.clear();
}

// While there are no albums, what was open with the last ones waits.
bool AlbumTrees::hasState(std::size_t tree) const
{
    return m_trees[tree].isReady() && m_trees[0].albumCount() > 0;
}

void AlbumTrees::keepStates()
{
    for (std::size_t i = 0; i < kCount; ++i) {
        if (hasState(i))
            m_states[i] = m_trees[i].state(m_names);
    }
}

namespace {

// The ground of a selected node without the focus is the system's, and so is what can be read on it.
LRESULT colourNode(NMTVCUSTOMDRAW& draw)
{
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    const bool selected = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && selected && GetFocus() != draw.nmcd.hdr.hwndFrom) {
        draw.clrText = GetSysColor(COLOR_BTNTEXT);
        draw.clrTextBk = GetSysColor(COLOR_BTNFACE);
    }
    return CDRF_DODEFAULT;
}

} // namespace

Handled AlbumTrees::answer(NMHDR& header)
{
    const auto tree = std::ranges::find_if(m_trees, [&](const AlbumTree& each) {
        return header.hwndFrom && each.view().handle() == header.hwndFrom;
    });
    if (tree == m_trees.end())
        return kDefault;
    if (header.code == NM_CUSTOMDRAW)
        return colourNode(notificationAs<NMTVCUSTOMDRAW>(header));
    if (header.code == TVN_ITEMEXPANDINGA || header.code == TVN_ITEMEXPANDINGW) {
        const auto& opening = reinterpret_cast<const NMTREEVIEWA&>(header);
        if ((opening.action & TVE_TOGGLE) == TVE_EXPAND && !tree->prepareOpening(opening.itemNew.hItem))
            return TRUE;
    }
    return m_changing ? Handled(0) : kDefault;
}

std::array<TreeState, AlbumTrees::kCount> AlbumTrees::states() const
{
    std::array<TreeState, kCount> states = m_states;
    for (std::size_t i = 0; i < kCount; ++i) {
        if (hasState(i))
            states[i] = m_trees[i].state(m_names);
    }
    return states;
}

void AlbumTrees::setStates(std::array<TreeState, kCount> states)
{
    m_states = std::move(states);
}

} // namespace tessera
