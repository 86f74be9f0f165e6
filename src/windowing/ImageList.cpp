#include "windowing/ImageList.h"

#include "system/Handle.h"
#include "system/Module.h"

namespace tessera {

ImageList& ImageList::operator=(ImageList&& other) noexcept
{
    std::swap(m_list, other.m_list);
    return *this;
}

ImageList ImageList::create(int width, int height, int capacity, UINT flags)
{
    return ImageList(ImageList_Create(width, height, flags, capacity, 10));
}

ImageList ImageList::fromStrip(UINT resource, int side)
{
    const BitmapHandle strip(static_cast<HBITMAP>(
        LoadImageA(moduleInstance(), MAKEINTRESOURCEA(resource), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    BITMAP size{};
    if (!strip || GetObjectA(strip.get(), sizeof size, &size) == 0) {
        return ImageList();
    }
    ImageList list = create(side, side, size.bmWidth / side, ILC_COLOR32);
    list.add(strip.get());
    return list;
}

void ImageList::reset()
{
    if (HIMAGELIST old = release()) {
        ImageList_Destroy(old);
    }
}

bool ImageList::draw(int index, HDC dc, int x, int y, UINT style) const
{
    return ImageList_Draw(m_list, index, dc, x, y, style) != FALSE;
}

} // namespace tessera
