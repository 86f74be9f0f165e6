#include "artwork/ImageHeader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <ostream>

using namespace tessera;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes pictureBytes(const std::string& name)
{
    std::ifstream file(std::string(TESSERA_TEST_DATA) + "/pictures/" + name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

struct Sample {
    const char* name;
    PictureKind kind;
    int width;
    int height;
    // Of how many bytes fewer the picture is no longer whole.
    std::size_t tail;
};

constexpr Sample kSamples[] = {
    {"baseline.jpg", PictureKind::Jpeg, 40, 24, 1},    {"progressive.jpg", PictureKind::Jpeg, 40, 24, 1},
    {"grey.jpg", PictureKind::Jpeg, 40, 24, 1},        {"cmyk.jpg", PictureKind::Jpeg, 40, 24, 1},
    {"rgb.png", PictureKind::Png, 40, 24, 1},          {"interlaced.png", PictureKind::Png, 40, 24, 1},
    {"palette.png", PictureKind::Png, 40, 24, 1},      {"deep.png", PictureKind::Png, 40, 24, 1},
    {"alpha.png", PictureKind::Png, 40, 24, 1},        {"plain.gif", PictureKind::Gif, 40, 24, 2},
    {"transparent.gif", PictureKind::Gif, 40, 24, 2},  {"rgb.bmp", PictureKind::Bmp, 40, 24, 1},
    {"core.bmp", PictureKind::Bmp, 40, 24, 1},         {"palette.bmp", PictureKind::Bmp, 40, 24, 1},
    {"transparent.ico", PictureKind::Icon, 32, 32, 1},
};

void putBig16(Bytes& bytes, std::size_t at, unsigned value)
{
    bytes[at] = static_cast<std::uint8_t>(value >> 8);
    bytes[at + 1] = static_cast<std::uint8_t>(value);
}

// Puts a picture together; numbers are little-endian.
struct Maker {
    Bytes bytes;

    Maker& add(std::uint64_t value, int count)
    {
        for (int i = 0; i < count; ++i)
            bytes.push_back(static_cast<std::uint8_t>(i < 8 ? value >> 8 * i : 0));
        return *this;
    }
    Maker& add(const Bytes& more)
    {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    Maker& fill(std::size_t count)
    {
        bytes.resize(bytes.size() + count, 0xAA);
        return *this;
    }
};

// The information header of a bitmap without the first field, and with zeros up to its length.
Bytes bitmapHeader(std::uint32_t length, std::int64_t width, std::int64_t height, unsigned depth,
                   unsigned compression = 0, unsigned used = 0)
{
    Maker header;
    header.add(length, 4);
    if (length == 12)
        header.add(width, 2).add(height, 2).add(1, 2).add(depth, 2);
    else
        header.add(width, 4)
            .add(height, 4)
            .add(1, 2)
            .add(depth, 2)
            .add(compression, 4)
            .add(0, 12)
            .add(used, 4);
    header.bytes.resize(length);
    return header.bytes;
}

Bytes bitmap(const Bytes& header, std::size_t palette, std::size_t pixels)
{
    Maker file;
    file.add('B' | 'M' << 8, 2).add(0, 8).add(14 + header.size() + palette, 4);
    return file.add(header).fill(palette + pixels).bytes;
}

// "40x24", or "none".
std::string sizeOf(const Bytes& bytes)
{
    const std::optional<PictureHeader> header = pictureHeader(bytes);
    return header ? std::to_string(header->size.width) + "x" + std::to_string(header->size.height) : "none";
}

bool isWholeOnlyAsItIs(PictureKind kind, const Bytes& bytes)
{
    return isWholePicture(kind, bytes) && !isWholePicture(kind, Bytes(bytes.begin(), bytes.end() - 1));
}

} // namespace

TEST(ImageHeader, EveryKindTellsItsSizeAndWhereItEnds)
{
    for (const Sample& sample : kSamples) {
        SCOPED_TRACE(sample.name);
        const Bytes bytes = pictureBytes(sample.name);
        const std::optional<PictureHeader> header = pictureHeader(bytes);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->kind, sample.kind);
        EXPECT_EQ(header->size.width, sample.width);
        EXPECT_EQ(header->size.height, sample.height);
        EXPECT_TRUE(isWholePicture(header->kind, bytes));
        for (std::size_t length = 0; length + sample.tail <= bytes.size(); ++length) {
            // A copy of its own, so that a read behind the end is seen.
            const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
            (void)pictureHeader(cut);
            ASSERT_FALSE(isWholePicture(header->kind, cut)) << length;
        }
    }
}

TEST(ImageHeader, EveryChangedByteIsRead)
{
    for (const Sample& sample : kSamples) {
        const Bytes bytes = pictureBytes(sample.name);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            for (const std::uint8_t value : {0x00, 0x7F, 0x80, 0xFF}) {
                Bytes changed = bytes;
                changed[i] = value;
                if (const std::optional<PictureHeader> header = pictureHeader(changed)) {
                    ASSERT_GT(header->size.width, 0);
                    ASSERT_GT(header->size.height, 0);
                    (void)isWholePicture(header->kind, changed);
                }
            }
        }
    }
}

