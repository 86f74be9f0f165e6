#include "artwork/Locator.h"

#include "artwork/CoverPlaces.h"

namespace tessera {

namespace {

constexpr char kUnit[] = "Artwork";
constexpr unsigned long kTrackLine = 204;

// The candidate without its last component, one trailing backslash of its own left aside.
std::string folderPart(std::string_view candidate)
{
    const std::size_t last = findLastBackslash(candidate);
    if (last == std::string_view::npos)
        return {};
    if (last + 1 < candidate.size())
        return std::string(candidate.substr(0, last + 1));
    const std::size_t previous = findLastBackslash(candidate.substr(0, last));
    return previous == std::string_view::npos ? std::string()
                                              : std::string(candidate.substr(0, previous + 1));
}

// The search for one album's cover. A dead share or a host may keep each step for a long time: the
// end of the plug-in waits for one at most.
class AlbumSearch {
public:
    AlbumSearch(Album& album, const CoverPlaces& places, JobContext& context)
        : m_album(album), m_places(places), m_context(context)
    {
    }

    void run(const std::vector<std::string>& candidates)
    {
        for (const std::string& candidate : candidates) {
            const bool allowed = m_places.mayOpen(candidate, m_album);
            if ((allowed && (takeFile(candidate) || takeFirstMatch(candidate))) || takeFromHost())
                return;
        }
    }

private:
    bool takeFile(const std::string& candidate)
    {
        if (!files().exists(candidate))
            return false;
        m_album.thumbnailFile = candidate;
        return true;
    }

    bool takeFirstMatch(const std::string& candidate)
    {
        const auto name = files().findFirst(candidate);
        if (!name)
            return false;
        m_album.thumbnailFile = folderPart(candidate) + *name;
        return true;
    }

    // True only when the host has a picture inside the track: a file that it knows of gives way to
    // one that a later candidate finds.
    bool takeFromHost()
    {
        const Track* track = m_album.tracks.empty() ? nullptr : m_album.tracks.begin()->second;
        if (!track) {
            m_context.prompt.assertion("pTrack", kUnit, kTrackLine);
            return true;
        }
        if (!track->m_pMJFile)
            throw HostError(kErrorPointer);
        m_album.thumbnailFile = image(*track->m_pMJFile, ImageKind::ImageFile);
        if (!m_album.thumbnailFile.empty())
            return false;
        m_album.thumbnailFile = image(*track->m_pMJFile, ImageKind::Embedded);
        if (m_album.thumbnailFile.empty())
            return false;
        m_album.set(kAlbumInternalImage, true);
        m_context.files.removeTemporary(m_album.thumbnailFile);
        return true;
    }

    FileSystem& files() const
    {
        m_context.stopIfTerminating();
        return m_context.files;
    }
    std::string image(HostFile& file, ImageKind kind) const
    {
        m_context.stopIfTerminating();
        return file.image(kind);
    }

    Album& m_album;
    const CoverPlaces& m_places;
    JobContext& m_context;
};

// Keeps the path only of a file that is a picture. Answers what the album adds to the count.
std::int32_t settle(Album& album, const PictureCheck& isPicture)
{
    if (album.thumbnailFile.empty())
        return 0;
    album.set(kAlbumHasImage, true);
    const bool readable = !album.has(kAlbumInternalImage) && !hasControlCharacter(album.thumbnailFile) &&
                          isPicture(album.thumbnailFile);
    if (!readable)
        album.thumbnailFile.clear();
    return readable ? 2 : 1;
}

} // namespace

std::vector<std::string> expandArtworkPatterns(const TokenParser& tokens, std::string_view patterns,
                                               const Album* album)
{
    std::vector<std::string> candidates = split(patterns, "\t");
    if (album) {
        for (std::string& candidate : candidates)
            candidate = tokens.expandArtwork(candidate, *album);
    }
    return candidates;
}

std::int32_t locateAllArtwork(Library& library, const TokenParser& tokens, std::string_view patterns,
                              const PictureCheck& isPicture, JobContext& context)
{
    const CoverPlaces places(tokens.artworkFolder(), patterns);
    std::int32_t count = 0;
    std::uint32_t done = 0;
    const auto total = static_cast<std::uint32_t>(library.albums.size());
    for (const auto& [id, album] : library.albums) {
        context.stopIfTerminating();
        context.log.progress(++done, total);
        AlbumSearch(*album, places, context).run(expandArtworkPatterns(tokens, patterns, album.get()));
        context.stopIfTerminating();
        count += settle(*album, isPicture);
    }
    return count;
}

} // namespace tessera
