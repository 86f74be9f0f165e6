// The image lists and the loader, with real messages and real pictures.

#include "artwork/Artwork.h"
#include "base/Files.h"
#include "support/FakeHost.h"
#include "support/GdiObjects.h"
#include "support/Recorders.h"
#include "support/TemporaryFolder.h"
#include "system/ComPtr.h"
#include "windowing/Drawing.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

using namespace tessera;
using namespace tessera::test;

namespace {

constexpr COLORREF kBackground = RGB(10, 200, 30);
constexpr COLORREF kRed = RGB(0xE0, 0x20, 0x10); // the left half of the sample pictures

std::string sample(const std::string& name)
{
    std::string folder = "Z:" TESSERA_TEST_DATA "\\pictures\\";
    for (char& c : folder)
        c = c == '/' ? '\\' : c;
    return folder + name;
}

class LogTo : public Log {
public:
    explicit LogTo(RecordingLog& log) : m_log(log) {}
    void startTimer() override { m_log.startTimer(); }
    void indent() override { m_log.indent(); }
    void outdent() override { m_log.outdent(); }
    void line(const std::string& text) override { m_log.line(text); }
    void progress(std::uint32_t done, std::uint32_t total) override { m_log.progress(done, total); }

private:
    RecordingLog& m_log;
};

class Listener : public CoverListener {
public:
    void coversArrived(const std::vector<Album*>& albums) override
    {
        arrived.insert(arrived.end(), albums.begin(), albums.end());
    }
    void imageListsRebuilt() override { ++rebuilt; }
    std::vector<Album*> arrived;
    int rebuilt = 0;
};

// A host whose one track holds a picture, which it copies nowhere: the file is its answer.
class PictureInsideATrack : public FakeHost {
public:
    explicit PictureInsideATrack(const std::string& picture)
    {
        tracks.resize(1);
        tracks[0].fileName = u"C:\\a.mp3";
        tracks[0].embeddedImage = picture;
        track.m_pMJFile = file("C:\\a.mp3");
    }

    Track track;
};

class ArtworkTest : public testing::Test {
protected:
    ArtworkTest() : artwork(parts()) { artwork.addListener(listener); }
    ~ArtworkTest() override { artwork.removeListener(listener); }

    ArtworkParts parts()
    {
        return {settings,
                balloon,
                terminating,
                [] { return kBackground; },
                [this] { return std::make_unique<LogTo>(log); },
                [this] { loadingStates.push_back(artwork.loading()); },
                [this] { return hostMayBeCalled; },
                [] { return CoverPlaces(); }};
    }

    Album& add(const std::string& picture)
    {
        const auto id = static_cast<std::int32_t>(library.albums.size()) + 1;
        auto& album = library.albums[id];
        album = std::make_unique<Album>();
        album->id = id;
        album->thumbnailFile = picture;
        return *album;
    }
    void addMany(int count, const std::string& picture)
    {
        for (int i = 0; i < count; ++i)
            add(picture);
    }
    void open(bool thumbnails = false)
    {
        artwork.initArtwork();
        artwork.openLibrary(library, thumbnails);
    }
    // Pumps until the condition holds; false after ten seconds.
    template <class Condition>
    static bool pumpUntil(Condition condition)
    {
        const DWORD start = GetTickCount();
        while (!condition()) {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
            if (GetTickCount() - start > 10000)
                return false;
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        }
        return true;
    }
    bool loadAll()
    {
        artwork.startBackgroundLoading();
        return pumpUntil([this] { return !artwork.loading(); });
    }

