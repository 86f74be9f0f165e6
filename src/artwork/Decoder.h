#pragma once

#include "artwork/ImageHeader.h"

#include <string>
#include <vector>

namespace tessera {

// A decoded picture: 32-bit pixels B, G, R, A from the top row down, no padding. Colours are not
// multiplied by their alpha, which is 255 throughout an opaque picture.
struct Picture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> pixels;
};

// What is shown at all, wherever a picture comes from; the header decides before a decoder runs.
inline constexpr std::int64_t kMostPicturePixels = 40'000'000;
inline constexpr std::int32_t kLongestPictureSide = 65535;
inline constexpr std::uint64_t kMostPictureBytes = 64ULL * 1024 * 1024;

// By the system's picture loader or its imaging component: what one refuses the other may take. An icon is
// its largest image. None when it is no picture, above the limits, cut off or damaged, or memory is short.
// The thread has initialised COM.
std::optional<Picture> decodePicture(ByteView bytes);
// Empty when there is no such file, or a larger one than is shown.
std::vector<std::uint8_t> readPictureFile(const std::string& path);

} // namespace tessera
