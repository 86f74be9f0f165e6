#pragma once

#include "library/Records.h"

#include <span>

namespace tessera {

// How a column of the album list looks and how albums compare in it. Columns stand in the order in
// which they are shown; their texts are the album's column texts, in the same order.
struct AlbumColumn {
    const char* title;
    int format;                                 // LVCFMT_*
    int width;                                  // pixels at 96 dpi; 0: as the title needs
    std::int32_t (*number)(const Album& album); // what it sorts by; null: its text, ignoring case
};

std::span<const AlbumColumn, kColumnCount> albumColumns();

} // namespace tessera
