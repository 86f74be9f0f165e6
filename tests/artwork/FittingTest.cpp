#include "artwork/Fitting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

using namespace tessera;

namespace {

Picture plain(std::int32_t width, std::int32_t height, std::array<std::uint8_t, 4> pixel)
{
    Picture picture{width, height, std::vector<std::uint8_t>(static_cast<std::size_t>(width * height) * 4)};
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        picture.pixels[i] = pixel[i % 4];
    return picture;
}

CoverGround groundOf(std::int32_t width, std::int32_t height)
{
    return {plain(width, height, {1, 2, 3, 255}), {0, 0, width, height}, {1, 2, 3}};
}

std::array<int, 3> at(const std::vector<std::uint8_t>& pixels, std::int32_t width, std::int32_t x,
                      std::int32_t y)
{
    const std::size_t i = static_cast<std::size_t>(y * width + x) * 4;
    return {pixels[i], pixels[i + 1], pixels[i + 2]};
}

using Colour = std::array<int, 3>;
constexpr Colour kGround{1, 2, 3};

} // namespace

TEST(Fitting, PlacesKeepProportionsAndAreCentred)
{
    constexpr PixelRect kCell{0, 0, 100, 100};
    constexpr struct {
        PictureSize picture;
        PixelRect area;
        PixelRect place;
    } kCases[] = {
        {{400, 200}, kCell, {0, 25, 100, 50}}, // wide
        {{50, 100}, kCell, {25, 0, 50, 100}},  // tall, drawn as it is
        {{500, 500}, kCell, {0, 0, 100, 100}},
        {{10, 10}, kCell, {0, 0, 100, 100}},   // scaled up, too
        {{300, 200}, kCell, {0, 17, 100, 66}}, // 66.67 and half of the rest are cut off
        {{200, 300}, kCell, {17, 0, 66, 100}},
        {{500, 493}, {2, 2, 60, 60}, {2, 2, 60, 60}}, // 60.85 wide: cut off, it fits
        {{600, 200}, {0, 0, 200, 80}, {0, 7, 200, 66}},
        {{200, 200}, {0, 0, 200, 80}, {60, 0, 80, 80}},
        {{5000, 1}, kCell, {0, 49, 100, 1}}, // never nothing at all
        {{1, 5000}, kCell, {49, 0, 1, 100}},
        {{40'000'000, 1}, {0, 0, 1, 1}, {0, 0, 1, 1}},
    };
    for (const auto& each : kCases) {
        SCOPED_TRACE(std::to_string(each.picture.width) + " x " + std::to_string(each.picture.height));
        EXPECT_EQ(fitInto(each.picture, each.area), each.place);
    }
}

TEST(Fitting, PlainPicturesStayPlainAtEverySize)
{
    for (const std::int32_t side : {1, 2, 3, 15, 16, 17, 31, 75, 200, 600, 5001}) {
        for (const std::uint8_t value : {std::uint8_t{0}, std::uint8_t{127}, std::uint8_t{255}}) {
            const Picture picture = plain(side, 7, {value, 255, 0, 255});
            const CoverGround ground = groundOf(16, 16);
            const std::vector<std::uint8_t> cover = drawCover(picture, ground);
            const PixelRect place = fitInto({side, 7}, ground.inside);
            for (std::int32_t y = 0; y < 16; ++y) {
                for (std::int32_t x = 0; x < 16; ++x) {
                    const bool inside = x >= place.left && x < place.left + place.width && y >= place.top &&
                                        y < place.top + place.height;
                    ASSERT_EQ(at(cover, 16, x, y), inside ? (Colour{value, 255, 0}) : kGround)
                        << side << ' ' << x << ' ' << y;
                    ASSERT_EQ(cover[static_cast<std::size_t>(y * 16 + x) * 4 + 3], 255);
                }
            }
        }
    }
}