TEST(ImageHeader, WhatIsNoPictureHasNoHeader)
{
    for (const std::string_view text :
         {std::string_view(), std::string_view("text"), std::string_view("GIF88a\1\0\1\0"),
          std::string_view("BM"), std::string_view("\xFF\xD8\xFF\xD9"),
          std::string_view("\xFF\xD8\xFF\xFF\xFF\xFF"), std::string_view("\0\0\1\0\0\0", 6),
          std::string_view("\0\0\1\0\xFF\xFF\0\0", 8), std::string_view("\x89PNG\r\n\x1a\n\0\0\0\rIEND", 16),
          std::string_view("RIFF\0\0\0\0WEBPVP8 ", 16)}) {
        EXPECT_FALSE(pictureHeader(Bytes(text.begin(), text.end()))) << text;
    }
}

TEST(ImageHeader, AChunkWhoseLengthLeadsBackToItselfEnds)
{
    Bytes png = pictureBytes("rgb.png");
    constexpr std::uint8_t kBack[] = {0xFF, 0xFF, 0xFF, 0xF4}; // with its frame of 12 bytes: 0 in 32 bits
    std::ranges::copy(kBack, png.begin() + 33);                // the chunk behind the header
    EXPECT_FALSE(isWholePicture(PictureKind::Png, png));
}

TEST(ImageHeader, OfTwoImagesOfAnIconTheLargerCountsAndBothMustBeThere)
{
    const Bytes one = pictureBytes("transparent.ico");
    constexpr std::ptrdiff_t kDirectory = 6;
    constexpr std::ptrdiff_t kEntry = 16;
    Bytes two(one.begin(), one.begin() + kDirectory + kEntry);
    two[4] = 2;
    two.insert(two.end(), one.begin() + kDirectory, one.end());
    const auto second = static_cast<std::uint32_t>(two.size());
    two.insert(two.end(), one.begin() + kDirectory + kEntry, one.end());
    const auto place = [&](std::ptrdiff_t entry, std::uint32_t offset) {
        std::copy_n(reinterpret_cast<const std::uint8_t*>(&offset), 4,
                    two.begin() + kDirectory + entry * kEntry + 12);
    };
    place(0, kDirectory + 2 * kEntry);
    place(1, second);
    two[second + 4] = 48; // its header: width, and both heights together
    two[second + 8] = 96;
    const std::optional<PictureHeader> header = pictureHeader(two);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->size.width, 48);
    EXPECT_EQ(header->size.height, 48);
    EXPECT_TRUE(isWholePicture(PictureKind::Icon, two));
    two.pop_back();
    EXPECT_FALSE(isWholePicture(PictureKind::Icon, two));
}

// A frame in front, one inside a segment, and one behind it: which one counts tells how a marker is taken.
TEST(ImageHeader, OfTheMarkersOfAJpegThoseOfFramesHoldTheSize)
{
    for (unsigned code = 1; code < 0xFF; ++code) {
        const bool isFrame = code >= 0xC0 && code <= 0xCF && code % 4 != 0;
        const bool standsAlone = code == 1 || (code >= 0xD0 && code <= 0xD8);
        const bool ends = code == 0xD9 || code == 0xDA;
        const Bytes file{0xFF, 0xD8, 0xFF, 0xFF, static_cast<std::uint8_t>(code), // with a byte that fills
                         0,    18,   8,    0,    3,
                         0,    5,    1, // 5 x 3
                         0xFF, 0xC2, 0,    8,    8,
                         0,    7,    0,    9,    1, // 9 x 7
                         0xFF, 0xC0, 0,    8,    8,
                         0,    24,   0,    40,   1}; // 40 x 24
        EXPECT_EQ(sizeOf(file), isFrame || code == 0xC0 ? "5x3"
                                : standsAlone           ? "9x7"
                                : ends                  ? "none"
                                                        : "40x24")
            << code;
    }
}

