#pragma once

#include "artwork/CoverLists.h"
#include "artwork/CoverLoader.h"
#include "artwork/Covers.h"
#include "artwork/SlotTable.h"
#include "ports/Log.h"
#include "settings/Settings.h"
#include "windowing/Window.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>

namespace tessera {

// What the covers need of the controller.
struct ArtworkParts {
    const ArtworkSettings& settings;
    const BalloonSettings& balloon;
    const std::atomic<bool>& terminating;
    std::function<COLORREF()> background; // of the lists that show covers
    std::function<std::unique_ptr<Log>()> newLog;
    std::function<void()> loadingChanged; // background loading has started or ended
    std::function<bool()> mayCallHost;    // on the user-interface thread, just now
    std::function<CoverPlaces()> places;  // as the settings are now
};

// The covers of the library in use, in four image lists with one index. User-interface thread
// only, and the only one that knows of records and lists: the loader's thread turns copies of
// encoded pictures into pixels and no more.
class Artwork final : public Mapped<Artwork>, public Covers {
public:
    static std::span<const MapEntry<Artwork>> messageMap();

    explicit Artwork(ArtworkParts parts);
    ~Artwork() override;

    // Makes the lists, for the default cover alone.
    void initArtwork();
    // Stops loading. With `rebuild`, the lists are made anew for the settings as they are now, all
    // indices are -1, and the listeners are told.
    void resetImageLists(bool rebuild);
    void updateArtworkSize();
    // A slot for every album with a picture, as far as memory goes. `thumbnails`: the pictures are in
    // the records.
    void openLibrary(Library& library, bool thumbnails);
    // Before the records go.
    void closeLibrary();
    void startBackgroundLoading();
    void stopBackgroundLoading();
    // Loads every cover in database order; false once that is done, though covers that had no room
    // may still come when they are seen.
    bool loading() const { return m_passLog != nullptr; }
    // The end of everything; no list is left.
    void release();
    // For the library in use.
    const CoverPlaces& places() const { return m_places; }

    int getAlbumImageIndex(Album& album);

    void addListener(CoverListener& listener) override;
    void removeListener(CoverListener& listener) override;
    int imageIndex(Album& album) override { return getAlbumImageIndex(album); }
    std::string pictureFile(const Album& album) const override { return coverFile(album, m_places); }
    HIMAGELIST large() const override { return m_lists.list(kLargeCovers); }
    HIMAGELIST medium() const override { return m_lists.list(kMediumCovers); }
    HIMAGELIST smallList() const override { return m_lists.list(kSmallCovers); }
    HIMAGELIST balloon() const override { return m_lists.list(kBalloonCovers); }
    SIZE largeSize() const override { return m_largeSize; }
    int slots() const { return m_lists.slots(); }

private:
    WindowClass windowClass() const override { return {.name = "TesseraArtwork"}; }
    Handled onCovers(const Message& message);
    Handled onTimer(const Message& message);

    void createLists();
    int picturedAlbums() const;
    CoverGrounds makeGrounds() const;
    std::optional<SIZE> balloonSize() const;
    void loadDefaultImage();
    void forgetIndices();

    int loadNow(Album& album);
    std::optional<FittedCover> readFitted(const Album& album) const;
    void askLater(Album& album);
    void askHost();
    void addWanted(Album& album);
    int addPicture(Album& album, const FittedCover& cover);
    void want(Album& album);
    void submit(Album& album, CoverLoader::Turn turn);
    void takeResults();
    bool settle(CoverResult& result);
    void feedLoader();
    Album* nextWanted();
    Album* nextInOrder();
    void endPass();
    void tell(const std::vector<Album*>& arrived);

    ArtworkParts m_parts;
    std::vector<CoverListener*> m_listeners;
    SIZE m_largeSize{75, 75};
    CoverLists m_lists;
    std::shared_ptr<const CoverGrounds> m_grounds;
    SlotTable m_slots;
    Library* m_library = nullptr; // null: none in use
    bool m_thumbnails = false;
    CoverPlaces m_places;      // for the library in use
    unsigned m_generation = 0; // of records and lists

    std::unique_ptr<CoverLoader> m_loader;
    std::unordered_map<Album*, bool> m_underWay; // at the loader; true: somebody waits for it
    std::deque<Album*> m_wanted;                 // asked for, the latest last; without a loader: of the host
    Albums::iterator m_next{};                   // of the walk in database order
    std::uint32_t m_walked = 0;
    std::unique_ptr<Log> m_passLog; // while the walk goes on
};

// The large list's size in pixels; what makes no sense becomes the default, what is absurd the
// largest one.
SIZE artworkSize(const ArtworkSettings& settings);

} // namespace tessera
