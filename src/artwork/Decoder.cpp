#include "artwork/Decoder.h"

#include "base/Files.h"
#include "system/ComPtr.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>

#include <ocidl.h>
#include <olectl.h>
#include <wincodec.h>

namespace tessera {
namespace {

std::size_t byteCount(PictureSize size)
{
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 4;
}

BITMAPINFO topDown(PictureSize size)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.width;
    info.bmiHeader.biHeight = -size.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

bool isReasonable(PictureSize size)
{
    return std::min(size.width, size.height) > 0 &&
           std::max(size.width, size.height) <= kLongestPictureSide &&
           std::int64_t{size.width} * size.height <= kMostPicturePixels;
}

PictureSize frameSize(IWICBitmapSource& frame)
{
    UINT width = 0;
    UINT height = 0;
    checkResult(frame.GetSize(&width, &height));
    const PictureSize size{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
    if (!isReasonable(size)) {
        throw HostError(E_INVALIDARG);
    }
    return size;
}

// An icon's largest image; other kinds are shown by their first one.
ComPtr<IWICBitmapFrameDecode> chooseFrame(IWICBitmapDecoder& decoder, PictureKind kind)
{
    UINT count = 1;
    if (kind == PictureKind::Icon) {
        checkResult(decoder.GetFrameCount(&count));
    }
    ComPtr<IWICBitmapFrameDecode> chosen;
    std::int32_t width = 0;
    for (UINT i = 0; i < count; ++i) {
        ComPtr<IWICBitmapFrameDecode> frame;
        checkResult(decoder.GetFrame(i, frame.put()));
        if (const PictureSize size = frameSize(*frame); size.width > width) {
            width = size.width;
            chosen = std::move(frame);
        }
    }
    if (!chosen) {
        throw HostError(E_INVALIDARG);
    }
    return chosen;
}

Picture decodeByImaging(PictureKind kind, ByteView bytes)
{
    ComPtr<IWICImagingFactory> factory;
    checkResult(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                 __uuidof(IWICImagingFactory), factory.putVoid()));
    ComPtr<IWICStream> stream;
    checkResult(factory->CreateStream(stream.put()));
    checkResult(
        stream->InitializeFromMemory(const_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size())));
    ComPtr<IWICBitmapDecoder> decoder;
    checkResult(factory->CreateDecoderFromStream(stream.get(), nullptr, WICDecodeMetadataCacheOnDemand,
                                                 decoder.put()));
    const ComPtr<IWICBitmapFrameDecode> frame = chooseFrame(*decoder, kind);
    ComPtr<IWICFormatConverter> converter;
    checkResult(factory->CreateFormatConverter(converter.put()));
    checkResult(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone,
                                      nullptr, 0.0, WICBitmapPaletteTypeCustom));
    const PictureSize size = frameSize(*converter);
    Picture picture{size.width, size.height, std::vector<std::uint8_t>(byteCount(size))};
    checkResult(converter->CopyPixels(nullptr, static_cast<UINT>(size.width) * 4,
                                      static_cast<UINT>(picture.pixels.size()), picture.pixels.data()));
    return picture;
}

// The loader's stream lies in a movable block, of which the system has few: only while it is read.
ComPtr<IStream> streamOf(ByteView bytes)
{
    GlobalHandle block(GlobalAlloc(GMEM_MOVEABLE, bytes.size()));
    void* const memory = block ? GlobalLock(block.get()) : nullptr;
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(memory, bytes.data(), bytes.size());
    GlobalUnlock(block.get());
    ComPtr<IStream> stream;
    checkResult(CreateStreamOnHGlobal(block.get(), TRUE, stream.put()));
    (void)block.release(); // the stream's from here
    return stream;
}

ComPtr<IPicture> loadPicture(ByteView bytes)
{
    const ComPtr<IStream> stream = streamOf(bytes);
    ComPtr<IPicture> picture;
    checkResult(OleLoadPicture(stream.get(), static_cast<LONG>(bytes.size()), FALSE, IID_IPicture,
                               picture.putVoid()));
    if (!picture) {
        throw HostError(E_POINTER);
    }
    return picture;
}

Picture opaquePixels(HBITMAP bitmap, PictureSize size)
{
    Picture picture{size.width, size.height, std::vector<std::uint8_t>(byteCount(size))};
    BITMAPINFO info = topDown(size);
    const WindowDc screen;
    if (GetDIBits(screen.dc(), bitmap, 0, static_cast<UINT>(size.height), picture.pixels.data(), &info,
                  DIB_RGB_COLORS) == 0) {
        throw HostError(E_FAIL);
    }
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4) {
        picture.pixels[i] = 255;
    }
    return picture;
}

