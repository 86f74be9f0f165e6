#pragma once

#include "artwork/Decoder.h"

#include <string>

namespace tessera {

// What stands in for a cover: the user's picture, else the one that is built in. None when neither
// can be had.
std::optional<Picture> defaultCover(const std::string& path);

} // namespace tessera