    // What a list draws at a place of an image, on white.
    static COLORREF drawn(HIMAGELIST list, int index, int x, int y)
    {
        const WindowDc screen;
        const MemoryDc memory(screen.dc());
        const BitmapHandle bitmap(CreateCompatibleBitmap(screen.dc(), 256, 256));
        const SelectScope selected(memory.dc(), bitmap.get());
        fillRect(memory.dc(), {0, 0, 256, 256}, RGB(255, 255, 255));
        ImageList_Draw(list, index, memory.dc(), 0, 0, ILD_NORMAL);
        return GetPixel(memory.dc(), x, y);
    }
    // The samples are 40 by 24: a red half beside a blue one.
    void expectSample(int index)
    {
        EXPECT_EQ(drawn(artwork.large(), index, 10, 37), kRed);
        EXPECT_EQ(drawn(artwork.large(), index, 10, 5), kBackground);
        EXPECT_EQ(drawn(artwork.medium(), index, 10, 32), kRed);
        EXPECT_EQ(drawn(artwork.medium(), index, 10, 5), kBackground);
        EXPECT_EQ(drawn(artwork.smallList(), index, 4, 8), kRed);
        EXPECT_EQ(drawn(artwork.balloon(), index, 10, 32), kRed);
        EXPECT_EQ(drawn(artwork.balloon(), index, 10, 5), GetSysColor(COLOR_INFOBK));
    }
    static SIZE imageSize(HIMAGELIST list)
    {
        int width = 0;
        int height = 0;
        ImageList_GetIconSize(list, &width, &height);
        return {width, height};
    }

    ComInit com;
    ArtworkSettings settings;
    BalloonSettings balloon;
    std::atomic<bool> terminating{false};
    RecordingLog log;
    std::vector<bool> loadingStates;
    bool hostMayBeCalled = true;
    Listener listener;
    Library library;
    Artwork artwork;
};

} // namespace

TEST_F(ArtworkTest, SizesFollowTheSettings)
{
    constexpr struct {
        std::int32_t index, width, height;
        SIZE size;
    } kCases[] = {{0, 110, 110, {75, 75}}, {3, 110, 110, {150, 150}}, {5, 0, 0, {200, 200}},
                  {6, 200, 80, {200, 80}}, {6, 0, -5, {110, 110}},    {6, 1 << 30, 7, {1024, 7}},
                  {7, 110, 110, {75, 75}}, {-1, 110, 110, {75, 75}},  {INT32_MAX, 1, 1, {75, 75}}};
    artwork.initArtwork();
    for (const auto& each : kCases) {
        settings.imageSizeIndex = each.index;
        settings.customWidth = each.width;
        settings.customHeight = each.height;
        artwork.resetImageLists(true);
        const SIZE size = imageSize(artwork.large());
        EXPECT_EQ(size.cx, each.size.cx);
        EXPECT_EQ(size.cy, each.size.cy);
        EXPECT_EQ(artwork.largeSize().cx, each.size.cx);
    }
    EXPECT_EQ(imageSize(artwork.medium()).cx, 64);
    EXPECT_EQ(imageSize(artwork.smallList()).cy, 16);
    EXPECT_EQ(listener.rebuilt, 10);
}

TEST_F(ArtworkTest, BalloonListOnlyWhenBalloonsShowPictures)
{
    artwork.initArtwork();
    balloon.width = 90;
    balloon.height = 40;
    artwork.resetImageLists(true);
    EXPECT_EQ(imageSize(artwork.balloon()).cx, 90);
    EXPECT_EQ(imageSize(artwork.balloon()).cy, 40);
    const auto without = [this](auto member, auto value) {
        const auto kept = balloon.*member;
        balloon.*member = value;
        artwork.resetImageLists(true);
        EXPECT_EQ(artwork.balloon(), nullptr);
        balloon.*member = kept;
    };
    without(&BalloonSettings::enabled, false);
    without(&BalloonSettings::showArtwork, false);
    without(&BalloonSettings::width, 0);
    without(&BalloonSettings::height, -1);
}

