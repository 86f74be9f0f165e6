#pragma once

#include "settings/TreeState.h"
#include "ui/AlbumGroups.h"
#include "windowing/TreeView.h"
#include "windowing/Window.h"

#include <array>
#include <functional>
#include <optional>

namespace tessera {

// The three roots of a tree, in their order.
enum class Grouping { Artist, Genre, Rank };
inline constexpr std::size_t kGroupings = 3;

// One of the details pane's trees: some albums by artist, by genre and artist, by rank and artist.
// A group node's parameter is a small number, an album's is its record.
//
// The control keeps its nodes when the albums change, as long as most of them stay. The nodes of
// albums are put in when their group is first opened, or when anybody asks for its first child or for
// the number of nodes; so whoever asks finds all of them. From then on they are kept like the groups.
class AlbumTree final : public Mapped<AlbumTree, DirectSubclass> {
public:
    static std::span<const MapEntry<AlbumTree>> messageMap();

    AlbumTree(int id, const char* expression);

    // Hidden, with its three roots.
    bool create(HWND parent);
    int id() const { return m_id; }
    const TreeView& view() const { return m_tvw; }
    HTREEITEM root(Grouping grouping) const { return m_roots[static_cast<std::size_t>(grouping)]; }

    // Other albums, by their places. The names live until the last step is done; catalogue and records
    // until `release` or the next `begin`. `sameLibrary`: both are those of the last time.
    void begin(const AlbumCatalogue& catalogue, const AlbumTreeNames& names, AlbumPlaces places,
               bool sameLibrary);
    // A small part of the work; false when nothing is left to do.
    bool step();
    // The records are about to go: no node is asked for its album any more, and none opens.
    void release();
    // The groups of all albums were put in, and the records live.
    bool isReady() const { return m_ready; }
    std::size_t albumCount() const { return m_contents[0].places.size(); }
    // Puts in the albums of a group that is about to open; false when it must not.
    bool prepareOpening(HTREEITEM item);

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
        bool filled = false;             // its albums have been put in
        std::uint32_t before = kNoGroup; // the same node in the list of the last time
    };
    // Others are divided into groups.
    static bool holdsAlbums(const Node& node) { return node.firstInner == node.lastInner; }
    // An album's node; none in a group that is not filled.
    struct Leaf {
        HTREEITEM item = nullptr;
        std::size_t look = 0; // hash of what it shows and stands for
    };
    struct Contents {
        std::vector<Node> outer;
        std::vector<Node> inner;
        AlbumPlaces places;
        std::vector<Leaf> leaves; // of the places
    };
    // What a list of nodes under one parent looks like.
    struct Level {
        Grouping grouping;
        bool inner;
        const NameTable& names;
    };
    struct GroupItem {
        HTREEITEM item;
        Node* node;
        std::size_t grouping;
    };
    // Whether to go on to what is below. `mayBeOpen`: asking the control is worth the time.
    using Visit = std::function<bool(const std::string& path, HTREEITEM item, bool mayBeOpen)>;
    struct Insertion {
        std::uint32_t at; // in the list of what is under one parent
        HTREEITEM behind;
    };
    // What is left to do to the groups under one parent.
    struct GroupChange {
        HTREEITEM parent;
        Level level;
        std::span<Node> next;
        std::vector<std::uint32_t> renewals;
        std::vector<Insertion> insertions;
        std::vector<HTREEITEM> removals;
    };

    Handled onNextItem(const Message& message);
    Handled onCount(const Message& message);
    Handled onKeyDown(const Message& message);
    Handled onCharacter(const Message& message);

    void addRoot(std::size_t grouping);
    void leave();
    void advance();
    void finish();
    void listGroups();
    bool isOther() const;
    void clearRoot(std::size_t grouping);
    Level level(bool inner) const;
    static std::string textOf(const Node& node, const Level& level);
    void beginGroups();
    bool beginNextInner();
    void beginInner(const Node& outer);
    void matchNodes(HTREEITEM parent, std::span<const Node> old, std::span<Node> next, const Level& level);
    bool changeGroups();
    static std::vector<Insertion> insertionsOf(const std::vector<HTREEITEM>& items);
    static void pairNodes(std::span<const Node> old, std::span<Node> next);
    void describe(std::span<Node> nodes, const Level& level) const;
    HTREEITEM addGroup(const GroupChange& change, const Node& node, HTREEITEM behind);
    static const Node* oldOf(const Node& node, const std::vector<Node>& old);
    void insertionFailed(const char* expression);

    void fill(Node& node, std::size_t grouping);
    void fillAll();
    bool changeNextLeaves();
    void changeLeaves(const Node& node);
    void addLeaves(const Node& node, std::size_t grouping, Contents& contents);
    bool keepLeaves(const Node& node, const Node& old);
    std::size_t leafLook(std::uint32_t place) const;
    Leaf addLeaf(HTREEITEM parent, std::uint32_t place, std::size_t grouping, HTREEITEM behind);
    Leaf setLeaf(HTREEITEM item, std::uint32_t place) const;

    const GroupItem* findGroup(HTREEITEM item) const;
    void forEachGroup(const AlbumTreeNames& names, const Visit& visit) const;
    HTREEITEM findAlbum(HTREEITEM group, const std::string& key) const;

    int m_id;
    const char* m_expression; // of the assertion when there is no control
    TreeView m_tvw;
    std::array<HTREEITEM, kGroupings> m_roots{};
    std::array<Contents, kGroupings> m_contents;
    std::vector<GroupItem> m_groups; // of the contents, by their items, while ready
    bool m_ready = false;
    const AlbumCatalogue* m_catalogue = nullptr;

    // while albums change
    const AlbumTreeNames* m_names = nullptr;
    AlbumPlaces m_given;
    bool m_sameLibrary = false;
    bool m_startOver = false;
    std::array<Contents, kGroupings> m_next;
    enum class Stage { Lists, Clearing, Groups, InnerGroups, Albums, Done } m_stage = Stage::Done;
    std::size_t m_grouping = 0;                           // which is under way, from the last to the first
    std::size_t m_at = 0;                                 // the next of its groups
    std::optional<GroupChange> m_change;                  // of the groups before that one
    std::array<const char*, kGroupings + 1> m_reported{}; // failures are told once
};

} // namespace tessera
