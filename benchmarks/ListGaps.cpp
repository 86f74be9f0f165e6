#include "ListGaps.h"

#include "CoverFile.h"
#include "GeneratedLibrary.h"
#include "ListRig.h"
#include "Report.h"

#include "artwork/Artwork.h"
#include "system/ComPtr.h"

#include <algorithm>
#include <filesystem>
#include <functional>

namespace tessera::bench {

namespace {

constexpr int kAlbums = 8400;
constexpr UINT kTick = 20; // milliseconds

// The overview's controller with the covers that the plug-in has.
class RealCovers : public FakeCommands {
public:
    explicit RealCovers(const std::string& picture) : m_artwork(parts())
    {
        fillLibrary(records, kAlbums);
        for (const auto& [id, album] : records.albums)
            album->thumbnailFile = picture;
        m_artwork.initArtwork();
        m_artwork.openLibrary(records, false);
    }
    Covers& covers() override { return m_artwork; }
    Artwork& artworkLists() { return m_artwork; }

private:
    ArtworkParts parts()
    {
        return {artworkSettings,
                balloonSettings,
                m_terminating,
                [] { return RGB(255, 255, 255); },
                [] { return std::make_unique<SilentLog>(); },
                [] {},
                [] { return true; }};
    }

    std::atomic<bool> m_terminating{false};
    Artwork m_artwork;
};

// Handles messages while the loader runs and `onTick` answers true; the longest time between two
// ticks of the timer, in milliseconds.
double longestGap(const Artwork& artwork, const std::function<bool()>& onTick)
{
    const UINT_PTR timer = SetTimer(nullptr, 0, kTick, nullptr);
    double longest = 0;
    Clock::time_point last = Clock::now();
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0)) {
        if (message.message == WM_TIMER && message.hwnd == nullptr) {
            longest = std::max(longest, millisecondsSince(last));
            last = Clock::now();
            require(artwork.loading(), "the covers came before the work was done");
            if (!onTick())
                break;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    KillTimer(nullptr, timer);
    return longest;
}

void typingRow(const std::string& picture, ListStyle style, const char* view)
{
    RealCovers commands(picture);
    const ListRig rig(commands, style);
    const HWND box = rig.box().handle();
    commands.artworkLists().startBackgroundLoading();
    // A key every 60 ms, as a quick typist has it.
    const std::string keys = "harbour\b\b\b\b\b\b\bglass 12\b\b\b\b\b\b\b\bve\b\bthe paper\b\b\b\b\b\b\b\b\b";
    std::size_t tick = 0;
    const double gap = longestGap(commands.artworkLists(), [&] {
        if (++tick % 3 == 0)
            PostMessageA(box, WM_CHAR, static_cast<BYTE>(keys[tick / 3 - 1]), 1);
        return tick / 3 < keys.size();
    });
    pumpMessages(0);
    require(rig.box().text().empty(), "the keys did not arrive");
    report({std::string("longest gap of a 20 ms timer while covers load: typing, ") + view, gap, "ms",
            std::nullopt, 50.0});
}

void pagingRow(const std::string& picture, ListStyle style, const char* view)
{
    RealCovers commands(picture);
    const ListRig rig(commands, style);
    const ListView list(rig.list());
    list.setFocused(0);
    commands.artworkLists().startBackgroundLoading();
    // The Page Down key held down.
    std::size_t tick = 0;
    const double gap = longestGap(commands.artworkLists(), [&] {
        if (++tick % 2 == 0)
            PostMessageA(list.handle(), WM_KEYDOWN, VK_NEXT, 1);
        return list.focused() < kAlbums - 1;
    });
    report({std::string("the same, paging through 8,400 albums, ") + view, gap, "ms", std::nullopt, 100.0},
           OnWindows::Harmless);
}

} // namespace

void gapRows()
{
    const ComInit com;
    const std::string picture = (std::filesystem::temp_directory_path() / "bench-gap.jpg").string();
    writeJpeg(picture, 500);
    typingRow(picture, ListStyle::Tiles, "tiles");
    typingRow(picture, ListStyle::Icons, "icons");
    typingRow(picture, ListStyle::Details, "details");
    pagingRow(picture, ListStyle::Tiles, "tiles");
    pagingRow(picture, ListStyle::Icons, "icons");
    pagingRow(picture, ListStyle::Details, "details");
    systemFiles().remove(picture);
}

} // namespace tessera::bench