TEST_F(ArtworkTest, LoaderFillsTheListsInOrderAndSaysSo)
{
    Album& first = add(sample("baseline.jpg"));
    Album& none = add("");
    Album& broken = add(sample("README.md"));
    Album& gone = add(sample("missing.png"));
    Album& last = add(sample("rgb.png"));
    open();
    EXPECT_EQ(artwork.slots(), 5);
    ASSERT_TRUE(loadAll());
    EXPECT_EQ(log.lines,
              (std::vector<std::string>{"Beginning background loading of images", "Loading", "Finished"}));
    EXPECT_EQ(log.percents[1], 100u);
    EXPECT_EQ(loadingStates, (std::vector<bool>{true, false}));
    EXPECT_EQ(none.imageIndex, 0);
    EXPECT_EQ(broken.imageIndex, 0);
    EXPECT_EQ(gone.imageIndex, 0);
    EXPECT_EQ(first.imageIndex, 1);
    EXPECT_EQ(last.imageIndex, 2);
    EXPECT_EQ(listener.arrived, (std::vector<Album*>{&first, &last}));
    for (const HIMAGELIST list : {artwork.large(), artwork.medium(), artwork.smallList(), artwork.balloon()})
        EXPECT_EQ(ImageList_GetImageCount(list), 5);
    expectSample(last.imageIndex);
    EXPECT_EQ(artwork.imageIndex(last), 2);
}

TEST_F(ArtworkTest, CoversOnTheScreenComeFirst)
{
    addMany(200, sample("progressive.jpg"));
    open();
    EXPECT_EQ(artwork.imageIndex(*library.albums[150]), -1); // nobody loads yet
    artwork.startBackgroundLoading();
    Album& seen = *library.albums[150];
    EXPECT_EQ(artwork.imageIndex(seen), 0);
    ASSERT_TRUE(pumpUntil([&] { return seen.imageIndex > 0; }));
    EXPECT_LT(seen.imageIndex, 30);
    EXPECT_TRUE(artwork.loading());
    ASSERT_TRUE(pumpUntil([this] { return !artwork.loading(); }));
    std::set<int> indices;
    for (const auto& [id, album] : library.albums)
        indices.insert(album->imageIndex);
    EXPECT_EQ(indices.size(), 200u);
    EXPECT_EQ(*indices.begin(), 1);
}

TEST_F(ArtworkTest, WithoutTheLoaderTheAskerLoads)
{
    settings.backgroundLoading = false;
    Album& album = add(sample("rgb.bmp"));
    Album& broken = add(sample("README.md"));
    open();
    artwork.startBackgroundLoading();
    EXPECT_FALSE(artwork.loading());
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(artwork.imageIndex(album), 1);
    EXPECT_EQ(artwork.imageIndex(broken), 0);
    expectSample(1);
}

// The host may run messages inside its call, paint among them, and close the library.
TEST_F(ArtworkTest, WithoutTheLoaderTheHostIsAskedOnceThePaintIsOver)
{
    settings.backgroundLoading = false;
    const TemporaryFolder folder("artwork-asked");
    const std::string temporary = folder.file("TS2.tmp");
    PictureInsideATrack host(temporary);
    for (int i = 0; i < 3; ++i) {
        Album& inside = add("");
        inside.set(kAlbumInternalImage, true);
        inside.tracks[1] = &host.track;
    }
    const auto ask = [&] {
        for (const auto& [id, album] : library.albums)
            EXPECT_EQ(artwork.imageIndex(*album), 0);
        EXPECT_TRUE(host.imageQueries.empty());
    };
    const auto pumpTurns = [] {
        const DWORD start = GetTickCount();
        pumpUntil([&] { return GetTickCount() - start > 60; });
    };
    open();
    host.insideCall = [&] {
        ASSERT_TRUE(CopyFileA(sample("rgb.png").c_str(), temporary.c_str(), FALSE));
        const std::size_t asked = host.imageQueries.size();
        hostMayBeCalled = false;
        artwork.imageIndex(*library.albums[1]);
        pumpTurns();
        EXPECT_EQ(host.imageQueries.size(), asked);
        hostMayBeCalled = true;
    };
    hostMayBeCalled = false;
    ask();
    pumpTurns();
    EXPECT_TRUE(host.imageQueries.empty());
    hostMayBeCalled = true;
    ASSERT_TRUE(pumpUntil([this] { return listener.arrived.size() == 3; }));
    EXPECT_EQ(host.imageQueries.size(), 3u);
    expectSample(library.albums[1]->imageIndex);
    EXPECT_FALSE(systemFiles().exists(temporary));

    host.imageQueries.clear();
    artwork.resetImageLists(true);
    host.insideCall = [&] {
        artwork.closeLibrary();
        library.clear();
    };
    ask();
    ASSERT_TRUE(pumpUntil([&] { return library.albums.empty(); }));
    pumpTurns();
    EXPECT_EQ(host.imageQueries.size(), 1u);
    EXPECT_EQ(listener.arrived.size(), 3u);
}