// Each pixel against the exact average of the area that it covers.
TEST(Fitting, ShrinkingIsTheAverageOfTheArea)
{
    constexpr std::int32_t kWidth = 53;
    constexpr std::int32_t kHeight = 47;
    Picture picture = plain(kWidth, kHeight, {0, 0, 0, 255});
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        picture.pixels[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(i * i * 31 + i / 7);
    const CoverGround ground = groundOf(20, 20);
    const PixelRect place = fitInto({kWidth, kHeight}, ground.inside);
    const std::vector<std::uint8_t> cover = drawCover(picture, ground);
    double error = 0; // of all channels together: what is cut off or rounded up each time adds up
    const auto part = [](double begin, double end, int i) {
        return std::max(0.0, std::min(end, i + 1.0) - std::max(begin, static_cast<double>(i)));
    };
    for (std::int32_t y = 0; y < place.height; ++y) {
        for (std::int32_t x = 0; x < place.width; ++x) {
            std::array<double, 3> sums{};
            double weight = 0;
            for (int sy = 0; sy < kHeight; ++sy) {
                for (int sx = 0; sx < kWidth; ++sx) {
                    const double w =
                        part(x * double{kWidth} / place.width, (x + 1) * double{kWidth} / place.width, sx) *
                        part(y * double{kHeight} / place.height, (y + 1) * double{kHeight} / place.height,
                             sy);
                    for (std::size_t channel = 0; channel < 3; ++channel)
                        sums[channel] +=
                            w * picture.pixels[static_cast<std::size_t>(sy * kWidth + sx) * 4 + channel];
                    weight += w;
                }
            }
            const Colour drawn = at(cover, 20, place.left + x, place.top + y);
            for (std::size_t channel = 0; channel < 3; ++channel) {
                ASSERT_NEAR(drawn[channel], sums[channel] / weight, 1.0) << x << ' ' << y << ' ' << channel;
                error += drawn[channel] - sums[channel] / weight;
            }
        }
    }
    EXPECT_NEAR(error / (place.width * place.height * 3), 0, 0.05);
}

TEST(Fitting, TheMiddleOfTwoNeighboursIsRoundedUp)
{
    for (int value = 0; value < 255; ++value) {
        for (const std::int32_t width : {1, 2}) {
            Picture two = plain(width, 3 - width, {static_cast<std::uint8_t>(value), 0, 0, 255});
            ++two.pixels[4];
            EXPECT_EQ(drawCover(two, groundOf(1, 1))[0], value + 1) << width;
        }
    }
}

TEST(Fitting, EnlargingBlendsBetweenNeighbours)
{
    Picture two = plain(2, 1, {0, 0, 0, 255});
    two.pixels[4] = two.pixels[5] = two.pixels[6] = 200;
    const std::vector<std::uint8_t> cover = drawCover(two, groundOf(100, 50));
    EXPECT_EQ(at(cover, 100, 0, 0)[0], 0);
    EXPECT_EQ(at(cover, 100, 99, 49)[0], 200);
    for (std::int32_t x = 0; x < 100; ++x) {
        const double part = std::clamp((x + 0.5) * 2 / 100 - 0.5, 0.0, 1.0); // of the right neighbour
        EXPECT_NEAR(at(cover, 100, x, 10)[0], part * 200, 1.01) << x;
    }

    Picture corners =
        plain(2, 2, {0, 0, 0, 255}); // each of its own colour: nothing may be mirrored or swapped
    constexpr Colour kColours[] = {{250, 0, 20}, {0, 240, 40}, {60, 0, 230}, {220, 210, 0}};
    for (std::size_t i = 0; i < 4; ++i)
        std::ranges::copy(kColours[i], corners.pixels.begin() + static_cast<std::ptrdiff_t>(i * 4));
    const std::vector<std::uint8_t> large = drawCover(corners, groundOf(100, 100));
    for (std::int32_t i = 0; i < 4; ++i)
        EXPECT_EQ(at(large, 100, i % 2 * 99, i / 2 * 99), kColours[i]) << i;
}

TEST(Fitting, WhatShinesThroughTakesTheGround)
{
    Picture picture = plain(256, 1, {0, 255, 100, 255});
    EXPECT_TRUE(isOpaque(picture));
    for (std::size_t alpha = 0; alpha < 256; ++alpha) {
        picture.pixels[alpha * 4 + 3] = static_cast<std::uint8_t>(alpha);
        EXPECT_EQ(isOpaque(picture), false) << alpha;
    }
    flatten(picture, {10, 20, 30});
    const auto mixed = [](int colour, int ground, int alpha) {
        return std::lround((colour * alpha + ground * (255 - alpha)) / 255.0);
    };
    for (int alpha = 0; alpha < 256; ++alpha) {
        EXPECT_EQ(at(picture.pixels, 256, alpha, 0),
                  (Colour{static_cast<int>(mixed(0, 10, alpha)), static_cast<int>(mixed(255, 20, alpha)),
                          static_cast<int>(mixed(100, 30, alpha))}));
    }
    EXPECT_TRUE(isOpaque(picture));
}

TEST(Fitting, NoRoomInsideTheBorderLeavesTheGround)
{
    CoverGround ground = groundOf(3, 3);
    ground.inside = {2, 2, -1, -1};
    EXPECT_EQ(drawCover(plain(9, 9, {255, 255, 255, 255}), ground), ground.image.pixels);
}
