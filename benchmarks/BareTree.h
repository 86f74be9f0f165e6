#pragma once

#include "ui/AlbumGroups.h"
#include "windowing/TreeView.h"

namespace tessera::bench {

// The items of an album tree as a list: what a tree of the same contents is made from. Roots and
// groups come first, the outer ones before the many: where the control looks for parents from the
// oldest item on, nothing is quicker.
struct BareItem {
    std::string text;
    int image;
    LPARAM data;
    int parent;  // item's number; -1: a root
    bool sorted; // its children are
};
struct BareItems {
    std::vector<BareItem> items;
    std::size_t groups = 0; // how many come before the albums
};

// Groups come in no order, as they do from a library.
BareItems bareItems(const AlbumCatalogue& catalogue, const AlbumTreeNames& names, const AlbumPlaces& places);

// A hidden tree without anything of ours.
TreeView bareTree(HWND parent);
// Behind what is there already; answers all items.
void insertBare(const TreeView& tree, const BareItems& list, std::size_t first, std::size_t last,
                std::vector<HTREEITEM>& made);
void insertAndSort(const TreeView& tree, const BareItems& list);

} // namespace tessera::bench
