#pragma once

#include "base/Bytes.h"

#include <cstdint>
#include <optional>

namespace tessera {

enum class PictureKind { Jpeg, Png, Gif, Bmp, Icon };

struct PictureSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

struct PictureHeader {
    PictureKind kind{};
    PictureSize size; // both sides above 0; of the largest image of an icon
};

// What the first bytes say; none for anything but a JPEG, PNG, GIF, BMP, ICO or CUR.
std::optional<PictureHeader> pictureHeader(ByteView bytes);

// Whether the file goes on to the end of its picture. Decoders differ in what they make of one
// that was cut off; we take none of those.
bool isWholePicture(PictureKind kind, ByteView bytes);

} // namespace tessera
