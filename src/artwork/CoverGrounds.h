#pragma once

#include "artwork/Fitting.h"

#include <array>
#include <optional>
#include <windows.h>

namespace tessera {

enum CoverList { kLargeCovers, kMediumCovers, kSmallCovers, kBalloonCovers, kCoverListCount };

// Of each image list, an image without a cover; none for a list that is not there.
using CoverGrounds = std::array<std::optional<CoverGround>, kCoverListCount>;

// One cover in the sizes of all lists, as their images' pixels; empty where there is no list.
using FittedCover = std::array<std::vector<std::uint8_t>, kCoverListCount>;

// Draws the ground; throws std::bad_alloc when the system has no bitmap left.
CoverGround makeGround(SIZE size, bool border, COLORREF colour);

// The picture in every size.
FittedCover fitCover(const Picture& picture, const CoverGrounds& grounds);

} // namespace tessera