TEST(ImageHeader, BitmapsOfEveryHeaderAndDepth)
{
    for (std::uint32_t length = 12; length < 130; ++length) {
        const bool isLength = length == 12 || length == 40 || length == 52 || length == 56 || length == 64 ||
                              length == 108 || length == 124;
        EXPECT_EQ(sizeOf(bitmap(bitmapHeader(length, 3, 2, 24), 0, 24)), isLength ? "3x2" : "none") << length;
    }
    for (const unsigned depth : {1U, 4U, 8U, 16U, 24U, 32U}) {
        SCOPED_TRACE(depth);
        const std::size_t colours = depth > 8 ? 0 : std::size_t{1} << depth;
        for (const std::int32_t width : {1, 7, 8, 9, 31, 33}) {
            const std::size_t pixels = (depth * width + 31) / 32 * 4 * 5;
            for (const std::int32_t height : {5, -5})
                EXPECT_TRUE(isWholeOnlyAsItIs(
                    PictureKind::Bmp, bitmap(bitmapHeader(40, width, height, depth), colours * 4, pixels)));
            EXPECT_TRUE(isWholeOnlyAsItIs(PictureKind::Bmp,
                                          bitmap(bitmapHeader(12, width, 5, depth), colours * 3, pixels)));
        }
        // Of run lengths only the decoder knows how long they are; of masks it is known.
        for (const unsigned compression : {1U, 2U, 4U, 5U})
            EXPECT_TRUE(isWholePicture(PictureKind::Bmp,
                                       bitmap(bitmapHeader(40, 8, 5, depth, compression), colours * 4, 0)));
        EXPECT_FALSE(
            isWholePicture(PictureKind::Bmp, bitmap(bitmapHeader(40, 8, 5, depth, 3), colours * 4, 0)));
        if (colours != 0) {
            EXPECT_TRUE(isWholeOnlyAsItIs(PictureKind::Bmp,
                                          bitmap(bitmapHeader(40, 8, 5, depth, 1), colours * 4, 0)));
            EXPECT_TRUE(isWholeOnlyAsItIs(
                PictureKind::Bmp, bitmap(bitmapHeader(40, 8, 5, depth, 1, 2), std::size_t{2} * 4, 0)));
        }
    }
    EXPECT_FALSE(isWholePicture(PictureKind::Bmp, bitmap(bitmapHeader(40, 0, 5, 24, 1), 0, 0)));
}

TEST(ImageHeader, GifsWithTablesAndExtensions)
{
    for (unsigned bits = 0; bits < 8; ++bits) {
        const std::size_t table = (std::size_t{2} << bits) * 3;
        Maker gif;
        gif.add({'G', 'I', 'F', '8', '7', 'a'})
            .add(2, 2)
            .add(12, 2)
            .add(0x80 | bits, 1)
            .add(0, 2)
            .fill(table);
        gif.add({0x21, 0xFE, 3, 0x2C, 0, 0, 1, 0x2C, 0, 0x21, 0xF9, 0}); // nothing in these is an image
        gif.add(0x2C, 1).add(0x104, 2).add(3, 2).add(5, 2).add(0x207, 2);
        const Bytes screen = gif.bytes;
        gif.add(0x80 | (7 - bits), 1).fill((std::size_t{2} << (7 - bits)) * 3).add({8, 2, 0, 0, 1, 9, 0});
        EXPECT_EQ(sizeOf(gif.bytes), "265x522") << bits; // what the image needs
        EXPECT_TRUE(isWholeOnlyAsItIs(PictureKind::Gif, gif.bytes)) << bits;
        Maker plain{screen};
        plain.add(0x7F, 1).add({8, 0}); // no table of its own
        EXPECT_TRUE(isWholeOnlyAsItIs(PictureKind::Gif, plain.bytes));
        plain.bytes[7] = plain.bytes[9] = 3;
        EXPECT_EQ(sizeOf(plain.bytes), "770x780"); // what the screen says
        Maker bare;
        bare.add({'G', 'I', 'F', '8', '9', 'a'}).add(2, 2).add(12, 2).add(bits, 1).add(0, 2);
        EXPECT_EQ(sizeOf(bare.bytes), "2x12"); // no image yet
        bare.add(0x2C, 1).add(0, 4).add(1, 2).add(13, 2).add(0, 1).add({8, 0});
        EXPECT_EQ(sizeOf(bare.bytes), "2x13"); // no table for all
        EXPECT_TRUE(isWholeOnlyAsItIs(PictureKind::Gif, bare.bytes));
    }
}

