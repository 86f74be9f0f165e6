#include "artwork/DefaultCover.h"

#include "artwork/CoverSource.h"
#include "base/Errors.h"
#include "system/Module.h"

namespace tessera {
namespace {

constexpr char kUnit[] = "Artwork";

ByteView resourceBytes(const char* name, const char* type)
{
    const HRSRC hRes = FindResourceA(moduleInstance(), name, type);
    TESSERA_ASSERT(hRes, kUnit);
    if (!hRes) {
        return {};
    }
    const HGLOBAL hResource = LoadResource(moduleInstance(), hRes);
    TESSERA_ASSERT(hResource, kUnit);
    const void* const bytes = hResource ? LockResource(hResource) : nullptr;
    if (!bytes) {
        return {};
    }
    return {static_cast<const std::uint8_t*>(bytes), SizeofResource(moduleInstance(), hRes)};
}

} // namespace

std::optional<Picture> defaultCover(const std::string& path)
{
    std::optional<Picture> picture = readCoverFile(path);
    return picture ? std::move(picture) : decodePicture(resourceBytes("LISTVIEW_BACKGROUND", "IMAGES"));
}

} // namespace tessera
