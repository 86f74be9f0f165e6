#pragma once

#include "tests/ui/AlbumFixture.h"
#include "ui/PaneOverview.h"

#include <memory>
#include <string>
#include <vector>

namespace tessera::bench {

constexpr int kWide = 1920;
constexpr int kTall = 1080;
constexpr int kStrip = 60; // caption and search box; the list has the rest

// Albums as a real library has them: neighbours have nothing in common but the artist.
void fillLibrary(Library& records, std::int32_t albums);

// A number that looks random and follows from the index.
std::uint32_t scattered(std::int32_t index, std::uint32_t salt);

// The window comes to the front and is painted.
void bringToFront(HWND window);

// The overview in a window of its own, in front of the others.
struct ListRig {
    FakeCommands& commands;
    HWND parent = makeParentWindow(kWide, kTall);
    std::unique_ptr<PaneOverview> pane;

    // The records and covers are there already.
    ListRig(FakeCommands& commands, ListStyle style);
    ~ListRig();
    ListRig(const ListRig&) = delete;
    ListRig& operator=(const ListRig&) = delete;

    HWND list() const;
    Edit box() const;
    void command(int id) const;
};

// The album list alone, in a window of its own.
class AloneList : public Mapped<AloneList> {
public:
    static std::span<const MapEntry<AloneList>> messageMap();

    AloneList(FakeCommands& commands, ListStyle style);
    ~AloneList() override;

    HWND top() const { return m_top; }
    AlbumList& list() { return m_list; }

private:
    Handled onNotify(const Message& message);

    HWND m_top = makeParentWindow(kWide, kTall);
    AlbumCatalogue m_catalogue;
    AlbumList m_list;
};

// Answers as a virtual list's parent must, and nothing more.
class BareParent : public Mapped<BareParent> {
public:
    static std::span<const MapEntry<BareParent>> messageMap();

private:
    Handled onNotify(const Message& message);
};

// A list of the same kind as the overview's, in a window of its own of the same size, with the same
// columns or with cells of the same size.
class BareList {
public:
    BareList(ListStyle style, int albums);
    ~BareList();
    BareList(const BareList&) = delete;
    BareList& operator=(const BareList&) = delete;

    HWND top() const { return m_top; }
    const ListView& list() const { return m_list; }
    void setCount(int albums) const;
    // The sort arrow and the mark go from one column to another.
    void mark(int before, int after) const;

private:
    HWND m_top = makeParentWindow(kWide, kTall);
    BareParent m_parent;
    ListView m_list;
    ImageList m_cells;
};

} // namespace tessera::bench
