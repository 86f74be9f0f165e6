#include "CoverFile.h"

#include "system/ComPtr.h"

#include <filesystem>
#include <vector>
#include <wincodec.h>

namespace tessera::bench {

void writeJpeg(const std::string& path, unsigned side)
{
    std::vector<BYTE> pixels(std::size_t{side} * side * 3);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::size_t x = i / 3 % side;
        const std::size_t y = i / 3 / side;
        pixels[i] = static_cast<BYTE>((x * 7 + y * 3) / 4 + (x * y * (i % 3 + 1)) % 61);
    }
    ComPtr<IWICImagingFactory> factory;
    checkResult(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                 __uuidof(IWICImagingFactory), factory.putVoid()));
    ComPtr<IWICStream> stream;
    checkResult(factory->CreateStream(stream.put()));
    checkResult(stream->InitializeFromFilename(std::filesystem::path(path).wstring().c_str(), GENERIC_WRITE));
    ComPtr<IWICBitmapEncoder> encoder;
    checkResult(factory->CreateEncoder(GUID_ContainerFormatJpeg, nullptr, encoder.put()));
    checkResult(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache));
    ComPtr<IWICBitmapFrameEncode> frame;
    checkResult(encoder->CreateNewFrame(frame.put(), nullptr));
    checkResult(frame->Initialize(nullptr));
    checkResult(frame->SetSize(side, side));
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    checkResult(frame->SetPixelFormat(&format));
    checkResult(frame->WritePixels(side, side * 3, static_cast<UINT>(pixels.size()), pixels.data()));
    checkResult(frame->Commit());
    checkResult(encoder->Commit());
}

} // namespace tessera::bench
