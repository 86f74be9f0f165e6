#include "artwork/ImageHeader.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string_view>

namespace tessera {
namespace {

// Numbers at fixed places; what lies behind the end reads as 0.
std::uint32_t byteAt(ByteView bytes, std::size_t at)
{
    return at < bytes.size() ? bytes[at] : 0;
}

std::uint32_t little16(ByteView bytes, std::size_t at)
{
    return byteAt(bytes, at) | byteAt(bytes, at + 1) << 8;
}

std::uint32_t little32(ByteView bytes, std::size_t at)
{
    return little16(bytes, at) | little16(bytes, at + 2) << 16;
}

std::uint32_t big16(ByteView bytes, std::size_t at)
{
    return byteAt(bytes, at) << 8 | byteAt(bytes, at + 1);
}

std::uint32_t big32(ByteView bytes, std::size_t at)
{
    return big16(bytes, at) << 16 | big16(bytes, at + 2);
}

bool startsWith(ByteView bytes, std::string_view start)
{
    return bytes.size() >= start.size() &&
           std::equal(start.begin(), start.end(), bytes.begin(),
                      [](char left, std::uint8_t right) { return static_cast<std::uint8_t>(left) == right; });
}

constexpr std::string_view kPngSignature("\x89PNG\r\n\x1a\n", 8);

std::optional<PictureSize> checkedSize(std::uint32_t width, std::uint32_t height)
{
    constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
    if (width == 0 || height == 0 || width > kMost || height > kMost) {
        return std::nullopt;
    }
    return PictureSize{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

namespace jpeg {

constexpr std::uint8_t kEnd = 0xD9;
constexpr std::uint8_t kScan = 0xDA;

bool isFrame(std::uint8_t marker) // all kinds of coding; C4, C8 and CC are something else
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool standsAlone(std::uint8_t marker)
{
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

// Walks from marker to marker; coded data between them is passed over.
class Markers {
public:
    explicit Markers(ByteView bytes) : m_bytes(bytes) {}

    // The next marker, its segment at `segment`; false at the end of the file.
    bool next()
    {
        for (;;) {
            const auto found =
                std::find(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_at), m_bytes.end(), 0xFF);
            m_at = static_cast<std::size_t>(found - m_bytes.begin()) + 1;
            if (m_at >= m_bytes.size()) {
                return false;
            }
            const std::uint8_t code = m_bytes[m_at];
            if (code != 0xFF && code != 0) { // fill bytes, and an FF of the coded data
                m_marker = code;
                m_segment = m_at + 1;
                m_at = m_segment;
                return true;
            }
        }
    }
    void skipSegment()
    {
        const std::size_t end = m_segment + std::max<std::size_t>(big16(m_bytes, m_segment), 2);
        m_at = std::min(end, m_bytes.size());
    }
    std::uint8_t marker() const { return m_marker; }
    std::size_t segment() const { return m_segment; }

private:
    ByteView m_bytes;
    std::size_t m_at = 2; // behind the start of the image
    std::uint8_t m_marker = 0;
    std::size_t m_segment = 0;
};

std::optional<PictureSize> size(ByteView bytes)
{
    Markers markers(bytes);
    while (markers.next()) {
        if (isFrame(markers.marker())) {
            const std::size_t at = markers.segment();
            return checkedSize(big16(bytes, at + 5), big16(bytes, at + 3));
        }
        if (markers.marker() == kEnd || markers.marker() == kScan) {
            return std::nullopt;
        }
        if (!standsAlone(markers.marker())) {
            markers.skipSegment();
        }
    }
    return std::nullopt;
}

bool isWhole(ByteView bytes)
{
    Markers markers(bytes);
    bool scanned = false;
    while (markers.next()) {
        if (markers.marker() == kEnd) {
            return scanned;
        }
        scanned = scanned || markers.marker() == kScan;
        if (!standsAlone(markers.marker())) {
            markers.skipSegment();
        }
    }
    return false;
}

} // namespace jpeg

namespace png {

std::optional<PictureSize> size(ByteView bytes)
{
    if (big32(bytes, 12) != 0x49484452) { // IHDR
        return std::nullopt;
    }
    return checkedSize(big32(bytes, 16), big32(bytes, 20));
}

bool isWhole(ByteView bytes)
{
    constexpr std::size_t kFrame = 12; // length, type and checksum
    std::size_t at = kPngSignature.size();
    while (at + kFrame <= bytes.size()) {
        if (big32(bytes, at + 4) == 0x49454E44) { // IEND
            return true;
        }
        const std::size_t length = big32(bytes, at);
        if (length > bytes.size()) {
            return false;
        }
        at += kFrame + length;
    }
    return false;
}

} // namespace png

namespace gif {

constexpr std::size_t kScreenEnd = 13;

std::size_t tableSize(std::uint32_t flags)
{
    return (flags & 0x80) != 0 ? 3U << ((flags & 7) + 1) : 0;
}

// Behind the blocks that start here; none when the file ends before them.
std::optional<std::size_t> skipBlocks(ByteView bytes, std::size_t at)
{
    while (at < bytes.size()) {
        if (bytes[at] == 0) {
            return at + 1;
        }
        at += bytes[at] + std::size_t{1};
    }
    return std::nullopt;
}

// Where the first image's descriptor is.
std::optional<std::size_t> firstImage(ByteView bytes)
{
    std::size_t at = kScreenEnd + tableSize(byteAt(bytes, 10));
    while (byteAt(bytes, at) == 0x21) { // extensions
        const std::optional<std::size_t> next = skipBlocks(bytes, at + 2);
        if (!next) {
            return std::nullopt;
        }
        at = *next;
    }
    return byteAt(bytes, at) == 0x2C ? std::optional(at) : std::nullopt;
}

// Of what the screen and the first image need together.
std::optional<PictureSize> size(ByteView bytes)
{
    std::uint32_t width = little16(bytes, 6);
    std::uint32_t height = little16(bytes, 8);
    if (const std::optional<std::size_t> image = firstImage(bytes)) {
        width = std::max(width, little16(bytes, *image + 1) + little16(bytes, *image + 5));
        height = std::max(height, little16(bytes, *image + 3) + little16(bytes, *image + 7));
    }
    return checkedSize(width, height);
}

bool isWhole(ByteView bytes)
{
    const std::optional<std::size_t> image = firstImage(bytes);
    if (!image) {
        return false;
    }
    const std::size_t data = *image + 10 + tableSize(byteAt(bytes, *image + 9));
    return skipBlocks(bytes, data + 1).has_value();
}

} // namespace gif

namespace bmp {

constexpr std::size_t kFileHeader = 14;
constexpr std::uint32_t kCoreHeader = 12;

// Decoders believe the length that a header gives itself, even one beyond the file's end.
bool isHeaderLength(std::uint32_t length)
{
    constexpr std::uint32_t kLengths[] = {kCoreHeader, 40, 52, 56, 64, 108, 124};
    return std::find(std::begin(kLengths), std::end(kLengths), length) != std::end(kLengths);
}

// From the information header, which icons have too.
std::optional<PictureSize> size(ByteView header)
{
    const std::uint32_t length = little32(header, 0);
    if (!isHeaderLength(length) || length > header.size()) {
        return std::nullopt;
    }
    if (length == kCoreHeader) {
        return checkedSize(little16(header, 4), little16(header, 6));
    }
    const auto height = static_cast<std::int32_t>(little32(header, 8)); // negative: from the top down
    return checkedSize(little32(header, 4), static_cast<std::uint32_t>(std::abs(std::int64_t{height})));
}

std::uint32_t depth(ByteView header)
{
    return little16(header, little32(header, 0) == kCoreHeader ? 10 : 14);
}

// Bytes of the header and of the colours behind it.
std::uint64_t leadLength(ByteView header)
{
    const std::uint32_t length = little32(header, 0);
    if (depth(header) > 8) {
        return length;
    }
    const std::uint64_t all = std::uint64_t{1} << depth(header);
    const std::uint64_t used = length == kCoreHeader ? 0 : little32(header, 32);
    return length + (used == 0 ? all : used) * (length == kCoreHeader ? 3 : 4);
}

bool isWhole(ByteView bytes)
{
    const ByteView header = bytes.subspan(std::min(kFileHeader, bytes.size()));
    if (leadLength(header) > header.size()) {
        return false;
    }
    const std::uint32_t compression = little32(header, 0) == kCoreHeader ? 0 : little32(header, 16);
    const std::optional<PictureSize> dimensions = size(header);
    if (!dimensions || (compression != 0 && compression != 3)) {
        return dimensions.has_value(); // run lengths: the decoder finds out
    }
    const std::uint64_t row = (std::uint64_t{depth(header)} * dimensions->width + 31) / 32 * 4;
    return little32(bytes, 10) + row * dimensions->height <= bytes.size();
}

} // namespace bmp

namespace icon {

constexpr std::size_t kDirectory = 6;
constexpr std::size_t kEntry = 16;

ByteView image(ByteView bytes, std::size_t index)
{
    const std::size_t entry = kDirectory + index * kEntry;
    const std::size_t offset = std::min<std::size_t>(little32(bytes, entry + 12), bytes.size());
    return bytes.subspan(offset, std::min<std::size_t>(little32(bytes, entry + 8), bytes.size() - offset));
}

std::optional<PictureSize> imageSize(ByteView image)
{
    if (startsWith(image, kPngSignature)) {
        return png::size(image);
    }
    std::optional<PictureSize> size = bmp::size(image);
    if (size) {
        size->height /= 2; // the mask is below the picture
    }
    return size;
}

std::optional<PictureSize> size(ByteView bytes)
{
    std::optional<PictureSize> largest;
    const std::size_t count = std::min<std::size_t>(little16(bytes, 4), (bytes.size() - kDirectory) / kEntry);
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<PictureSize> size = imageSize(image(bytes, i));
        if (!size || size->height == 0) {
            return std::nullopt; // a damaged one may be the one that a decoder picks
        }
        largest = PictureSize{std::max(largest.value_or(PictureSize{}).width, size->width),
                              std::max(largest.value_or(PictureSize{}).height, size->height)};
    }
    return largest;
}

bool isWhole(ByteView bytes)
{
    const std::size_t count = little16(bytes, 4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = kDirectory + i * kEntry;
        const std::uint64_t end = std::uint64_t{little32(bytes, entry + 12)} + little32(bytes, entry + 8);
        if (entry + kEntry > bytes.size() || end > bytes.size()) {
            return false;
        }
    }
    return count > 0;
}

} // namespace icon

std::optional<PictureHeader> withKind(PictureKind kind, const std::optional<PictureSize>& size)
{
    return size ? std::optional(PictureHeader{kind, *size}) : std::nullopt;
}

} // namespace

std::optional<PictureHeader> pictureHeader(ByteView bytes)
{
    if (startsWith(bytes, "\xFF\xD8\xFF")) {
        return withKind(PictureKind::Jpeg, jpeg::size(bytes));
    }
    if (startsWith(bytes, kPngSignature)) {
        return withKind(PictureKind::Png, png::size(bytes));
    }
    if (startsWith(bytes, "GIF87a") || startsWith(bytes, "GIF89a")) {
        return withKind(PictureKind::Gif, gif::size(bytes));
    }
    if (startsWith(bytes, "BM") && bytes.size() > bmp::kFileHeader) {
        return withKind(PictureKind::Bmp, bmp::size(bytes.subspan(bmp::kFileHeader)));
    }
    const bool isIcon = little16(bytes, 0) == 0 && (little16(bytes, 2) == 1 || little16(bytes, 2) == 2);
    if (isIcon && bytes.size() > icon::kDirectory) {
        return withKind(PictureKind::Icon, icon::size(bytes));
    }
    return std::nullopt;
}

bool isWholePicture(PictureKind kind, ByteView bytes)
{
    switch (kind) {
    case PictureKind::Jpeg:
        return jpeg::isWhole(bytes);
    case PictureKind::Png:
        return png::isWhole(bytes);
    case PictureKind::Gif:
        return gif::isWhole(bytes);
    case PictureKind::Bmp:
        return bmp::isWhole(bytes);
    case PictureKind::Icon:
        return icon::isWhole(bytes);
    }
    return false;
}

} // namespace tessera
