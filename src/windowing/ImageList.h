#pragma once

#include <utility>
#include <windows.h>

#include <commctrl.h>

namespace tessera {

// Owns an image list.
class ImageList {
public:
    ImageList() = default;
    explicit ImageList(HIMAGELIST list) : m_list(list) {}
    ~ImageList() { reset(); }
    ImageList(ImageList&& other) noexcept : m_list(other.release()) {}
    ImageList& operator=(ImageList&& other) noexcept;
    ImageList(const ImageList&) = delete;
    ImageList& operator=(const ImageList&) = delete;

    // Empty and 32 bits deep, with room for `capacity` images.
    static ImageList create(int width, int height, int capacity, UINT flags = ILC_COLOR32 | ILC_MASK);
    // From a bitmap resource of this module: a strip of square images, 32 bits with alpha.
    static ImageList fromStrip(UINT resource, int side);

    HIMAGELIST get() const { return m_list; }
    explicit operator bool() const { return m_list != nullptr; }
    HIMAGELIST release() { return std::exchange(m_list, nullptr); }
    void reset();

    int count() const { return ImageList_GetImageCount(m_list); }
    int add(HBITMAP bitmap) const { return ImageList_Add(m_list, bitmap, nullptr); }
    bool draw(int index, HDC dc, int x, int y, UINT style = ILD_NORMAL) const;

private:
    HIMAGELIST m_list = nullptr;
};

} // namespace tessera
