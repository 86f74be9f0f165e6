#include "artwork/CoverLists.h"

#include "windowing/Drawing.h"

#include <algorithm>
#include <cstring>

namespace tessera {
namespace {

// The system answers success for lists that it found no memory for: only a look at their bitmaps
// tells.
bool holdsImages(HIMAGELIST list, int slots)
{
    IMAGEINFO info{};
    BITMAP bitmap{};
    return list && ImageList_GetImageCount(list) == slots && ImageList_GetImageInfo(list, slots - 1, &info) &&
           info.hbmImage && GetObjectA(info.hbmImage, sizeof bitmap, &bitmap) != 0 &&
           bitmap.bmHeight >= info.rcImage.bottom;
}

BITMAPINFO topDown(const Picture& image)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = image.width;
    info.bmiHeader.biHeight = -image.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

} // namespace

std::int64_t CoverLists::bytesPerSlot(const CoverGrounds& grounds)
{
    std::int64_t bytes = 0;
    for (const std::optional<CoverGround>& ground : grounds) {
        if (ground) {
            const std::int64_t maskRow = (ground->image.width + 31) / 32 * 4;
            bytes += (std::int64_t{ground->image.width} * 4 + maskRow) * ground->image.height;
        }
    }
    return bytes;
}

bool CoverLists::create(const CoverGrounds& grounds, int slots)
{
    destroy();
    const std::int64_t most = kBudget / std::max<std::int64_t>(bytesPerSlot(grounds), 1);
    int wanted = static_cast<int>(std::clamp<std::int64_t>(slots, 1, std::max<std::int64_t>(most, 1)));
    for (; wanted > 0; wanted /= 2) {
        if (tryCreate(grounds, wanted)) {
            return true;
        }
        destroy();
    }
    return false;
}

bool CoverLists::tryCreate(const CoverGrounds& grounds, int slots)
{
    FittedCover plain;
    for (std::size_t i = 0; i < grounds.size(); ++i) {
        if (grounds[i] && !createOne(m_lists[i], *grounds[i], slots)) {
            return false;
        }
        if (grounds[i]) {
            plain[i] = grounds[i]->image.pixels;
        }
    }
    m_slots = slots;
    return put(0, plain);
}

bool CoverLists::createOne(List& list, const CoverGround& ground, int slots) const
{
    list.image = ImageList::create(ground.image.width, ground.image.height, slots);
    if (!list.image || !ImageList_SetImageCount(list.image.get(), static_cast<UINT>(slots)) ||
        !holdsImages(list.image.get(), slots)) {
        return false;
    }
    ImageList_SetBkColor(list.image.get(), RGB(ground.colour.red, ground.colour.green, ground.colour.blue));
    const MemoryDc memory;
    const BITMAPINFO info = topDown(ground.image);
    list.bitmap.reset(CreateDIBSection(memory.dc(), &info, DIB_RGB_COLORS, &list.bits, nullptr, 0));
    list.bytes = ground.image.pixels.size();
    return static_cast<bool>(list.bitmap);
}

void CoverLists::destroy()
{
    for (List& list : m_lists) {
        list.image.reset();
        list.bitmap.reset();
        list.bits = nullptr;
    }
    m_slots = 0;
}

bool CoverLists::put(int slot, const FittedCover& cover)
{
    GdiFlush(); // the bitmap may still be on its way into another slot
    for (std::size_t i = 0; i < m_lists.size(); ++i) {
        List& list = m_lists[i];
        if (!list.image) {
            continue;
        }
        if (cover[i].size() != list.bytes) {
            return false;
        }
        std::memcpy(list.bits, cover[i].data(), list.bytes);
        if (!ImageList_Replace(list.image.get(), slot, list.bitmap.get(), nullptr)) {
            return false;
        }
    }
    return true;
}

} // namespace tessera
