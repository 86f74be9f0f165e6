// Covers: through the loader and the image lists, against decoding and fitting alone.

#include "CoverFile.h"
#include "GeneratedLibrary.h"
#include "Report.h"

#include "artwork/Artwork.h"
#include "artwork/Decoder.h"
#include "system/ComPtr.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

using namespace tessera;
using namespace tessera::bench;

namespace {

// The covers of a made-up library, and when each of them came.
class Covers8400 {
public:
    Covers8400(int albums, const std::string& picture, int sizeIndex) : m_artwork(parts())
    {
        m_settings.imageSizeIndex = sizeIndex;
        for (int id = 1; id <= albums; ++id) {
            auto& album = m_library.albums[id];
            album = std::make_unique<Album>();
            album->thumbnailFile = picture;
        }
        m_seen = m_library.albums.begin();
        m_artwork.initArtwork();
        m_artwork.openLibrary(m_library, false);
    }

    // Loads everything while a timer ticks; answers the milliseconds.
    double loadAll(const std::function<void(int loaded)>& everyTurn = {})
    {
        const Clock::time_point start = Clock::now();
        m_artwork.startBackgroundLoading();
        while (m_artwork.loading()) {
            MSG message;
            GetMessageA(&message, nullptr, 0, 0);
            DispatchMessageA(&message);
            if (everyTurn) {
                everyTurn(loaded());
            }
        }
        return millisecondsSince(start);
    }
    Artwork& artwork() { return m_artwork; }
    Library& library() { return m_library; }

private:
    ArtworkParts parts()
    {
        return {m_settings,
                m_balloon,
                m_terminating,
                [] { return RGB(255, 255, 255); },
                [] { return std::make_unique<SilentLog>(); },
                [] {},
                [] { return true; }};
    }
    int loaded()
    {
        while (m_seen != m_library.albums.end() && m_seen->second->imageIndex >= 0) {
            ++m_seen;
            ++m_loaded;
        }
        return m_loaded;
    }

    ArtworkSettings m_settings;
    BalloonSettings m_balloon;
    std::atomic<bool> m_terminating{false};
    Library m_library;
    Albums::iterator m_seen; // the first whose cover has not come
    int m_loaded = 0;
    Artwork m_artwork;
};

CoverGrounds groundsOf(SIZE large)
{
    CoverGrounds grounds;
    grounds[kLargeCovers] = makeGround(large, false, RGB(255, 255, 255));
    grounds[kMediumCovers] = makeGround({64, 64}, true, RGB(255, 255, 255));
    grounds[kSmallCovers] = makeGround({16, 16}, true, RGB(255, 255, 255));
    grounds[kBalloonCovers] = makeGround({64, 64}, true, RGB(255, 255, 225));
    return grounds;
}

void loaderRow(const std::string& picture)
{
    constexpr int kCovers = 100;
    const CoverGrounds grounds = groundsOf({75, 75});
    const auto bare = [&] {
        const Clock::time_point start = Clock::now();
        for (int i = 0; i < kCovers; ++i) {
            const std::optional<Picture> decoded = readCoverFile(picture);
            require(decoded.has_value(), "the picture cannot be read");
            require(!fitCover(*decoded, grounds)[0].empty(), "the picture does not fit");
        }
        return millisecondsSince(start) / kCovers;
    };
    const auto work = [&] {
        Covers8400 covers(kCovers, picture, 0);
        const double time = covers.loadAll() / kCovers;
        require(covers.library().albums[kCovers]->imageIndex == kCovers, "a cover is missing");
        return time;
    };
    const Best best = bestOf(1, work, bare);
    report({"a cover through the loader, 500 x 500 JPEG", best.work, "ms", best.bare, 1.2});
}

// Covers so small that what is not decoding shows.
void scaleRow(const std::string& picture)
{
    constexpr int kWindow = 400;
    constexpr int kFirst = 500;
    constexpr int kLast = 8000;
    double early = 0;
    double late = 0;
    for (int round = 0; round < 2; ++round) {
        Covers8400 covers(8400, picture, 0);
        std::vector<Clock::time_point> when(8401);
        int known = 0;
        covers.loadAll([&](int loaded) {
            const Clock::time_point now = Clock::now();
            for (; known < loaded; ++known) {
                when[static_cast<std::size_t>(known)] = now;
            }
        });
        const auto cost = [&](int middle) {
            const auto from = static_cast<std::size_t>(middle - kWindow);
            const auto to = static_cast<std::size_t>(middle + kWindow - 1);
            return std::chrono::duration<double, std::milli>(when[to] - when[from]).count() /
                   static_cast<double>(to - from);
        };
        early = round == 0 ? cost(kFirst) : std::min(early, cost(kFirst));
        late = round == 0 ? cost(kLast) : std::min(late, cost(kLast));
    }
    report({"a cover, the 8,000th against the 500th", late, "ms", early, 1.1}, OnWindows::Helpful);
}

void memoryRows()
{
    for (int index = 0; index < 6; ++index) {
        const std::optional<double> before = privateMemory();
        Covers8400 covers(8400, "never-opened.jpg", index);
        const std::optional<double> after = privateMemory();
        const CoverGrounds grounds = groundsOf(covers.artwork().largeSize());
        const double lists = static_cast<double>(CoverLists::bytesPerSlot(grounds)) *
                             covers.artwork().slots() / (1024.0 * 1024.0);
        const std::string side = std::to_string(covers.artwork().largeSize().cx);
        report({"memory of the image lists, 8,400 albums at " + side + " x " + side + ", " +
                    std::to_string(covers.artwork().slots()) + " slots",
                after && before ? std::max(*after - *before, lists) : lists, "MB", std::nullopt, 512.0});
    }
}

} // namespace

// bench_covers [FOLDER [PART]]: all parts, or one of loader, scale and memory.
int main(int count, char** arguments)
{
    const ComInit com;
    const std::filesystem::path folder =
        count > 1 ? std::filesystem::path(arguments[1]) : std::filesystem::temp_directory_path();
    const std::string_view only = count > 2 ? arguments[2] : "";
    const auto wanted = [&](std::string_view part) { return only.empty() || only == part; };
    const std::string cover = (folder / "bench-cover.jpg").string();
    const std::string small = (folder / "bench-small.jpg").string();
    writeJpeg(cover, 500);
    writeJpeg(small, 60);
    if (wanted("memory")) {
        memoryRows();
    }
    if (wanted("loader")) {
        loaderRow(cover);
    }
    if (wanted("scale")) {
        scaleRow(small);
    }
    systemFiles().remove(cover);
    systemFiles().remove(small);
    return 0;
}
