#pragma once

#include "library/Records.h"

namespace tessera {

// What the user says about an album.
struct Marks {
    std::int32_t rank = 0;    // 1 to 10; 0: not ranked
    std::int32_t newDate = 0; // YYYYMMDD; kept when the album is no longer new
    bool isNew = false;
    bool favourite = false;

    bool operator==(const Marks&) const = default;
};

Marks marksOf(const Album& album);
// In memory; the column texts become stale.
void setMarks(Album& album, const Marks& marks);

} // namespace tessera
