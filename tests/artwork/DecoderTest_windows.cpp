#include "artwork/CoverSource.h"
#include "base/Files.h"
#include "system/Com.h"
#include "system/Module.h"

#include "support/ReplacedImport.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <olectl.h>

extern decltype(&OleLoadPicture) g_loader __asm__("__imp__OleLoadPicture@20");

using namespace tessera;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixel = std::array<int, 4>; // red, green, blue, alpha

constexpr Pixel kRed{0xE0, 0x20, 0x10, 255};
constexpr Pixel kBlue{0x10, 0x30, 0xD0, 255};
constexpr Pixel kHalfBlue{0x10, 0x30, 0xD0, 128};
constexpr Pixel kNothing{-1, -1, -1, 0}; // whatever colour

// Some systems refuse what others take.
HRESULT WINAPI refuse(IStream*, LONG, BOOL, REFIID, void**)
{
    return CTL_E_INVALIDPICTURE;
}

std::string path(const std::string& name)
{
    std::string folder = "Z:" TESSERA_TEST_DATA "\\pictures\\"; // the build machine's root
    for (char& c : folder)
        c = c == '/' ? '\\' : c;
    return folder + name;
}

// Runs the decoder as its callers do: on a thread with COM.
class Decoder : public testing::Test {
protected:
    static Bytes bytes(const std::string& name) { return systemFiles().readAll(path(name)).value(); }

    ComInit com;
};

Pixel pixelAt(const Picture& picture, int x, int y)
{
    const std::uint8_t* at = &picture.pixels[static_cast<std::size_t>((y * picture.width + x) * 4)];
    return {at[2], at[1], at[0], at[3]};
}

void expectPixel(const Pixel& seen, const Pixel& wanted, int tolerance)
{
    for (int i = 0; i < 4; ++i) {
        if (wanted[i] >= 0) {
            EXPECT_NEAR(seen[i], wanted[i], i == 3 ? 1 : tolerance) << "channel " << i;
        }
    }
}

struct Sample {
    const char* name;
    Pixel left;
    Pixel right;
    int tolerance = 0;
    int width = 40;
    int height = 24;
};

constexpr Pixel kGreyLeft{90, 90, 90, 255};
constexpr Pixel kGreyRight{55, 55, 55, 255};

constexpr Sample kSamples[] = {
    {"baseline.jpg", kRed, kBlue, 4},
    {"progressive.jpg", kRed, kBlue, 4},
    {"cmyk.jpg", kRed, kBlue, 12},
    {"grey.jpg", kGreyLeft, kGreyRight, 40},
    {"rgb.png", kRed, kBlue},
    {"interlaced.png", kRed, kBlue},
    {"palette.png", kRed, kBlue},
    {"deep.png", kRed, kBlue, 1},
    {"grey.png", kGreyLeft, kGreyRight, 40},
    {"alpha.png", kRed, kHalfBlue},
    {"plain.gif", kRed, kBlue},
    {"transparent.gif", kRed, kNothing},
    {"rgb.bmp", kRed, kBlue},
    {"core.bmp", kRed, kBlue},
    {"palette.bmp", kRed, kBlue},
    {"transparent.ico", kRed, kNothing, 0, 32, 32},
};

void expectSamples()
{
    for (const Sample& sample : kSamples) {
        SCOPED_TRACE(sample.name);
        const std::optional<Picture> picture = readCoverFile(path(sample.name));
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->width, sample.width);
        ASSERT_EQ(picture->height, sample.height);
        ASSERT_EQ(picture->pixels.size(), static_cast<std::size_t>(sample.width * sample.height * 4));
        for (const int y : {1, sample.height - 2}) {
            expectPixel(pixelAt(*picture, 2, y), sample.left, sample.tolerance);
            expectPixel(pixelAt(*picture, sample.width - 3, y), sample.right, sample.tolerance);
        }
    }
}

// An image of one colour, as icons have it: its mask, which hides nothing, is below it.
Bytes iconImage(std::uint8_t side, const Pixel& pixel)
{
    Bytes image{40, 0, 0, 0, side, 0, 0, 0, static_cast<std::uint8_t>(side * 2), 0, 0, 0, 1, 0, 32, 0};
    image.resize(40);
    for (int i = 0; i < side * side; ++i)
        for (const int channel : {2, 1, 0, 3})
            image.push_back(static_cast<std::uint8_t>(pixel[channel]));
    image.resize(image.size() + side * 4u);
    return image;
}

Bytes iconOf(const std::vector<Bytes>& images)
{
    Bytes icon{0, 0, 1, 0, static_cast<std::uint8_t>(images.size()), 0};
    const auto put32 = [&icon](std::size_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            icon.push_back(static_cast<std::uint8_t>(value >> shift));
    };
    std::size_t offset = 6 + 16 * images.size();
    for (const Bytes& image : images) {
        icon.insert(icon.end(), {image[4], image[4], 0, 0, 1, 0, 32, 0});
        put32(image.size());
        put32(offset);
        offset += image.size();
    }
    for (const Bytes& image : images)
        icon.insert(icon.end(), image.begin(), image.end());
    return icon;
}

} // namespace

TEST_F(Decoder, EveryKindGivesItsPixels)
{
    expectSamples();
}

TEST_F(Decoder, WhatTheLoaderRefusesTheImagingComponentTakes)
{
    const test::ReplacedImport refusing(g_loader, &refuse);
    expectSamples();
}

