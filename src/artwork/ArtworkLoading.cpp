// How covers come into the image lists: asked for by what is on the screen, and in database order.

#include "artwork/Artwork.h"

#include "system/Border.h"

#include <algorithm>
#include <array>

namespace tessera {
namespace {

constexpr UINT kCoversMessage = WM_APP + 1;
constexpr UINT_PTR kTimer = 1;
constexpr UINT kPause = 10;                 // milliseconds: input and painting come first
constexpr double kLongestTurn = 8;          // milliseconds
constexpr DWORD kPatience = 5000;           // milliseconds
constexpr std::size_t kAhead = 16;          // covers at the loader
constexpr std::size_t kAheadForScreen = 48; // the same for covers that somebody waits for
constexpr std::size_t kMostWanted = 2000;   // a longer list is what has been scrolled past
constexpr int kDefaultIndex = 0;

class Stopwatch {
public:
    Stopwatch()
    {
        QueryPerformanceFrequency(&m_frequency);
        QueryPerformanceCounter(&m_start);
    }
    double milliseconds() const
    {
        LARGE_INTEGER now{};
        QueryPerformanceCounter(&now);
        return static_cast<double>(now.QuadPart - m_start.QuadPart) * 1000.0 /
               static_cast<double>(m_frequency.QuadPart);
    }

private:
    LARGE_INTEGER m_frequency{};
    LARGE_INTEGER m_start{};
};

} // namespace

std::span<const MapEntry<Artwork>> Artwork::messageMap()
{
    static constexpr std::array<MapEntry<Artwork>, 2> kMap{{
        {kCoversMessage, &Artwork::onCovers},
        {WM_TIMER, &Artwork::onTimer},
    }};
    return kMap;
}

int Artwork::getAlbumImageIndex(Album& album)
{
    if (album.imageIndex >= 0) {
        m_slots.touch(album.imageIndex);
        return album.imageIndex;
    }
    if (!m_library || m_lists.slots() == 0) {
        return -1;
    }
    if (m_slots.hopeless() || !hasPicture(album, m_thumbnails)) {
        return album.imageIndex = kDefaultIndex;
    }
    if (!m_parts.settings.backgroundLoading) {
        return loadNow(album);
    }
    if (!m_loader) {
        return -1;
    }
    want(album);
    return kDefaultIndex;
}

// Lists ask while they paint, where no call of the host may come between.
int Artwork::loadNow(Album& album)
{
    if (!m_thumbnails && album.has(kAlbumInternalImage)) {
        askLater(album);
        return kDefaultIndex;
    }
    const std::optional<FittedCover> cover = readFitted(album);
    return cover ? addPicture(album, *cover) : (album.imageIndex = kDefaultIndex);
}

std::optional<FittedCover> Artwork::readFitted(const Album& album) const
{
    return quietBorder(std::optional<FittedCover>(), [&]() -> std::optional<FittedCover> {
        const std::shared_ptr<const CoverGrounds> grounds = m_grounds;
        const std::optional<Picture> picture = readCover(coverSource(album, m_thumbnails, m_places));
        return picture ? std::optional(fitCover(*picture, *grounds)) : std::nullopt;
    });
}

void Artwork::askLater(Album& album)
{
    addWanted(album);
    if (m_wanted.size() == 1) {
        SetTimer(handle(), kTimer, kPause, nullptr);
    }
}

// A short turn. The host may do anything inside its call: even take the library away.
void Artwork::askHost()
{
    const Stopwatch watch;
    std::vector<Album*> arrived;
    while (!m_wanted.empty() && m_parts.mayCallHost() && watch.milliseconds() < kLongestTurn) {
        Album* const album = nextWanted();
        if (!album) {
            break;
        }
        const unsigned generation = m_generation;
        const std::optional<FittedCover> cover = readFitted(*album);
        if (generation != m_generation) {
            return;
        }
        if (!cover) {
            album->imageIndex = kDefaultIndex;
        } else if (addPicture(*album, *cover) != kDefaultIndex) {
            arrived.push_back(album);
        }
    }
    if (!m_wanted.empty()) {
        SetTimer(handle(), kTimer, kPause, nullptr);
    }
    tell(arrived);
}

int Artwork::addPicture(Album& album, const FittedCover& cover)
{
    const SlotTable::Taken taken = m_slots.take(album);
    if (taken.loser) {
        taken.loser->imageIndex = -1;
    }
    album.imageIndex = m_lists.put(taken.slot, cover) ? taken.slot : kDefaultIndex;
    return album.imageIndex;
}

void Artwork::startBackgroundLoading()
{
    if (!m_parts.settings.backgroundLoading || !m_library || m_loader || m_parts.terminating || !handle()) {
        return;
    }
    m_loader = std::make_unique<CoverLoader>(m_grounds, handle(), kCoversMessage);
    m_next = m_library->albums.begin();
    m_walked = 0;
    m_passLog = m_parts.newLog();
    m_parts.loadingChanged();
    m_passLog->line("Beginning background loading of images");
    m_passLog->line("Loading");
    feedLoader();
}

// The wait answers what other threads send: until it is over, nobody may find the loader.
void Artwork::stopBackgroundLoading()
{
    if (const std::unique_ptr<CoverLoader> loader = std::move(m_loader)) {
        KillTimer(handle(), kTimer);
        m_underWay.clear();
        m_wanted.clear();
        loader->stop(kPatience);
        endPass();
    }
}

void Artwork::endPass()
{
    if (const std::unique_ptr<Log> log = std::move(m_passLog); log && !m_parts.terminating) {
        log->line("Finished");
        m_parts.loadingChanged();
    }
}

// What is asked for last is what is on the screen now.
void Artwork::want(Album& album)
{
    const auto found = m_underWay.find(&album);
    if (found != m_underWay.end()) {
        if (!std::exchange(found->second, true)) {
            m_loader->hurry(album);
        }
    } else if (m_underWay.size() < kAheadForScreen) {
        submit(album, CoverLoader::Turn::Next);
    } else {
        addWanted(album);
    }
}

void Artwork::addWanted(Album& album)
{
    m_wanted.push_back(&album);
    if (m_wanted.size() > kMostWanted) {
        m_wanted.pop_front();
    }
}

// Without memory for the request the album shows the default cover.
void Artwork::submit(Album& album, CoverLoader::Turn turn)
{
    const bool submitted = quietBorder(false, [&] {
        m_loader->add({&album, coverSource(album, m_thumbnails, m_places)}, turn);
        m_underWay[&album] = turn == CoverLoader::Turn::Next;
        return true;
    });
    if (!submitted) {
        album.imageIndex = kDefaultIndex;
    }
}

// A posted message comes before input and painting, a timer after them.
Handled Artwork::onCovers(const Message& message)
{
    SetTimer(message.window, kTimer, kPause, nullptr);
    return 0;
}

Handled Artwork::onTimer(const Message& message)
{
    KillTimer(message.window, kTimer);
    m_loader ? takeResults() : askHost();
    return 0;
}

// A short turn; what is left waits for the next one.
void Artwork::takeResults()
{
    const Stopwatch watch;
    std::vector<Album*> arrived;
    while (std::optional<CoverResult> result = m_loader->take()) {
        if (settle(*result)) {
            arrived.push_back(result->album);
        }
        if (watch.milliseconds() > kLongestTurn) {
            SetTimer(handle(), kTimer, kPause, nullptr);
            break;
        }
    }
    feedLoader();
    tell(arrived);
}

// Answers whether the album has a cover of its own now. A cover that nobody waits for takes no
// other one's slot.
bool Artwork::settle(CoverResult& result)
{
    const auto found = m_underWay.find(result.album);
    const bool awaited = found != m_underWay.end() && found->second;
    if (found != m_underWay.end()) {
        m_underWay.erase(found);
    }
    Album& album = *result.album;
    if (album.imageIndex >= 0) {
        return false;
    }
    if (!result.cover) {
        album.imageIndex = kDefaultIndex;
        return false;
    }
    return (awaited || !m_slots.full()) && addPicture(album, *result.cover) != kDefaultIndex;
}

void Artwork::feedLoader()
{
    while (m_underWay.size() < kAhead) {
        if (Album* const wanted = nextWanted()) {
            submit(*wanted, CoverLoader::Turn::Next);
        } else if (Album* const next = nextInOrder()) {
            submit(*next, CoverLoader::Turn::Last);
        } else {
            break;
        }
    }
    if (!m_passLog) {
        return;
    }
    const auto total = static_cast<std::uint32_t>(m_library->albums.size());
    m_passLog->progress(m_walked - std::min(m_walked, static_cast<std::uint32_t>(m_underWay.size())), total);
    if (m_underWay.empty()) {
        endPass();
    }
}

Album* Artwork::nextWanted()
{
    while (!m_wanted.empty()) {
        Album* const album = m_wanted.back();
        m_wanted.pop_back();
        if (album->imageIndex < 0 && !m_underWay.contains(album)) {
            return album;
        }
    }
    return nullptr;
}

// The next album in database order whose cover has to be loaded; none once the slots are taken:
// the other covers come when they are seen.
Album* Artwork::nextInOrder()
{
    for (; m_next != m_library->albums.end(); ++m_next) {
        Album& album = *m_next->second;
        const bool wanted = album.imageIndex < 0 && !m_underWay.contains(&album);
        const bool pictured = wanted && hasPicture(album, m_thumbnails);
        if (pictured && m_slots.full()) {
            return nullptr;
        }
        ++m_walked;
        if (pictured) {
            ++m_next;
            return &album;
        }
        if (wanted) {
            album.imageIndex = kDefaultIndex;
        }
    }
    return nullptr;
}

void Artwork::tell(const std::vector<Album*>& arrived)
{
    if (arrived.empty()) {
        return;
    }
    const std::vector<CoverListener*> listeners = m_listeners;
    for (CoverListener* const listener : listeners) {
        if (std::ranges::count(m_listeners, listener) > 0) {
            listener->coversArrived(arrived);
        }
    }
}

} // namespace tessera
