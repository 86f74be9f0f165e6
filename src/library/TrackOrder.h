#pragma once

#include "library/Records.h"

#include <vector>

namespace tessera {

// The album's tracks as they are shown, played and dragged: by full file name, ignoring case, then
// by id; or by id alone.
std::vector<Track*> tracksInOrder(const Album& album, bool byLocation);

} // namespace tessera
