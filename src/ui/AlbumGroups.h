#pragma once

#include "ui/AlbumTreeNames.h"

#include <span>

namespace tessera {

inline constexpr std::uint32_t kNoGroup = 0xFFFFFFFF;

// The albums of one name; a range of a sequence of albums.
struct AlbumGroup {
    std::uint32_t name; // of the first album that was put into it
    std::uint32_t first;
    std::uint32_t last;           // behind the last one
    std::uint32_t firstInner = 0; // the groups that it is divided into, in a list of their own
    std::uint32_t lastInner = 0;
};

// Albums by a name and perhaps by a second one: groups in the order in which a tree shows them,
// albums of a group in the order in which they were given.
struct AlbumGroups {
    std::vector<AlbumGroup> outer;
    std::vector<AlbumGroup> inner;
    AlbumPlaces places; // groups are ranges of these
};

// A table of names, and the name of each album by its place.
struct Naming {
    const NameTable& names;
    const std::vector<std::uint32_t>& of;
};

AlbumGroups groupAlbums(AlbumPlaces places, const Naming& outer, const Naming* inner);

} // namespace tessera
