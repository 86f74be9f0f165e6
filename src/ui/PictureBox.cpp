#include "ui/PictureBox.h"

#include "artwork/CoverGrounds.h"
#include "artwork/DefaultCover.h"
#include "base/FlagScope.h"
#include "ui/Commands.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <array>
#include <utility>

namespace tessera {

namespace {

constexpr int kMargin = 4; // at 96 dpi

// No part of the program shows more of a picture than the screen has room for.
Picture reduced(Picture picture)
{
    const PixelRect screen{0, 0, std::max(GetSystemMetrics(SM_CXVIRTUALSCREEN), 1),
                           std::max(GetSystemMetrics(SM_CYVIRTUALSCREEN), 1)};
    if (picture.width <= screen.width && picture.height <= screen.height)
        return picture;
    const PixelRect place = fitInto({picture.width, picture.height}, screen);
    CoverGround ground = makeGround({place.width, place.height}, false, RGB(0, 0, 0));
    return {place.width, place.height, drawCover(picture, ground)};
}

PixelColour pixelColour(COLORREF colour)
{
    return {GetBValue(colour), GetGValue(colour), GetRValue(colour)};
}

void putPixels(HDC dc, const Picture& picture)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = -picture.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    SetDIBitsToDevice(dc, 0, 0, static_cast<DWORD>(picture.width), static_cast<DWORD>(picture.height), 0, 0,
                      0, static_cast<UINT>(picture.height), picture.pixels.data(), &info, DIB_RGB_COLORS);
}

} // namespace

std::span<const MapEntry<PictureBox>> PictureBox::messageMap()
{
    static constexpr std::array<MapEntry<PictureBox>, 3> kMap{{
        {WM_PAINT, &PictureBox::onPaint},
        {WM_SIZE, &PictureBox::onSize},
        {WM_ERASEBKGND, &PictureBox::onErase},
    }};
    return kMap;
}

bool PictureBox::createBox(HWND parent, UINT id)
{
    return create(parent, id, {}, {WS_CHILD | WS_CLIPSIBLINGS, 0});
}

void PictureBox::setSource(Source source)
{
    m_source = std::move(source);
    settingsChanged();
}

void PictureBox::settingsChanged()
{
    ++m_generation;
    m_loaded = false;
    m_picture.reset();
    m_fitted = {};
    InvalidateRect(handle(), nullptr, FALSE);
}

void PictureBox::move(const RECT& place) const
{
    Control(handle()).move(place);
}

void PictureBox::show(bool visible) const
{
    Control(handle()).show(visible);
}

void PictureBox::tick()
{
    if (IsWindowVisible(handle()) && std::exchange(m_missed, false))
        InvalidateRect(handle(), nullptr, FALSE);
}

// The source may let messages through, and one of them another source in; or it throws.
void PictureBox::load()
{
    if (m_loaded || m_loading || !m_source)
        return;
    const Source source = m_source;
    const unsigned generation = m_generation;
    std::optional<Picture> picture;
    m_missed = true;
    {
        const FlagScope loading(m_loading);
        if (!source(picture) || generation != m_generation)
            return;
    }
    take(picture ? std::move(picture) : defaultCover(m_commands.artwork().defaultImage));
    m_missed = false;
}

void PictureBox::take(std::optional<Picture> picture)
{
    if (picture) {
        if (!isOpaque(*picture))
            flatten(*picture, pixelColour(m_commands.treeBackground()));
        m_picture = reduced(std::move(*picture));
    }
    m_loaded = true;
}

bool PictureBox::isFitted(const RECT& area) const
{
    return m_fitted.width == area.right && m_fitted.height == area.bottom;
}

void PictureBox::drawPicture(HDC dc, const RECT& area)
{
    if (!isFitted(area)) {
        CoverGround ground = makeGround({area.right, area.bottom}, false, m_commands.treeBackground());
        const int margin = scaled(kMargin, dc);
        ground.inside = {margin, margin, area.right - 2 * margin, area.bottom - 2 * margin};
        m_fitted = {area.right, area.bottom, drawCover(*m_picture, ground)};
    }
    putPixels(dc, m_fitted);
}

// The picture is read before painting begins: a message that comes meanwhile may paint, too.
Handled PictureBox::onPaint(const Message&)
{
    load();
    if (!handle())
        return 0;
    const PaintScope paint(handle());
    const RECT area = clientRect();
    if (m_picture && area.right > 0 && area.bottom > 0)
        drawPicture(paint.dc(), area);
    else
        fillRect(paint.dc(), area, m_commands.treeBackground());
    return 0;
}

Handled PictureBox::onSize(const Message&)
{
    InvalidateRect(handle(), nullptr, FALSE);
    return kDefault;
}

} // namespace tessera
