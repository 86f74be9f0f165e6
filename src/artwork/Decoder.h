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

// Largest picture that is decoded at all, in pixels; the header decides before a decoder runs.
inline constexpr std::int64_t kLargestPicture = 64 * 1024 * 1024;

// PNG through the imaging component, the other kinds through the system's picture loader. None
// when it is no picture, too large, cut off or damaged. The thread has initialised COM.
std::optional<Picture> decodePicture(ByteView bytes);
// The same for a file; the check of artwork location and the loader of covers share it.
std::optional<Picture> decodePictureFile(const std::string& path);
// Decodes and forgets.
bool isPicture(ByteView bytes);
bool isPictureFile(const std::string& path);

} // namespace tessera