TEST_F(Decoder, AnIconIsItsLargestImage)
{
    const Bytes small = iconImage(16, kRed);
    const Bytes large = iconImage(48, kBlue);
    for (const Bytes& icon : {iconOf({small, large}), iconOf({large, small})}) {
        const std::optional<Picture> picture = decodePicture(icon);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->width, 48);
        expectPixel(pixelAt(*picture, 24, 24), kBlue, 0);
        for (std::size_t cut = 1; cut < 100; cut += 7)
            EXPECT_FALSE(decodePicture({icon.data(), icon.size() - cut})) << cut;
    }
}

TEST_F(Decoder, RowsRunFromTheTopDown)
{
    Bytes bmp = bytes("rgb.bmp");
    std::fill_n(bmp.end() - 120, 120, std::uint8_t{0xFF}); // the last row of the file is the top one
    const std::optional<Picture> picture = decodePicture(bmp);
    ASSERT_TRUE(picture);
    expectPixel(pixelAt(*picture, 2, 0), {255, 255, 255, 255}, 0);
    expectPixel(pixelAt(*picture, 2, 23), kRed, 0);

    const std::int32_t topDown = -24;
    std::copy_n(reinterpret_cast<const std::uint8_t*>(&topDown), 4, bmp.begin() + 22);
    const std::optional<Picture> turned = decodePicture(bmp);
    ASSERT_TRUE(turned);
    expectPixel(pixelAt(*turned, 2, 0), kRed, 0);
    expectPixel(pixelAt(*turned, 2, 23), {255, 255, 255, 255}, 0);
}

TEST_F(Decoder, WhatIsCutOffIsNoPicture)
{
    for (const Sample& sample : kSamples) {
        SCOPED_TRACE(sample.name);
        const Bytes whole = bytes(sample.name);
        for (const std::size_t length : {std::size_t{0}, std::size_t{4}, std::size_t{30}, whole.size() / 2,
                                         whole.size() * 9 / 10, whole.size() - 2}) {
            EXPECT_FALSE(decodePicture({whole.data(), length})) << length;
        }
    }
}

TEST_F(Decoder, ChangedBytesNeverDoHarm)
{
    for (const char* name : {"baseline.jpg", "rgb.png", "transparent.gif", "palette.bmp"}) {
        const Bytes whole = bytes(name);
        for (std::size_t i = 0; i < whole.size(); i += 3) {
            Bytes changed = whole;
            changed[i] ^= 0xFF;
            const std::optional<Picture> picture = decodePicture(changed);
            if (picture) {
                ASSERT_EQ(picture->pixels.size(), static_cast<std::size_t>(picture->width) *
                                                      static_cast<std::size_t>(picture->height) * 4);
            }
        }
    }
}

TEST_F(Decoder, DamagedPixelsAreNoPicture)
{
    Bytes png = bytes("deep.png");
    for (std::size_t i = png.size() / 2; i < png.size() - 20; ++i)
        png[i] = 0xA5;
    EXPECT_FALSE(decodePicture(png));
}

TEST_F(Decoder, HugePicturesNeverReachADecoder)
{
    Bytes png = bytes("rgb.png");
    Bytes jpeg = bytes("baseline.jpg");
    constexpr std::uint8_t kFrame[] = {0xFF, 0xC0};
    const auto frame = std::search(jpeg.begin(), jpeg.end(), std::begin(kFrame), std::end(kFrame));
    ASSERT_NE(frame, jpeg.end());
    Bytes bmp = bytes("rgb.bmp");
    for (const int side : {6500, 30000}) {
        const auto high = static_cast<std::uint8_t>(side >> 8);
        const auto low = static_cast<std::uint8_t>(side);
        png[18] = png[22] = high;
        png[19] = png[23] = low;
        frame[5] = frame[7] = high;
        frame[6] = frame[8] = low;
        bmp[19] = bmp[23] = high;
        bmp[18] = bmp[22] = low;
        const DWORD start = GetTickCount();
        for (const Bytes& picture : {png, jpeg, bmp}) {
            ASSERT_EQ(pictureHeader(picture)->size.width, side);
            EXPECT_FALSE(decodePicture(picture));
        }
        EXPECT_LT(GetTickCount() - start, 1000u); // a decoder would need many seconds
    }
}

TEST_F(Decoder, FilesThatAreNone)
{
    const TemporaryFolder folder("decoder");
    EXPECT_FALSE(readCoverFile(folder.path())); // a folder
    EXPECT_FALSE(readCoverFile(folder.file("missing.jpg")));
    EXPECT_FALSE(readCoverFile(""));
    systemFiles().create(folder.file("empty.jpg"))->flush();
    EXPECT_FALSE(readCoverFile(folder.file("empty.jpg")));
    systemFiles().create(folder.file("text.jpg"))->write(Bytes(500, 'x'));
    EXPECT_FALSE(readCoverFile(folder.file("text.jpg")));
}

// Few pixels, but one side absurd; and a picture with much behind it.
TEST_F(Decoder, LimitsHoldForSidesAndBytes)
{
    Bytes png = bytes("rgb.png");
    png[17] = 1; // 65,576 pixels wide
    EXPECT_EQ(pictureHeader(png)->size.width, 65576);
    EXPECT_FALSE(decodePicture(png));
    Bytes large = bytes("rgb.png");
    large.resize(static_cast<std::size_t>(kMostPictureBytes));
    EXPECT_TRUE(decodePicture(large));
    large.push_back(0);
    EXPECT_FALSE(decodePicture(large));
}