TEST_F(ArtworkTest, ThumbnailsInTheDatabaseOpenNoFile)
{
    const std::vector<std::uint8_t> bytes = systemFiles().readAll(sample("rgb.png")).value();
    Album& kept = add(sample("missing.jpg"));
    kept.m_hGlobalThumbnail = bytes;
    Album& other = add(sample("baseline.jpg"));
    open(true);
    ASSERT_TRUE(loadAll());
    EXPECT_EQ(other.imageIndex, 0);
    EXPECT_EQ(kept.imageIndex, 1);
    expectSample(1);
    settings.imageSizeIndex = 1; // and again after a rebuild
    artwork.resetImageLists(true);
    EXPECT_EQ(kept.imageIndex, -1);
    ASSERT_TRUE(loadAll());
    EXPECT_EQ(kept.imageIndex, 1);
    EXPECT_EQ(drawn(artwork.large(), 1, 10, 50), kRed);
}

TEST_F(ArtworkTest, PictureInsideATrackLeavesNoFile)
{
    const TemporaryFolder folder("artwork-embedded");
    const std::string temporary = folder.file("TS2.tmp");
    ASSERT_TRUE(CopyFileA(sample("rgb.png").c_str(), temporary.c_str(), FALSE));
    PictureInsideATrack host(temporary);
    Album& inside = add("");
    inside.set(kAlbumInternalImage, true);
    inside.tracks[1] = &host.track;
    Album& noTrack = add("");
    noTrack.set(kAlbumInternalImage, true);
    open();
    ASSERT_TRUE(loadAll());
    EXPECT_EQ(host.imageQueries, std::vector<std::string>{"2 C:\\a.mp3"});
    EXPECT_EQ(inside.imageIndex, 1);
    EXPECT_EQ(inside.thumbnailFile, "");
    EXPECT_EQ(noTrack.imageIndex, 0);
    EXPECT_FALSE(systemFiles().exists(temporary));
    expectSample(1);

    host.failingCall = host.calls + 1; // a host that refuses
    artwork.resetImageLists(true);
    ASSERT_TRUE(loadAll());
    EXPECT_EQ(inside.imageIndex, 0);
}

TEST_F(ArtworkTest, DefaultImageIsTheUsersOrTheBuiltInOne)
{
    settings.defaultImage = sample("rgb.png");
    artwork.initArtwork();
    expectSample(0);
    settings.defaultImage = sample("missing.png");
    artwork.resetImageLists(true);
    const COLORREF corner = drawn(artwork.large(), 0, 3, 3);
    EXPECT_NE(corner, kBackground); // a square one
    EXPECT_NE(corner, RGB(0, 0, 0));
    settings.defaultImage = "";
    artwork.resetImageLists(true);
    EXPECT_EQ(drawn(artwork.large(), 0, 3, 3), corner);
}

