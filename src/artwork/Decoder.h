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

// PNG through the imaging component, the other kinds through the system's picture loader, and what that
// refuses through the imaging component, too. None when it is no picture, above the limits, cut off or
// damaged. The thread has initialised COM.
std::optional<Picture> decodePicture(ByteView bytes);
// Empty when there is no such file, or a larger one than is shown.
std::vector<std::uint8_t> readPictureFile(const std::string& path);
// Decodes and forgets.
bool isPicture(ByteView bytes);
bool isPictureFile(const std::string& path);

} // namespace tessera
