#pragma once

#include "artwork/Decoder.h"

#include <cstdint>
#include <vector>

namespace tessera {

struct PixelRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool operator==(const PixelRect&) const = default;
};

struct PixelColour {
    std::uint8_t blue = 255;
    std::uint8_t green = 255;
    std::uint8_t red = 255;
    bool operator==(const PixelColour&) const = default;
};

// An image list's image without a cover: the ground in one colour, a border round it if there is
// one. Pixels as those of a picture, opaque.
struct CoverGround {
    Picture image;
    PixelRect inside; // where covers are drawn
    PixelColour colour;
};

// Where a picture of that size goes: as large as the area allows, its proportions kept, centred.
// At least one pixel either way. All sides above 0.
PixelRect fitInto(PictureSize picture, const PixelRect& area);

// The picture as it looks on a ground of that colour, without anything that shines through.
void flatten(Picture& picture, PixelColour ground);
bool isOpaque(const Picture& picture);

// The ground with the opaque picture on it. Each pixel is the average of what it covers; a picture
// that is smaller than its place is interpolated. No side of the picture is above kLongestPictureSide.
std::vector<std::uint8_t> drawCover(const Picture& picture, const CoverGround& ground);

} // namespace tessera