// A picture drawn on a plain ground.
template <class Draw>
std::vector<std::uint8_t> drawnOn(COLORREF ground, PictureSize size, Draw&& draw)
{
    const MemoryDc memory;
    const BITMAPINFO info = topDown(size);
    void* bits = nullptr;
    const BitmapHandle bitmap(CreateDIBSection(memory.dc(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap) {
        throw std::bad_alloc();
    }
    const SelectScope selected(memory.dc(), bitmap.get());
    fillRect(memory.dc(), {0, 0, size.width, size.height}, ground);
    SetStretchBltMode(memory.dc(), COLORONCOLOR); // the initial mode darkens
    draw(memory.dc());
    GdiFlush();
    const auto* const start = static_cast<const std::uint8_t*>(bits);
    return {start, start + byteCount(size)};
}

// What differs between black and white ground is what shines through.
template <class Draw>
Picture transparentPixels(PictureSize size, Draw&& draw)
{
    Picture picture{size.width, size.height, drawnOn(RGB(0, 0, 0), size, draw)};
    const std::vector<std::uint8_t> onWhite = drawnOn(RGB(255, 255, 255), size, draw);
    for (std::size_t i = 0; i < onWhite.size(); i += 4) {
        std::uint8_t* const pixel = &picture.pixels[i];
        const int through =
            std::max({onWhite[i] - pixel[0], onWhite[i + 1] - pixel[1], onWhite[i + 2] - pixel[2], 0});
        const int alpha = 255 - through;
        for (int channel = 0; channel < 3 && alpha > 0; ++channel) {
            pixel[channel] =
                static_cast<std::uint8_t>(std::min(255, (pixel[channel] * 255 + alpha / 2) / alpha));
        }
        pixel[3] = static_cast<std::uint8_t>(alpha);
    }
    return picture;
}

PictureSize bitmapSize(HBITMAP bitmap)
{
    BITMAP info{};
    if (GetObjectA(bitmap, sizeof info, &info) == 0) {
        throw HostError(E_FAIL);
    }
    const PictureSize size{info.bmWidth, std::abs(info.bmHeight)};
    if (!isReasonable(size)) {
        throw HostError(E_INVALIDARG);
    }
    return size;
}

Picture bitmapPixels(IPicture& picture)
{
    OLE_HANDLE handle = 0;
    checkResult(picture.get_Handle(&handle));
    const auto bitmap = reinterpret_cast<HBITMAP>(static_cast<UINT_PTR>(handle));
    const PictureSize size = bitmapSize(bitmap);
    DWORD attributes = 0;
    checkResult(picture.get_Attributes(&attributes));
    if ((attributes & PICTURE_TRANSPARENT) == 0) {
        return opaquePixels(bitmap, size);
    }
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    checkResult(picture.get_Width(&width));
    checkResult(picture.get_Height(&height));
    return transparentPixels(size, [&](HDC dc) {
        checkResult(picture.Render(dc, 0, 0, size.width, size.height, 0, height, width, -height, nullptr));
    });
}

Picture iconPixels(IPicture& picture)
{
    OLE_HANDLE handle = 0;
    checkResult(picture.get_Handle(&handle));
    const auto icon = reinterpret_cast<HICON>(static_cast<UINT_PTR>(handle));
    ICONINFO info{};
    if (!GetIconInfo(icon, &info)) {
        throw HostError(E_FAIL);
    }
    const BitmapHandle colours(info.hbmColor);
    const BitmapHandle mask(info.hbmMask);
    PictureSize size = bitmapSize(colours ? colours.get() : mask.get());
    if (!colours) {
        size.height = std::max(size.height / 2, 1); // two masks, one below the other
    }
    return transparentPixels(size, [&](HDC dc) {
        if (!DrawIconEx(dc, 0, 0, icon, size.width, size.height, 0, nullptr, DI_NORMAL)) {
            throw HostError(E_FAIL);
        }
    });
}

Picture decodeByLoader(PictureKind, ByteView bytes)
{
    const ComPtr<IPicture> picture = loadPicture(bytes);
    SHORT type = PICTYPE_NONE;
    checkResult(picture->get_Type(&type));
    switch (type) {
    case PICTYPE_BITMAP:
        return bitmapPixels(*picture);
    case PICTYPE_ICON:
        return iconPixels(*picture);
    default:
        throw HostError(E_INVALIDARG);
    }
}

// The kind of a picture that a decoder may see.
std::optional<PictureKind> decodableKind(ByteView bytes)
{
    const std::optional<PictureHeader> header = pictureHeader(bytes);
    if (!header || bytes.size() > kMostPictureBytes || !isReasonable(header->size) ||
        !isWholePicture(header->kind, bytes)) {
        return std::nullopt;
    }
    return header->kind;
}

using DecoderFunction = Picture (*)(PictureKind, ByteView);

// The loader knows no PNG on Windows and takes any image of an icon; some JPEGs and bitmaps are too
// new for it.
std::array<DecoderFunction, 2> decodersFor(PictureKind kind)
{
    if (kind == PictureKind::Png || kind == PictureKind::Icon) {
        return {decodeByImaging, decodeByLoader};
    }
    return {decodeByLoader, decodeByImaging};
}

} // namespace

std::optional<Picture> decodePicture(ByteView bytes)
{
    const std::optional<PictureKind> kind = decodableKind(bytes);
    if (!kind) {
        return std::nullopt;
    }
    for (const DecoderFunction decode : decodersFor(*kind)) {
        try {
            return decode(*kind, bytes);
        } catch (const HostError&) {
        } catch (const std::bad_alloc&) {
            break;
        }
    }
    return std::nullopt;
}

std::vector<std::uint8_t> readPictureFile(const std::string& path)
{
    const std::optional<FileInfo> info = systemFiles().info(path);
    if (!info || info->size > kMostPictureBytes) {
        return {};
    }
    return systemFiles().readAll(path).value_or(std::vector<std::uint8_t>());
}

} // namespace tessera