// With 1024 by 1024 pixels some 120 slots are all that the budget allows.
TEST_F(ArtworkTest, WhatDoesNotFitTakesTheSlotThatWasDrawnLongestAgo)
{
    settings.imageSizeIndex = 6;
    settings.customWidth = settings.customHeight = 1024;
    addMany(200, sample("plain.gif"));
    library.albums[200]->thumbnailFile = sample("rgb.png");
    open();
    const int slots = artwork.slots();
    ASSERT_GT(slots, 50);
    ASSERT_LT(slots, 130);
    ASSERT_TRUE(loadAll());
    EXPECT_GT(library.albums[slots - 1]->imageIndex, 0);
    EXPECT_EQ(library.albums[slots]->imageIndex, -1);
    for (int id = 1; id < slots; ++id)
        if (id != 7)
            artwork.imageIndex(*library.albums[id]);
    Album& late = *library.albums[200];
    EXPECT_EQ(artwork.imageIndex(late), 0);
    ASSERT_TRUE(pumpUntil([&] { return late.imageIndex > 0; }));
    EXPECT_EQ(late.imageIndex, 7);
    EXPECT_EQ(library.albums[7]->imageIndex, -1);
    EXPECT_EQ(drawn(artwork.medium(), 7, 10, 32), kRed);
    EXPECT_EQ(artwork.imageIndex(*library.albums[7]), 0); // and back it comes
    ASSERT_TRUE(pumpUntil([&] { return library.albums[7]->imageIndex > 0; }));
}

TEST_F(ArtworkTest, StopsAtOnceAndStartsAfresh)
{
    addMany(300, sample("baseline.jpg"));
    open();
    artwork.startBackgroundLoading();
    ASSERT_TRUE(pumpUntil([this] { return library.albums[5]->imageIndex > 0; }));
    const DWORD start = GetTickCount();
    artwork.stopBackgroundLoading();
    EXPECT_LT(GetTickCount() - start, 500u);
    EXPECT_FALSE(artwork.loading());
    EXPECT_EQ(artwork.imageIndex(*library.albums[299]), -1);
    EXPECT_GT(artwork.imageIndex(*library.albums[5]), 0);
    artwork.stopBackgroundLoading();
    ASSERT_TRUE(loadAll());
    EXPECT_GT(library.albums[300]->imageIndex, 0);
}

TEST_F(ArtworkTest, RecordsMayGoOnceTheLibraryIsClosed)
{
    addMany(50, sample("progressive.jpg"));
    open();
    artwork.startBackgroundLoading();
    ASSERT_TRUE(pumpUntil([this] { return library.albums[3]->imageIndex > 0; }));
    artwork.closeLibrary();
    EXPECT_EQ(library.albums[3]->imageIndex, -1);
    library.clear();
    EXPECT_EQ(artwork.slots(), 1);
    Album stray;
    EXPECT_EQ(artwork.imageIndex(stray), -1);
}

TEST_F(ArtworkTest, NothingIsLeftBehind)
{
    for (const char* name : {"baseline.jpg", "rgb.png", "transparent.gif", "transparent.ico", "palette.bmp",
                             "README.md", "missing.jpg", "cmyk.jpg"})
        add(sample(name));
    open();
    ASSERT_TRUE(loadAll());
    artwork.release();
    const int before = gdiObjects();
    ASSERT_GT(before, 0);
    for (int round = 0; round < 5; ++round) {
        open();
        ASSERT_TRUE(loadAll());
        artwork.release();
    }
    EXPECT_EQ(gdiObjects(), before);
}

