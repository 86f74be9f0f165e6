#include "DetailsFixture.h"
#include "ui/AlbumInfoList.h"
#include "ui/AlbumTrackList.h"
#include "ui/PlayingNowList.h"

#include <thread>

namespace tessera {
namespace {

class AlbumInfoTest : public DetailsTest {
protected:
    AlbumInfoTest()
    {
        list.createAlbumInfo(parent.handle());
        handOn(list);
        list.move(kPlace);
        list.show(true);
    }
    void setAlbums(std::initializer_list<int> ids)
    {
        std::vector<Album*> albums;
        for (const int id : ids)
            albums.push_back(&album(id));
        list.setAlbums(albums);
    }
    std::string value(const char* name)
    {
        for (int row = 0; row < list.count(); ++row) {
            if (list.view().text(row, 0) == name)
                return list.view().text(row, 1);
        }
        return "no such row";
    }
    AlbumInfoList list{commands};
};

TEST_F(AlbumInfoTest, OneAlbum)
{
    album(1).genre = "New Age";
    album(1).duration = 2198;
    album(1).minBitrate = album(1).maxBitrate = 192;
    album(1).rank = 7;
    album(1).newDate = 20021003;
    album(1).flags = kAlbumFavourite;
    album(1).thumbnailFile = "C:\\Covers\\tide.jpg";
    setAlbums({1});
    EXPECT_EQ(column(list, 0),
              (Texts{"Title", "Artist", "Genre", "Year", "Type", "Tracks", "Duration", "Bitrate", "Rank",
                     "Favourite", "New", "Compilation", "Artwork", "Folder"}));
    EXPECT_EQ(column(list, 1),
              (Texts{"Tidewater", "The Harbour Quartet", "New Age", "1975", "MP3", "3", "36m 38s", "192 kbps",
                     "Rank 7", "Yes", "No", "No", "C:\\Covers\\tide.jpg", "C:\\Music\\Tidewater"}))
        << "a date stays with an album that is not new any more, and is not shown";
    album(1).set(kAlbumNew, true);
    album(1).rank = 0;
    album(1).maxBitrate = 320;
    list.refresh();
    EXPECT_EQ(value("New"), "Yes, since " + newDateText(20021003));
    EXPECT_EQ(value("Rank"), "Not Ranked");
    EXPECT_EQ(value("Bitrate"), "192 - 320 kbps");
}

TEST_F(AlbumInfoTest, UnknownValues)
{
    album(2).year = -1;
    album(2).flags = kAlbumInternalImage;
    setAlbums({2});
    EXPECT_EQ(value("Genre"), "(Unassigned)");
    EXPECT_EQ(value("Year"), "(Various)") << "the tracks disagree";
    EXPECT_EQ(value("Tracks"), "0");
    EXPECT_EQ(value("Artwork"), "(Internal Image)");
}

TEST_F(AlbumInfoTest, SeveralAlbumsAreSummedUp)
{
    album(1).duration = 3600;
    album(3).duration = 61;
    album(1).flags = kAlbumNew | kAlbumHasImage;
    setAlbums({1, 2, 3});
    EXPECT_EQ(value("Title"), "(3 albums)");
    EXPECT_EQ(value("Artist"), "(Various)");
    EXPECT_EQ(value("Type"), "MP3");
    EXPECT_EQ(value("Year"), "1975 - 1999");
    EXPECT_EQ(value("Tracks"), "5");
    EXPECT_EQ(value("Duration"), "1h 1m 1s");
    EXPECT_EQ(value("New"), "1 of 3");
    EXPECT_EQ(value("Artwork"), "1 of 3");
    EXPECT_EQ(value("Rank"), "Not Ranked");
    setAlbums({1, 2});
    EXPECT_EQ(value("Artist"), "The Harbour Quartet");
    EXPECT_EQ(value("Year"), "1975") << "the one without a year does not count";
}

TEST_F(AlbumInfoTest, ColumnsFillTheList)
{
    setAlbums({1});
    const int name = list.view().columnWidth(0);
    for (const LONG width : {300L, 500L}) {
        list.move({0, 0, width, 400});
        EXPECT_EQ(list.view().columnWidth(0), name);
        EXPECT_EQ(name + list.view().columnWidth(1), width);
    }
    list.move({0, 0, 300, 100});
    EXPECT_EQ(name + list.view().columnWidth(1), 300 - GetSystemMetrics(SM_CXVSCROLL));
}

TEST_F(AlbumInfoTest, RecordsAreLeftAloneWhileAJobRunsAndAfterwards)
{
    setAlbums({1});
    commands.busy = true;
    EXPECT_EQ(list.view().text(0, 1), "");
    commands.busy = false;
    setAlbums({});
    EXPECT_EQ(list.count(), 0);
}

class AlbumTracksTest : public DetailsTest {
protected:
    AlbumTracksTest()
    {
        list.createTrackList(parent.handle());
        handOn(list);
        list.move(kPlace);
    }
    void setAlbums(std::initializer_list<int> ids)
    {
        std::vector<Album*> albums;
        for (const int id : ids)
            albums.push_back(&album(id));
        list.setAlbums(albums);
        list.show(true);
    }
    AlbumTrackList list{commands};
};

TEST_F(AlbumTracksTest, LinesNameTheArtistWhereItIsAnother)
{
    hostTrack(2).artist = u"Guest";
    hostTrack(3).more[FileText::Name] = u"";
    hostTrack(3).more.erase(FileText::DurationText);
    hostTrack(3).duration = 3661;
    hostTrack(5).artist = u"";
    setAlbums({1, 2, 3});
    EXPECT_EQ(column(list, 0),
              (Texts{"Track 1: Part One", "Track 2: Another / Guest", "Track 3: (Unassigned)",
                     "Track 1: First", "Track 2: Second / (Unassigned)"}));
    EXPECT_EQ(column(list, 1), (Texts{"3:21", "3:22", "01:01:01", "3:21", "3:22"}));
}

TEST_F(AlbumTracksTest, TracksThatTheHostDoesNotTellOf)
{
    track(1).m_pMJFile = nullptr;
    setAlbums({1});
    commands.fakeHost.refusing = true;
    EXPECT_EQ(column(list, 0),
              (Texts{"Track 1: (Unassigned)", "Track 2: (Unassigned)", "Track 3: (Unassigned)"}));
    EXPECT_TRUE(commands.messages.empty());
}

TEST_F(AlbumTracksTest, OrderFollowsTheSetting)
{
    setAlbums({1});
    EXPECT_EQ(list.view().text(1, 0), "Track 2: Another");
    commands.generalSettings.sortTracksByLocation = true;
    list.settingsChanged();
    EXPECT_EQ(column(list, 0), (Texts{"Track 2: Another", "Track 1: Part One", "Track 3: Part Three"}));
}

TEST_F(AlbumTracksTest, ReadsOnlyWhatIsInViewAndOnlyOnce)
{
    for (int i = 0; i < 5000; ++i)
        addTracks(commands, album(2), {u"Long"});
    commands.fakeHost.propertyReads = 0;
    setAlbums({1, 2, 3});
    EXPECT_EQ(list.count(), 5005);
    paint(list.view().handle());
    const int reads = commands.fakeHost.propertyReads;
    EXPECT_GT(reads, 0);
    EXPECT_LE(reads, 20 * 5);
    paint(list.view().handle());
    EXPECT_EQ(commands.fakeHost.propertyReads, reads);
    list.view().makeVisible(5004);
    paint(list.view().handle());
    EXPECT_LE(commands.fakeHost.propertyReads, 2 * reads);
    EXPECT_EQ(list.view().text(5004, 0), "Track 2: Second");
    EXPECT_EQ(list.view().text(3, 0), "Track 1: Long");
}

TEST_F(AlbumTracksTest, PlaysTheAlbumFromTheTrack)
{
    setAlbums({2, 1, 3});
    doubleClick(list, 1);
    list.view().select(4);
    pressEnter(list);
    doubleClick(list, -1);
    list.setAlbums({});
    pressEnter(list);
    EXPECT_EQ(commands.calls, (Texts{"play Tidewater from 1", "play Sampler from 1"}));
}

TEST_F(AlbumTracksTest, ShownTrackIsTheSelectedOneOrTheFirst)
{
    setAlbums({2, 1});
    EXPECT_EQ(list.selectedTrack(), nullptr);
    EXPECT_EQ(list.shownTrack(), &track(1));
    list.view().select(2);
    EXPECT_EQ(list.selectedTrack(), &track(3));
    list.show(false);
    std::vector<Album*> other{&album(3)};
    list.setAlbums(other);
    EXPECT_EQ(list.selectedTrack(), nullptr) << "the selection was one of other albums";
    EXPECT_EQ(list.shownTrack(), &track(4));
    list.show(true);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.selectedTrack(), nullptr);
}

TEST_F(AlbumTracksTest, RowsThatCouldNotBeReadAreReadLater)
{
    commands.busy = true;
    setAlbums({1});
    paint(list.view().handle());
    EXPECT_EQ(list.view().text(0, 0), "");
    commands.busy = false;
    EXPECT_EQ(list.view().text(1, 0), "Track 2: Another") << "whoever asks gets an answer";
    PaintCounter counter;
    counter.attach(list.view().handle());
    list.tick();
    UpdateWindow(list.view().handle());
    EXPECT_EQ(counter.paints, 1);
    EXPECT_EQ(list.view().text(0, 0), "Track 1: Part One");
    list.tick();
    UpdateWindow(list.view().handle());
    EXPECT_EQ(counter.paints, 1) << "nothing is missing any more";
    setAlbums({3});
    commands.fakeHost.insideCall = [this] {
        commands.fakeHost.insideCall = nullptr;
        throw std::bad_alloc(); // memory is short for once
    };
    paint(list.view().handle());
    counter.paints = 0;
    list.tick();
    UpdateWindow(list.view().handle());
    EXPECT_EQ(counter.paints, 1);
}

// The host may run a message loop inside a call, and everything may end there.
TEST_F(AlbumTracksTest, AlbumsMayGoWhileARowIsRead)
{
    setAlbums({1});
    commands.fakeHost.insideCall = [this] {
        commands.fakeHost.insideCall = nullptr;
        list.setAlbums({});
        commands.records.clear();
    };
    EXPECT_EQ(list.view().text(0, 0), "");
    EXPECT_EQ(list.count(), 0);
}

class PlayingNowTest : public DetailsTest {
protected:
    PlayingNowTest()
    {
        list.createPlayingNow(parent.handle());
        handOn(list);
        list.move(kPlace);
        commands.fakeHost.entries = {0, 1, 2, 3, 4};
        commands.fakeHost.position = 1;
    }
    void openLong()
    {
        commands.fakeHost.entries.assign(100'000, 0);
        for (std::size_t i = 0; i < commands.fakeHost.entries.size(); ++i)
            commands.fakeHost.entries[i] = i % 5;
        open();
    }
    void open()
    {
        list.show(true);
        UpdateWindow(list.view().handle());
        counter.attach(list.view().handle());
    }
    void tick()
    {
        UpdateWindow(list.view().handle()); // what the test itself has changed
        counter.paints = counter.erases = 0;
        list.tick();
        UpdateWindow(list.view().handle());
    }
    int rowHeight() const
    {
        RECT row{LVIR_BOUNDS, 0, 0, 0};
        list.view().send(LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
        return static_cast<int>(row.bottom - row.top);
    }
    PlayingNowList list{commands};
    PaintCounter counter;
};

TEST_F(PlayingNowTest, ShowsThePlaylist)
{
    hostTrack(4).artist = u"";
    open();
    EXPECT_EQ(column(list, 0),
              (Texts{"Track 1: Part One / The Harbour Quartet", "Track 2: Another / The Harbour Quartet",
                     "Track 3: Part Three / The Harbour Quartet", "Track 1: First / (Unassigned)",
                     "Track 2: Second / (Various)"}));
    EXPECT_EQ(list.view().text(1, 1), "3:22");
    EXPECT_EQ(list.playingRow(), 1);
}

TEST_F(PlayingNowTest, HundredThousandEntriesOpenAtOnce)
{
    commands.fakeHost.position = 77'777;
    openLong();
    EXPECT_EQ(list.count(), 100'000);
    EXPECT_LE(commands.fakeHost.entryReads, 3 * 20) << "the page at first, then the one that plays";
    const auto [first, last] =
        list.view().handle() ? std::pair(list.view().send(LVM_GETTOPINDEX), 0L) : std::pair(0L, 0L);
    EXPECT_GT(first, 77'700);
    EXPECT_LE(first, 77'777);
    EXPECT_EQ(last, 0);
}

TEST_F(PlayingNowTest, NothingIsPaintedWhileNothingChanges)
{
    openLong();
    tick();
    EXPECT_EQ(counter.paints, 0);
    const int reads = commands.fakeHost.entryReads;
    tick();
    EXPECT_LE(commands.fakeHost.entryReads - reads, 20);
    EXPECT_EQ(counter.paints, 0);
    EXPECT_EQ(counter.erases, 0);
}

TEST_F(PlayingNowTest, OnlyTheRowsThatChangeArePainted)
{
    openLong();
    list.view().select(3);
    commands.fakeHost.position = 2;
    tick();
    EXPECT_EQ(counter.paints, 1);
    EXPECT_EQ(counter.erases, 0);
    EXPECT_EQ(counter.area.bottom - counter.area.top, 2 * rowHeight()) << "the rows 1 and 2";
    EXPECT_EQ(list.playingRow(), 2);
    commands.fakeHost.entries[4] = 1;
    tick();
    EXPECT_EQ(counter.erases, 0);
    EXPECT_EQ(counter.area.bottom - counter.area.top, rowHeight());
    EXPECT_EQ(list.view().text(4, 0), "Track 2: Another / The Harbour Quartet");
    EXPECT_EQ(list.selectedRow(), 3);
}

TEST_F(PlayingNowTest, CountChangesKeepSelectionAndPlace)
{
    openLong();
    list.view().makeVisible(5000);
    UpdateWindow(list.view().handle());
    const LRESULT top = list.view().send(LVM_GETTOPINDEX);
    list.view().select(4999);
    commands.fakeHost.entries.push_back(2);
    tick();
    EXPECT_EQ(list.count(), 100'001);
    EXPECT_EQ(counter.paints, 0) << "the new one is out of view";
    EXPECT_EQ(list.view().send(LVM_GETTOPINDEX), top);
    EXPECT_EQ(list.selectedRow(), 4999);
    commands.fakeHost.entries.resize(3);
    tick();
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.selectedRow(), -1);
    EXPECT_EQ(list.view().text(2, 0), "Track 3: Part Three / The Harbour Quartet");
    commands.fakeHost.entries.clear();
    tick();
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.playingRow(), -1);
}

TEST_F(PlayingNowTest, EnterAndDoubleClickJump)
{
    open();
    doubleClick(list, 3);
    list.view().select(0);
    pressEnter(list);
    commands.busy = true;
    pressEnter(list);
    EXPECT_EQ(commands.calls, (Texts{"entry 3", "entry 0"}));
}

TEST_F(PlayingNowTest, HiddenOrBusyItLeavesTheHostAlone)
{
    list.tick();
    commands.busy = true;
    list.show(true);
    list.tick();
    EXPECT_EQ(commands.fakeHost.calls, 5) << "those that made the library";
    EXPECT_EQ(list.count(), 0);
    commands.busy = false;
    list.tick();
    EXPECT_EQ(list.count(), 5);
}

TEST_F(PlayingNowTest, HostIsReadUnderItsLock)
{
    int held = 0;
    int calls = 0;
    commands.fakeHost.insideCall = [&] {
        ++calls;
        std::thread([&] {
            if (commands.hostLock().try_lock())
                commands.hostLock().unlock();
            else
                ++held;
        }).join();
    };
    open();
    list.tick();
    EXPECT_GT(calls, 0);
    EXPECT_EQ(held, calls);
}

TEST_F(PlayingNowTest, HostThatFailsChangesNothing)
{
    open();
    commands.fakeHost.refusing = true;
    commands.fakeHost.entries.clear();
    tick();
    EXPECT_EQ(list.count(), 5);
    EXPECT_EQ(list.playingRow(), 1);
    paint(list.view().handle());
    EXPECT_EQ(list.view().text(0, 0), "Track 1: Part One / The Harbour Quartet");
    EXPECT_TRUE(commands.messages.empty());
    commands.fakeHost.refusing = false;
    commands.fakeHost.hasPlaylist = false;
    tick();
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.playingRow(), -1);
}

// Wherever the host fails or answers nothing: no row may stay as it was before for good.
TEST_F(PlayingNowTest, EveryCallMayFailOnce)
{
    open();
    commands.fakeHost.entries = {4, 3, 2, 1, 0};
    commands.fakeHost.position = 4;
    for (int call = 1; call <= 25; ++call) {
        commands.fakeHost.failingCall = commands.fakeHost.calls + call;
        tick();
        commands.fakeHost.failingCall = 0;
        commands.fakeHost.nullCall = commands.fakeHost.calls + call;
        tick();
        commands.fakeHost.nullCall = 0;
        tick();
        ASSERT_EQ(list.count(), 5) << call;
        ASSERT_EQ(list.view().text(0, 0), "Track 2: Second / (Various)") << call;
        ASSERT_EQ(list.playingRow(), 4) << call;
    }
}

TEST_F(PlayingNowTest, PlayingEntryIsMarked)
{
    const auto darkPixels = [this](int row) {
        RECT bounds{LVIR_LABEL, 0, 0, 0};
        list.view().send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&bounds));
        const WindowDc dc(list.view().handle());
        int count = 0;
        for (LONG y = bounds.top; y < bounds.bottom; ++y) {
            for (LONG x = bounds.left; x < bounds.left + 200; ++x)
                count += GetGValue(GetPixel(dc.dc(), x, y)) < 128 ? 1 : 0;
        }
        return count;
    };
    commands.fakeHost.entries = {0, 0, 0};
    open();
    paint(list.view().handle());
    EXPECT_GT(darkPixels(1), darkPixels(0) * 5 / 4) << "in bold";
    EXPECT_EQ(darkPixels(0), darkPixels(2));
}

} // namespace
} // namespace tessera
