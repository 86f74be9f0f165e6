#pragma once

#include "ports/Log.h"
#include "ui/AlbumTree.h"
#include "ui/Pane.h"
#include "windowing/Messages.h"

#include <chrono>

namespace tessera {

class Commands;

// Which trees are made anew: all, or those of what the user marks (new and favourite albums).
enum class TreeRebuild { Full, Marks };

// The four trees of the details pane, of which one is shown. Their parent hands them its
// notifications first.
class AlbumTrees {
public:
    static constexpr std::size_t kCount = 4; // Entire Library, New, Favourites, Completed Only

    explicit AlbumTrees(Commands& commands);

    bool create(HWND parent);
    // Font, colours and icons as the settings have them now.
    void settingsChanged();
    void move(const RECT& place) const;
    void show(std::size_t tree);
    std::size_t shownIndex() const { return m_shown; }
    AlbumTree& shown() { return m_trees[m_shown]; }
    const AlbumTree& tree(std::size_t index) const { return m_trees[index]; }

    // All in one go; nothing is selected afterwards. The catalogue is filled, and is asked until
    // `release`.
    void rebuild(TreeRebuild kind, Log& log);
    // In turns, for a library so large that messages should be handled between them: `begin`, then
    // `step` until it answers false. The trees answer no questions about albums until then. The log
    // lives as long.
    void begin(TreeRebuild kind, Log& log);
    bool step(std::chrono::milliseconds turn);
    bool isDone() const { return m_current == kCount; }
    // The records are about to go. What the controls show stays until the next rebuild, which must
    // follow even when no library does; until then no node opens.
    void release();
    bool isChanging() const { return m_changing; }

    // Fills groups that open, and swallows what the trees tell of changes that are not the user's.
    Handled answer(NMHDR& header);

    // Open nodes and scroll places; they come back with the next full rebuild that has albums.
    std::array<TreeState, kCount> states() const;
    void setStates(std::array<TreeState, kCount> states);

private:
    using Clock = std::chrono::steady_clock;

    bool isConcerned(std::size_t tree) const;
    AlbumPlaces placesOf(std::size_t tree) const;
    void makeNames();
    void beginTree();
    bool hasState(std::size_t tree) const;
    void keepStates();

    Commands& m_commands;
    std::array<AlbumTree, kCount> m_trees;
    std::array<TreeState, kCount> m_states; // to come back
    AlbumTreeNames m_names;
    std::size_t m_shown = 0;

    // while they change
    Log* m_log = nullptr;
    TreeRebuild m_kind = TreeRebuild::Full;
    bool m_named = false;
    std::size_t m_current = kCount;
    bool m_changing = false;
};

} // namespace tessera
