#include "artwork/CoverGrounds.h"

#include "windowing/Drawing.h"

#include <new>

namespace tessera {
namespace {

PixelColour pixelColour(COLORREF colour)
{
    return {GetBValue(colour), GetGValue(colour), GetRValue(colour)};
}

// The lists but the balloon's share a colour, so that a picture is rarely flattened twice.
const Picture& flattened(const Picture& picture, PixelColour colour, Picture& copy,
                         std::optional<PixelColour>& copyColour)
{
    if (copyColour != colour) {
        copy = picture;
        flatten(copy, colour);
        copyColour = colour;
    }
    return copy;
}

} // namespace

CoverGround makeGround(SIZE size, bool border, COLORREF colour)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = -size.cy;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const MemoryDc memory;
    const BitmapHandle bitmap(CreateDIBSection(memory.dc(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap || !memory.dc()) {
        throw std::bad_alloc();
    }
    RECT inside{0, 0, size.cx, size.cy};
    {
        const SelectScope selected(memory.dc(), bitmap.get());
        fillRect(memory.dc(), inside, colour);
        if (border) {
            DrawEdge(memory.dc(), &inside, EDGE_BUMP, BF_RECT | BF_ADJUST);
        }
        GdiFlush();
    }
    CoverGround ground;
    const auto* const start = static_cast<const std::uint8_t*>(bits);
    const auto bytes = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) * 4;
    ground.image = {size.cx, size.cy, {start, start + bytes}};
    for (std::size_t i = 3; i < bytes; i += 4) {
        ground.image.pixels[i] = 255;
    }
    ground.inside = {inside.left, inside.top, inside.right - inside.left, inside.bottom - inside.top};
    ground.colour = pixelColour(colour);
    return ground;
}

FittedCover fitCover(const Picture& picture, const CoverGrounds& grounds)
{
    const bool opaque = isOpaque(picture);
    Picture copy;
    std::optional<PixelColour> copyColour;
    FittedCover cover;
    for (std::size_t i = 0; i < grounds.size(); ++i) {
        if (const std::optional<CoverGround>& ground = grounds[i]) {
            cover[i] =
                drawCover(opaque ? picture : flattened(picture, ground->colour, copy, copyColour), *ground);
        }
    }
    return cover;
}

} // namespace tessera
