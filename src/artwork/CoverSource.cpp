#include "artwork/CoverSource.h"

#include "artwork/Fitting.h"
#include "base/Errors.h"
#include "base/Files.h"

#include <algorithm>

namespace tessera {
namespace {

constexpr std::int64_t kMostPixels = 40'000'000;
constexpr std::uint64_t kMostBytes = 64ULL * 1024 * 1024;

bool isCoverSize(PictureSize size)
{
    return std::int64_t{size.width} * size.height <= kMostPixels &&
           std::max(size.width, size.height) <= kLongestSide;
}

std::vector<std::uint8_t> readFile(const std::string& path)
{
    const std::optional<FileInfo> info = systemFiles().info(path);
    if (!info || info->size > kMostBytes) {
        return {};
    }
    return systemFiles().readAll(path).value_or(std::vector<std::uint8_t>());
}

// A file that the host has made for us.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string path) : m_path(std::move(path)) {}
    ~TemporaryFile()
    {
        if (!m_path.empty()) {
            systemFiles().remove(m_path);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

std::vector<std::uint8_t> readEmbedded(HostFile& file)
{
    try {
        const TemporaryFile temporary(file.image(ImageKind::Embedded));
        return readFile(temporary.path());
    } catch (const HostError&) {
        return {};
    }
}

} // namespace

bool hasPicture(const Album& album, bool thumbnails)
{
    if (thumbnails) {
        return static_cast<bool>(album.m_hGlobalThumbnail);
    }
    return album.has(kAlbumInternalImage) || !album.thumbnailFile.empty();
}

CoverSource coverSource(const Album& album, bool thumbnails)
{
    if (thumbnails) {
        return {album.m_hGlobalThumbnail.bytes(), nullptr, {}};
    }
    if (album.has(kAlbumInternalImage)) {
        return {{}, album.tracks.empty() ? nullptr : album.tracks.begin()->second->m_pMJFile, {}};
    }
    return {{}, nullptr, album.thumbnailFile};
}

std::optional<Picture> readCover(const CoverSource& source)
{
    if (!source.encoded.empty()) {
        return readCoverBytes(source.encoded);
    }
    if (source.embedded) {
        return readCoverBytes(readEmbedded(*source.embedded));
    }
    return readCoverFile(source.path);
}

std::optional<Picture> readCoverFile(const std::string& path)
{
    return path.empty() ? std::nullopt : readCoverBytes(readFile(path));
}

std::optional<Picture> readCoverBytes(ByteView bytes)
{
    const std::optional<PictureHeader> header = pictureHeader(bytes);
    if (!header || bytes.size() > kMostBytes || !isCoverSize(header->size)) {
        return std::nullopt;
    }
    std::optional<Picture> picture = decodePicture(bytes);
    return picture && isCoverSize({picture->width, picture->height}) ? std::move(picture) : std::nullopt;
}

} // namespace tessera
