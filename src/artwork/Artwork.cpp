// The image lists, the default cover and what is known of the library in use.

#include "artwork/Artwork.h"

#include "artwork/DefaultCover.h"
#include "base/Errors.h"
#include "system/Border.h"

#include <algorithm>
#include <array>

namespace tessera {
namespace {

constexpr char kUnit[] = "Artwork";
constexpr int kCustomSize = 6;
constexpr std::int32_t kLargestSide = 1024; // of an image in a list
constexpr SIZE kMediumSize{64, 64};
constexpr SIZE kSmallSize{16, 16};

LONG usableSide(std::int32_t side, std::int32_t fallback)
{
    return std::min(side > 0 ? side : fallback, kLargestSide);
}

} // namespace

SIZE artworkSize(const ArtworkSettings& settings)
{
    const std::int32_t index = settings.imageSizeIndex;
    if (index == kCustomSize) {
        const ArtworkSettings defaults;
        return {usableSide(settings.customWidth, defaults.customWidth),
                usableSide(settings.customHeight, defaults.customHeight)};
    }
    const LONG side = ((index >= 0 && index < kCustomSize ? index : 0) * 5 + 15) * 5;
    return {side, side};
}

Artwork::Artwork(ArtworkParts parts) : m_parts(std::move(parts)) {}

Artwork::~Artwork()
{
    release();
}

void Artwork::initArtwork()
{
    create(HWND_MESSAGE, 0, {}, {0, 0});
    resetImageLists(true);
}

void Artwork::release()
{
    stopBackgroundLoading();
    destroy();
    m_library = nullptr;
    m_lists.destroy();
    m_slots = SlotTable();
}

void Artwork::updateArtworkSize()
{
    m_largeSize = artworkSize(m_parts.settings);
}

void Artwork::resetImageLists(bool rebuild)
{
    stopBackgroundLoading();
    if (!rebuild) {
        return;
    }
    updateArtworkSize();
    createLists();
    const std::vector<CoverListener*> listeners = m_listeners;
    for (CoverListener* const listener : listeners) {
        if (std::ranges::count(m_listeners, listener) > 0) { // an earlier one may have ended it all
            listener->imageListsRebuilt();
        }
    }
}

// The old lists go first: there may be no room for both.
void Artwork::createLists()
{
    auto grounds = std::make_shared<const CoverGrounds>(makeGrounds()); // asks the host
    if (m_parts.terminating) {
        return;
    }
    forgetIndices();
    m_lists.destroy();
    m_slots = SlotTable();
    m_grounds = std::move(grounds);
    if (!m_lists.create(*m_grounds, 1 + picturedAlbums())) {
        assertionFailed("m_imlArtworkLarge.GetSafeHandle()", kUnit, __LINE__);
        return;
    }
    m_slots = SlotTable(m_lists.slots());
    loadDefaultImage();
}

// The others show the default cover.
int Artwork::picturedAlbums() const
{
    if (!m_library) {
        return 0;
    }
    return static_cast<int>(std::ranges::count_if(
        m_library->albums, [this](const auto& entry) { return hasPicture(*entry.second, m_thumbnails); }));
}

CoverGrounds Artwork::makeGrounds() const
{
    const COLORREF background = m_parts.background();
    CoverGrounds grounds;
    grounds[kLargeCovers] = makeGround(m_largeSize, false, background);
    grounds[kMediumCovers] = makeGround(kMediumSize, true, background);
    grounds[kSmallCovers] = makeGround(kSmallSize, true, background);
    if (const std::optional<SIZE> size = balloonSize()) {
        grounds[kBalloonCovers] = makeGround(*size, true, GetSysColor(COLOR_INFOBK));
    }
    return grounds;
}

std::optional<SIZE> Artwork::balloonSize() const
{
    const BalloonSettings& balloon = m_parts.balloon;
    if (!balloon.enabled || !balloon.showArtwork || balloon.width <= 0 || balloon.height <= 0) {
        return std::nullopt;
    }
    return SIZE{std::min(balloon.width, kLargestSide), std::min(balloon.height, kLargestSide)};
}

// Without any picture the ground alone stays in the first slot.
void Artwork::loadDefaultImage()
{
    quietBorder(false, [this] {
        const std::optional<Picture> picture = defaultCover(m_parts.settings.defaultImage);
        return picture && m_lists.put(0, fitCover(*picture, *m_grounds));
    });
}

void Artwork::forgetIndices()
{
    ++m_generation;
    m_wanted.clear();
    if (m_library) {
        for (const auto& [id, album] : m_library->albums) {
            album->imageIndex = -1;
        }
    }
}

void Artwork::openLibrary(Library& library, bool thumbnails)
{
    stopBackgroundLoading();
    m_library = &library;
    m_thumbnails = thumbnails;
    m_places = m_parts.places();
    resetImageLists(true);
}

// The lists stay for whoever has them attached; their memory is wanted for the next library.
void Artwork::closeLibrary()
{
    stopBackgroundLoading();
    if (!m_library) {
        return;
    }
    forgetIndices();
    m_library = nullptr;
    if (!m_parts.terminating) {
        resetImageLists(true);
    }
}

void Artwork::addListener(CoverListener& listener)
{
    m_listeners.push_back(&listener);
}

void Artwork::removeListener(CoverListener& listener)
{
    std::erase(m_listeners, &listener);
}

} // namespace tessera
