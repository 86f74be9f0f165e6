#pragma once

#include "settings/TreeState.h"
#include "ui/AlbumGroups.h"
#include "windowing/TreeView.h"

#include <array>
#include <functional>

namespace tessera {

// The three roots of a tree, in their order.
enum class Grouping { Artist, Genre, Rank };
inline constexpr std::size_t kGroupings = 3;

// One of the details pane's trees: some albums by artist, by genre and artist, by rank and artist.
// A group node's parameter is a small number, an album's is its record.
//
// The control keeps its nodes when the albums change: a node stays while its group does, and the
// nodes of groups that are gone become those of new ones.
class AlbumTree {
public:
    AlbumTree(int id, const char* expression);

    // Hidden, with its three roots.
    bool create(HWND parent);
    int id() const { return m_id; }
    const TreeView& view() const { return m_tvw; }
    HTREEITEM root(Grouping grouping) const { return m_roots[static_cast<std::size_t>(grouping)]; }

    // Other albums, by their places. The catalogue and the names live until the last step is done.
    // `sameLibrary`: both are those of the last time.
    void begin(const AlbumCatalogue& catalogue, const AlbumTreeNames& names, AlbumPlaces places,
               bool sameLibrary);
    // A small part of the work; false when nothing is left to do.
    bool step();
    // The records are about to go: no node is asked for its album any more.
    void release();
    // All albums of the library were put in, and their records live.
    bool isFilled() const { return m_filled; }
    std::size_t albumCount() const { return m_contents[0].places.size(); }

    // The albums of a node, each once, from top to bottom as they are shown.
    void albumsOf(HTREEITEM item, const AlbumCatalogue& catalogue, AlbumPlaces& albums) const;
    // True for an album.
    bool isLeaf(HTREEITEM item) const;
    // The texts of a group node and of what is above it, " - " behind each; empty for an album.
    std::string pathOf(HTREEITEM item) const;

    // Open nodes and the line at the top, as far as they are there.
    TreeState state(const AlbumTreeNames& names) const;
    void restore(const TreeState& state, const AlbumTreeNames& names) const;

private:
    struct Node : AlbumGroup {
        HTREEITEM item = nullptr;
        std::size_t keyHash = 0;
        std::size_t textHash = 0;
        int image = 0;
        std::uint32_t before = kNoGroup; // whose node it has taken, in the list of the last time
    };
    struct Contents {
        std::vector<Node> outer;
        std::vector<Node> inner;
        AlbumPlaces places;
        std::vector<HTREEITEM> leaves; // of the places
    };
    // What a list of nodes under one parent looks like.
    struct Level {
        Grouping grouping;
        bool inner;
        const NameTable& names;
    };
    // Whether to go on to what is below.
    using Visit = std::function<bool(const std::string& path, HTREEITEM item)>;

    void abandon();
    void advance();
    std::vector<Node>& deepest(std::array<Contents, kGroupings>& contents) const;
    Level level(bool inner) const;
    static std::string textOf(const Node& node, const Level& level);
    void listOuter();
    void listInner(const Node& outer);
    void matchNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next, const Level& level);
    void pairNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next) const;
    void describe(std::span<Node> nodes, const Level& level) const;
    HTREEITEM addGroup(HTREEITEM parent, const Node& node, const Level& level, HTREEITEM behind);
    void fillLeaves(const Node& node);
    HTREEITEM addLeaf(HTREEITEM parent, std::uint32_t place, HTREEITEM behind);
    void setLeaf(HTREEITEM item, std::uint32_t place) const;
    const Node* oldOf(const Node& node, const std::vector<Node>& old) const;
    void insertionFailed(const char* expression);

    const Node* findGroup(HTREEITEM item, Grouping& grouping) const;
    void forEachGroup(const AlbumTreeNames& names, const Visit& visit) const;
    HTREEITEM findAlbum(HTREEITEM group, const std::string& key) const;

    int m_id;
    const char* m_expression; // of the assertion when there is no control
    TreeView m_tvw;
    std::array<HTREEITEM, kGroupings> m_roots{};
    std::array<Contents, kGroupings> m_contents;
    bool m_filled = false;

    // while albums change
    const AlbumCatalogue* m_catalogue = nullptr;
    const AlbumTreeNames* m_names = nullptr;
    AlbumPlaces m_given;
    bool m_sameLibrary = false;
    std::array<Contents, kGroupings> m_next;
    enum class Stage { Groups, InnerGroups, Albums, Done } m_stage = Stage::Done;
    std::size_t m_grouping = 0;                           // which is under way
    std::size_t m_at = 0;                                 // the next of its groups
    std::array<const char*, kGroupings + 1> m_reported{}; // failures are told once
};

} // namespace tessera
