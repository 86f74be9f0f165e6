#include "artwork/CoverSource.h"

#include "base/Errors.h"
#include "base/Files.h"

namespace tessera {
namespace {

// A file that the host has made for us; what lies elsewhere than such files do is not ours to remove.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string path) : m_path(std::move(path)) {}
    ~TemporaryFile()
    {
        if (!m_path.empty()) {
            systemFiles().removeTemporary(m_path);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

private:
    std::string m_path;
};

std::vector<std::uint8_t> readEmbedded(HostFile& file, const std::string& own)
{
    try {
        const std::string path = file.image(ImageKind::Embedded);
        const TemporaryFile temporary(path == own ? std::string() : path);
        return readPictureFile(path);
    } catch (const HostError&) {
        return {};
    }
}

} // namespace

bool hasPicture(const Album& album, bool thumbnails)
{
    if (thumbnails) {
        return !album.m_hGlobalThumbnail.empty();
    }
    return album.has(kAlbumInternalImage) || !album.thumbnailFile.empty();
}

std::string coverFile(const Album& album, const CoverPlaces& places)
{
    return places.mayOpen(album.thumbnailFile, album) ? album.thumbnailFile : std::string();
}

CoverSource coverSource(const Album& album, bool thumbnails, const CoverPlaces& places)
{
    if (thumbnails) {
        return {album.m_hGlobalThumbnail, nullptr, {}};
    }
    if (album.has(kAlbumInternalImage)) {
        return {{}, album.tracks.empty() ? nullptr : album.tracks.begin()->second->m_pMJFile, {}};
    }
    return {{}, nullptr, coverFile(album, places)};
}

std::optional<Picture> readCover(const CoverSource& source)
{
    if (!source.encoded.empty()) {
        return decodePicture(source.encoded);
    }
    if (source.embedded) {
        return decodePicture(readEmbedded(*source.embedded, source.path));
    }
    return readCoverFile(source.path);
}

std::optional<Picture> readCoverFile(const std::string& path)
{
    return path.empty() ? std::nullopt : decodePicture(readPictureFile(path));
}

} // namespace tessera