TEST(ImageHeader, IconsAndCursorsHoldBitmapsOrPngs)
{
    const auto icon = [](unsigned type, const Bytes& image, std::size_t length) {
        Maker file;
        file.add(0, 2).add(type, 2).add(1, 2).add(0, 8).add(length, 4).add(22, 4);
        return file.add(image).bytes;
    };
    const Bytes bitmap = bitmapHeader(40, 7, 10, 32);
    EXPECT_EQ(sizeOf(icon(1, bitmap, 40)), "7x5");
    EXPECT_EQ(sizeOf(icon(2, bitmap, 40)), "7x5");
    EXPECT_EQ(sizeOf(icon(3, bitmap, 40)), "none");
    EXPECT_EQ(sizeOf(icon(0, bitmap, 40)), "none");
    EXPECT_EQ(sizeOf(icon(1, bitmap, 39)), "none"); // less than its header
    EXPECT_EQ(sizeOf(icon(1, bitmapHeader(40, 7, 1, 32), 40)), "none");
    EXPECT_TRUE(isWholeOnlyAsItIs(PictureKind::Icon, icon(1, bitmap, 40)));
    EXPECT_FALSE(isWholePicture(PictureKind::Icon, icon(1, bitmap, 41)));
    const Bytes png = pictureBytes("rgb.png");
    EXPECT_EQ(sizeOf(icon(1, png, png.size())), "40x24");
    Bytes none = icon(1, bitmap, 40);
    none[4] = 0;
    EXPECT_EQ(sizeOf(none), "none");
    EXPECT_FALSE(isWholePicture(PictureKind::Icon, none));
}

TEST(ImageHeader, SizesAreReadAsTheyAreWritten)
{
    Bytes png = pictureBytes("rgb.png");
    png[16] = 0x7F;
    EXPECT_EQ(pictureHeader(png)->size.width, 0x7F000028);
    png[16] = 0x80; // more than the format allows
    EXPECT_FALSE(pictureHeader(png));
    png[16] = 0;
    png[20] = 0x80;
    EXPECT_FALSE(pictureHeader(png));
    const Bytes most{0x7F, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0xFF, 0xFF};
    std::ranges::copy(most, png.begin() + 16);
    EXPECT_EQ(sizeOf(png), "2147483647x2147483647");
    std::fill_n(png.begin() + 16, 4, std::uint8_t{0});
    EXPECT_FALSE(pictureHeader(png));

    Bytes bmp = pictureBytes("rgb.bmp");
    const std::int32_t upsideDown = -24;
    std::copy_n(reinterpret_cast<const std::uint8_t*>(&upsideDown), 4, bmp.begin() + 22);
    EXPECT_EQ(pictureHeader(bmp)->size.height, 24);
    std::fill_n(bmp.begin() + 22, 4, std::uint8_t{0});
    EXPECT_FALSE(pictureHeader(bmp)); // no height
    bmp[25] = 0x80;
    EXPECT_FALSE(pictureHeader(bmp)); // a height that has no positive counterpart

    // A thumbnail inside the first segment is not the picture, nor is its end the picture's end.
    const Bytes jpeg = pictureBytes("baseline.jpg");
    Bytes framed{0xFF, 0xD8, 0xFF, 0xE1, 0, 0};
    putBig16(framed, 4, static_cast<unsigned>(jpeg.size() + 2));
    framed.insert(framed.end(), jpeg.begin(), jpeg.end());
    EXPECT_FALSE(pictureHeader(framed));
    EXPECT_FALSE(isWholePicture(PictureKind::Jpeg, framed));
    framed.insert(framed.end(), jpeg.begin() + 2, jpeg.end());
    EXPECT_EQ(pictureHeader(framed)->size.width, 40);
    EXPECT_TRUE(isWholePicture(PictureKind::Jpeg, framed));

    // The first image of an animation may be larger than its screen says.
    Bytes gif = pictureBytes("plain.gif");
    gif[6] = 1;
    EXPECT_EQ(pictureHeader(gif)->size.width, 40);

    // An entry of an icon says little; the images inside decide.
    Bytes icon = pictureBytes("transparent.ico");
    icon[6] = 1;
    EXPECT_EQ(pictureHeader(icon)->size.width, 32);
}