// Address space is taken away until the lists cannot have what they want: they make do with fewer
// slots, and what they have really holds pictures.
TEST(CoverListsTest, ShortMemoryMeansFewerSlots)
{
    CoverGrounds grounds;
    grounds[kLargeCovers] = makeGround({200, 200}, false, kBackground);
    std::vector<void*> taken;
    constexpr std::size_t kPiece = 16 * 1024 * 1024;
    while (void* const piece = VirtualAlloc(nullptr, kPiece, MEM_RESERVE, PAGE_NOACCESS))
        taken.push_back(piece);
    ASSERT_GT(taken.size(), 20u);
    for (int i = 0; i < 10; ++i) {
        VirtualFree(taken.back(), 0, MEM_RELEASE);
        taken.pop_back();
    }
    CoverLists lists;
    const bool made = lists.create(grounds, 3000);
    const int slots = lists.slots();
    FittedCover red;
    red[kLargeCovers] = grounds[kLargeCovers]->image.pixels;
    for (std::size_t i = 0; i < red[kLargeCovers].size(); ++i)
        red[kLargeCovers][i] = i % 4 >= 2 ? 255 : 0;
    const bool put = made && lists.put(slots - 1, red);
    for (void* const piece : taken)
        VirtualFree(piece, 0, MEM_RELEASE);
    ASSERT_TRUE(made);
    EXPECT_TRUE(put);
    EXPECT_GT(slots, 1);
    EXPECT_LT(slots, 1200);
    const WindowDc screen;
    const MemoryDc memory(screen.dc());
    const BitmapHandle bitmap(CreateCompatibleBitmap(screen.dc(), 200, 200));
    const SelectScope selected(memory.dc(), bitmap.get());
    ImageList_Draw(lists.list(kLargeCovers), slots - 1, memory.dc(), 0, 0, ILD_NORMAL);
    EXPECT_EQ(GetPixel(memory.dc(), 199, 199), RGB(255, 0, 0));
    ImageList_Draw(lists.list(kLargeCovers), 0, memory.dc(), 0, 0, ILD_NORMAL);
    EXPECT_EQ(GetPixel(memory.dc(), 100, 100), kBackground);
}

namespace {

// A host that answers when it is let.
class SlowFile : public HostFile {
public:
    std::string text(FileText) override { return {}; }
    std::u16string wideText(FileText) override { return {}; }
    std::int32_t number(FileNumber) override { return 0; }
    std::string image(ImageKind) override
    {
        asked.set();
        answer.wait(20000);
        return {};
    }
    Event asked;
    Event answer;
};

} // namespace

TEST(CoverLoaderTest, LoaderThatIsStuckKeepsWhatItUses)
{
    const auto file = std::make_shared<SlowFile>();
    auto grounds = std::make_shared<const CoverGrounds>();
    const std::weak_ptr<const CoverGrounds> watched = grounds;
    auto loader = std::make_unique<CoverLoader>(std::move(grounds), nullptr, WM_APP);
    Album album;
    loader->add({&album, {{}, file, {}}}, CoverLoader::Turn::Last);
    ASSERT_TRUE(file->asked.wait(5000));
    EXPECT_FALSE(loader->stop(50));
    loader.reset();
    EXPECT_FALSE(watched.expired());
    file->answer.set();
    for (int i = 0; i < 500 && !watched.expired(); ++i)
        Sleep(10);
    EXPECT_TRUE(watched.expired());
}

TEST(CoverLoaderTest, IdleLoaderStopsAtOnce)
{
    for (int round = 0; round < 200; ++round) { // the stop may meet the loader on its way to sleep
        CoverLoader loader(std::make_shared<const CoverGrounds>(), nullptr, WM_APP);
        if (round % 2 == 0)
            Sleep(1);
        ASSERT_TRUE(loader.stop(5000));
    }
}

TEST(CoverGrounds, BumpEdgeTakesTwoPixelsEachSide)
{
    const CoverGround ground = makeGround({64, 64}, true, kBackground);
    EXPECT_EQ(ground.inside, (PixelRect{2, 2, 60, 60}));
    EXPECT_EQ(ground.colour, (PixelColour{30, 200, 10}));
    EXPECT_NE(ground.image.pixels[0], 30);
    EXPECT_EQ(makeGround({75, 75}, false, kBackground).inside, (PixelRect{0, 0, 75, 75}));
}
