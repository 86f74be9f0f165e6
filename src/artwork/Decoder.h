#pragma once

#include "base/Bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessera {

// A decoded picture: 32-bit pixels B, G, R, A from the top row down, no padding.
struct Picture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> pixels;
};

struct PictureSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

// Size from the header of a JPEG, PNG, GIF, BMP or ICO; none for anything else.
std::optional<PictureSize> pictureSize(ByteView bytes);

// Largest picture that is decoded at all, in pixels; the header decides before a decoder runs.
inline constexpr std::int64_t kLargestPicture = 64 * 1024 * 1024;

// What the system's picture loader takes, and PNG through the imaging component where the loader
// refuses it. None when it is no picture, too large, or damaged. The thread has initialised COM.
std::optional<Picture> decodePicture(ByteView bytes);
// The same for a file; the check of artwork location and the loader of covers share it.
std::optional<Picture> decodePictureFile(const std::string& path);
// Decodes and forgets.
bool isPictureFile(const std::string& path);

} // namespace tessera
