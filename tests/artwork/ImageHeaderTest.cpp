#include "artwork/ImageHeader.h"

#include <gtest/gtest.h>

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

TEST(ImageHeader, SizesAreReadAsTheyAreWritten)
{
    Bytes png = pictureBytes("rgb.png");
    png[16] = 0x7F;
    EXPECT_EQ(pictureHeader(png)->size.width, 0x7F000028);
    png[16] = 0x80; // more than the format allows
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
