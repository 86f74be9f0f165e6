#include "ui/TrackDetails.h"
#include "DetailsFixture.h"
#include "base/Files.h"
#include "support/GdiObjects.h"
#include "support/TemporaryFolder.h"
#include "system/Com.h"
#include "ui/ids.h"

#include <cstring>

namespace tessera {
namespace {

constexpr COLORREF kRed = RGB(200, 30, 20);
constexpr COLORREF kBlue = RGB(20, 40, 210);
constexpr COLORREF kGreen = RGB(10, 150, 60);

std::vector<std::uint8_t> bitmapBytes(int width, int height, COLORREF colour)
{
    const auto row = static_cast<std::size_t>((width * 3 + 3) / 4 * 4);
    std::vector<std::uint8_t> bytes(54 + row * static_cast<std::size_t>(height));
    BITMAPFILEHEADER file{0x4D42, static_cast<DWORD>(bytes.size()), 0, 0, 54};
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    std::memcpy(bytes.data(), &file, 14);
    std::memcpy(bytes.data() + 14, &info, 40);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* const pixel =
                &bytes[54 + row * static_cast<std::size_t>(y) + 3 * static_cast<std::size_t>(x)];
            pixel[0] = GetBValue(colour);
            pixel[1] = GetGValue(colour);
            pixel[2] = GetRValue(colour);
        }
    }
    return bytes;
}

class TrackDetailsTest : public DetailsTest {
protected:
    enum Entry {
        kAlbumImage,
        kTrackImage,
        kComments,
        kLyrics,
        kNotes,
        kCustom1,
        kCustom2,
        kCustom3,
        kDetails
    };

    TrackDetailsTest()
    {
        writePicture("default.bmp", 10, 10, kGreen);
        commands.artworkSettings.defaultImage = m_folder.file("default.bmp");
        commands.generalSettings.disableNotes = false;
        parent.onNotify = [this](NMHDR& header) { return details.answer(header); };
        parent.onCommand = [this](UINT id, UINT code) {
            if (id == controlId::kTrackDetailsCombo && code == CBN_SELCHANGE)
                details.choiceMade();
        };
        hostTrack(1).more[FileText::Comment] = u"one\ntwo\r\nthree";
        hostTrack(1).more[FileText::Lyrics] = u"La la";
        hostTrack(1).more[FileText::Notes] = u"Noted";
        hostTrack(1).more[FileText::Custom1] = u"first";
        hostTrack(1).more[FileText::Custom2] = u"second";
        hostTrack(1).more[FileText::Custom3] = u"third";
    }
    void open()
    {
        details.createTrackDetails(parent.handle(), "PaneAlbumDetails");
        details.move(kPlace);
        details.show(true);
    }
    // As a user does it.
    void choose(int entry)
    {
        const ComboBoxEx& combo = details.combo();
        combo.select(entry);
        SendMessageA(parent.handle(), WM_COMMAND, MAKEWPARAM(controlId::kTrackDetailsCombo, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo.handle()));
    }
    std::string textShown() const { return windowText(child(controlId::kTrackDetailsText)); }
    HWND child(int id) const { return GetDlgItem(parent.handle(), id); }
    std::string writePicture(const std::string& name, int width, int height, COLORREF colour)
    {
        const std::vector<std::uint8_t> bytes = bitmapBytes(width, height, colour);
        systemFiles().create(m_folder.file(name))->write(bytes);
        return m_folder.file(name);
    }
    COLORREF pixel(int id, int x, int y) const
    {
        paint(child(id));
        return GetPixel(WindowDc(child(id)).dc(), x, y);
    }
    // The part of the box that is not background.
    RECT pictureIn(int id) const
    {
        paint(child(id));
        RECT area{};
        GetClientRect(child(id), &area);
        RECT found{area.right, area.bottom, 0, 0};
        const WindowDc dc(child(id));
        for (LONG x = 0; x < area.right; ++x) {
            if (GetPixel(dc.dc(), x, area.bottom / 2) != commands.background) {
                found.left = std::min(found.left, x);
                found.right = std::max(found.right, x + 1);
            }
        }
        for (LONG y = 0; y < area.bottom; ++y) {
            if (GetPixel(dc.dc(), area.right / 2, y) != commands.background) {
                found.top = std::min(found.top, y);
                found.bottom = std::max(found.bottom, y + 1);
            }
        }
        return found;
    }
    std::size_t imageQueries() const { return commands.fakeHost.imageQueries.size(); }

    ComInit m_com;
    TemporaryFolder m_folder{"track-details"};
    TrackDetails details{commands};
};

TEST_F(TrackDetailsTest, ChoiceShowsItsControlAndIsRemembered)
{
    commands.albumDetailsSettings.trackDetailsCombo = 99;
    open();
    EXPECT_EQ(details.selectedEntry(), 0);
    EXPECT_EQ(commands.albumDetailsSettings.trackDetailsCombo, 99) << "until the user chooses";
    const int controls[] = {
        controlId::kAlbumArtwork,     controlId::kTrackArtwork,     controlId::kTrackDetailsText,
        controlId::kTrackDetailsText, controlId::kTrackDetailsText, controlId::kTrackDetailsText,
        controlId::kTrackDetailsText, controlId::kTrackDetailsText, controlId::kTrackDetails};
    for (int entry = 0; entry < 9; ++entry) {
        choose(entry);
        EXPECT_EQ(commands.albumDetailsSettings.trackDetailsCombo, entry);
        for (const int id : {controlId::kAlbumArtwork, controlId::kTrackArtwork, controlId::kTrackDetailsText,
                             controlId::kTrackDetails})
            EXPECT_EQ(IsWindowVisible(child(id)) != FALSE, id == controls[entry]) << id;
        EXPECT_EQ(details.shownControl(), child(controls[entry]));
    }
    details.show(false);
    EXPECT_FALSE(IsWindowVisible(child(controlId::kTrackDetails)));
}

TEST_F(TrackDetailsTest, TextsAreFetchedWhenTheyAreFirstShownAndOnce)
{
    open();
    details.setTrack(&track(1), &album(1));
    EXPECT_EQ(commands.fakeHost.textReads[FileText::Comment], 0);
    const struct {
        int entry;
        FileText field;
        const char* text;
    } texts[] = {{kComments, FileText::Comment, "one\r\ntwo\r\nthree"},
                 {kLyrics, FileText::Lyrics, "La la"},
                 {kNotes, FileText::Notes, "Noted"},
                 {kCustom1, FileText::Custom1, "first"},
                 {kCustom2, FileText::Custom2, "second"},
                 {kCustom3, FileText::Custom3, "third"}};
    for (int round = 0; round < 2; ++round) {
        for (const auto& text : texts) {
            choose(text.entry);
            EXPECT_EQ(textShown(), text.text);
            EXPECT_EQ(commands.fakeHost.textReads[text.field], 1) << text.text;
        }
    }
    choose(kLyrics);
    details.setTrack(&track(2), &album(1));
    EXPECT_EQ(textShown(), "");
    details.setTrack(&track(1), &album(1));
    EXPECT_EQ(textShown(), "La la");
    details.setTrack(nullptr, nullptr);
    EXPECT_EQ(textShown(), "");
}

TEST_F(TrackDetailsTest, NotesAndLyricsThatAreSwitchedOff)
{
    commands.generalSettings.disableNotes = true;
    open();
    details.setTrack(&track(1), &album(1));
    choose(kNotes);
    EXPECT_EQ(textShown(), "***  Notes disabled for performance reasons  ***\r\n"
                           "***  Use Options/General to re-enable support  ***");
    choose(kLyrics);
    EXPECT_EQ(textShown(), "***  Lyrics disabled for performance reasons  ***\r\n"
                           "***  Use Options/General to re-enable support  ***");
    choose(kDetails);
    paint(child(controlId::kTrackDetails));
    EXPECT_EQ(commands.fakeHost.textReads[FileText::Notes], 0);
    EXPECT_EQ(commands.fakeHost.textReads[FileText::Lyrics], 0);
    choose(kLyrics);
    commands.generalSettings.disableNotes = false;
    details.settingsChanged();
    EXPECT_EQ(textShown(), "La la");
}

TEST_F(TrackDetailsTest, TextIsPlainAndMayBeLong)
{
    open();
    choose(kComments);
    const std::u16string rich = u"{\\rtf1\\ansi {\\b bold} text\\par}";
    hostTrack(1).more[FileText::Comment] = rich;
    details.setTrack(&track(1), &album(1));
    EXPECT_EQ(textShown(), toCodePage(rich));
    std::u16string lines;
    for (int line = 0; line < 1000; ++line)
        lines += u"A line as they come in lyrics\n";
    lines += u"the end";
    hostTrack(2).more[FileText::Comment] = lines;
    details.setTrack(&track(2), &album(1));
    EXPECT_EQ(textShown().size(), lines.size() + 1000u);
    EXPECT_TRUE(textShown().ends_with("\r\nthe end"));
    hostTrack(3).more[FileText::Comment] = std::u16string(5000, u'x') + u" y\r\r\nz";
    details.setTrack(&track(3), &album(1));
    const std::string part(2000, 'x');
    EXPECT_EQ(textShown(), part + "\r\n" + part + "\r\n" + std::string(1000, 'x') + " y\r\n\r\nz")
        << "a line that would take minutes is broken";
    hostTrack(1).more[FileText::Custom1] = std::u16string(10'000'000, u'\n');
    details.setTrack(&track(1), &album(1));
    choose(kCustom1);
    EXPECT_TRUE(textShown().ends_with("..."));
}

TEST_F(TrackDetailsTest, DetailsListHasEveryField)
{
    test::HostTrack& host = hostTrack(1);
    host.genre = u"Jazz";
    host.year = 1975;
    host.bitrate = 192;
    host.rating = 4;
    host.more[FileText::FileSize] = u"22,714kb";
    open();
    choose(kDetails);
    details.setTrack(&track(1), &album(1));
    const ListView list(child(controlId::kTrackDetails));
    std::map<std::string, std::string> values;
    for (int row = 0; row < list.count(); ++row)
        values[list.text(row, 0)] = list.text(row, 1);
    EXPECT_EQ(values.size(), 19u);
    EXPECT_EQ(values["Name"], "Part One");
    EXPECT_EQ(values["Artist"], "The Harbour Quartet");
    EXPECT_EQ(values["Track Number"], "1");
    EXPECT_EQ(values["Year"], "1975");
    EXPECT_EQ(values["Bitrate"], "192 kbps");
    EXPECT_EQ(values["Rating"], "4");
    EXPECT_EQ(values["Play Count"], "0");
    EXPECT_EQ(values["File Size"], "22,714kb");
    EXPECT_EQ(values["Comments"], "one two  three");
    EXPECT_EQ(values["Last Played"], "(Unassigned)");
    EXPECT_EQ(values["File Name"], "C:\\Music\\Tidewater\\Part One.mp3");
    const int reads = commands.fakeHost.propertyReads;
    paint(list.handle());
    EXPECT_EQ(commands.fakeHost.propertyReads, reads) << "read once";
    details.setTrack(nullptr, nullptr);
    EXPECT_EQ(list.count(), 0);
    details.setFile(track(4).m_pMJFile);
    EXPECT_EQ(list.text(18, 1), "C:\\Music\\Sampler\\First.mp3");
}

TEST_F(TrackDetailsTest, PictureFitsWithItsProportionsInTheMiddle)
{
    album(1).thumbnailFile = writePicture("wide.bmp", 200, 50, kRed);
    open();
    details.setTrack(&track(1), &album(1));
    const RECT wide = pictureIn(controlId::kAlbumArtwork); // of a box of 400 by 200
    EXPECT_EQ(wide.left, 4);
    EXPECT_EQ(wide.right, 396);
    EXPECT_EQ(wide.bottom - wide.top, 98);
    EXPECT_EQ(wide.top, 51);
    EXPECT_EQ(pixel(controlId::kAlbumArtwork, 200, 100), kRed);
    hostTrack(1).imageFile = writePicture("high.bmp", 900, 1800, kBlue);
    choose(kTrackImage);
    details.setTrack(&track(2), &album(1));
    details.setTrack(&track(1), &album(1));
    const RECT high = pictureIn(controlId::kTrackArtwork);
    EXPECT_EQ(high.top, 4);
    EXPECT_EQ(high.bottom, 196);
    EXPECT_EQ(high.right - high.left, 96);
    EXPECT_EQ(high.left, 152);
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), kBlue);
    EXPECT_TRUE(systemFiles().exists(hostTrack(1).imageFile)) << "a file of the user's";
}

TEST_F(TrackDetailsTest, PicturesAreReadOnceAndOnlyWhenTheyAreSeen)
{
    hostTrack(1).imageFile = writePicture("one.bmp", 20, 20, kBlue);
    open();
    details.setTrack(&track(1), &album(1));
    paint(child(controlId::kAlbumArtwork));
    EXPECT_EQ(imageQueries(), 0u);
    choose(kTrackImage);
    paint(child(controlId::kTrackArtwork));
    EXPECT_EQ(imageQueries(), 1u);
    details.move({0, 0, 300, 150});
    choose(kAlbumImage);
    choose(kTrackImage);
    details.setTrack(&track(1), &album(1));
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 150, 75), kBlue);
    EXPECT_EQ(imageQueries(), 1u);
}

TEST_F(TrackDetailsTest, TrackPictureOutOfTheFileIsTemporary)
{
    hostTrack(1).imageFile = m_folder.file("missing.jpg");
    hostTrack(1).embeddedImage = writePicture("temporary.bmp", 20, 20, kRed);
    open();
    choose(kTrackImage);
    details.setTrack(&track(1), &album(1));
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), kRed);
    EXPECT_FALSE(systemFiles().exists(hostTrack(1).embeddedImage));
    EXPECT_EQ(commands.fakeHost.imageQueries.size(), 2u);
}

TEST_F(TrackDetailsTest, AlbumPictureComesFromFileOrDatabaseOrTrack)
{
    open();
    album(1).thumbnailFile = m_folder.file("missing.jpg");
    album(1).m_hGlobalThumbnail = bitmapBytes(20, 20, kBlue);
    details.setTrack(nullptr, &album(1));
    EXPECT_EQ(pixel(controlId::kAlbumArtwork, 200, 100), kBlue);
    album(3).flags = kAlbumInternalImage;
    hostTrack(4).embeddedImage = writePicture("temporary.bmp", 20, 20, kRed);
    details.setTrack(nullptr, &album(3));
    EXPECT_EQ(pixel(controlId::kAlbumArtwork, 200, 100), kRed);
    EXPECT_FALSE(systemFiles().exists(hostTrack(4).embeddedImage));
}

TEST_F(TrackDetailsTest, WhatIsNoPictureShowsTheDefaultOne)
{
    std::string broken = m_folder.file("broken.jpg");
    systemFiles().create(broken)->write(std::vector<std::uint8_t>(500, 0xFF));
    album(1).thumbnailFile = broken;
    open();
    details.setTrack(&track(1), &album(1));
    EXPECT_EQ(pixel(controlId::kAlbumArtwork, 200, 100), kGreen);
    choose(kTrackImage);
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), kGreen) << "the host gives none";
    commands.fakeHost.refusing = true;
    details.setTrack(&track(2), &album(1));
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), kGreen);
    track(3).m_pMJFile = nullptr;
    details.setTrack(&track(3), &album(1));
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), kGreen);
    EXPECT_TRUE(commands.messages.empty());
    details.setTrack(nullptr, nullptr);
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), commands.background) << "no track, no picture";
}

TEST_F(TrackDetailsTest, WhatCouldNotBeReadComesLater)
{
    hostTrack(1).imageFile = writePicture("one.bmp", 20, 20, kBlue);
    commands.busy = true;
    open();
    details.setTrack(&track(1), &album(1));
    choose(kComments);
    EXPECT_EQ(textShown(), "");
    choose(kTrackImage);
    EXPECT_EQ(pixel(controlId::kTrackArtwork, 200, 100), commands.background);
    EXPECT_EQ(imageQueries(), 0u);
    commands.busy = false;
    details.tick();
    UpdateWindow(child(controlId::kTrackArtwork));
    EXPECT_EQ(GetPixel(WindowDc(child(controlId::kTrackArtwork)).dc(), 200, 100), kBlue);
    commands.busy = true;
    details.setTrack(&track(2), &album(1));
    choose(kComments);
    details.setTrack(&track(1), &album(1));
    commands.busy = false;
    details.tick();
    EXPECT_EQ(textShown(), "one\r\ntwo\r\nthree");
}

TEST_F(TrackDetailsTest, MemoryThatRunsShortOnceIsForgotten)
{
    hostTrack(1).imageFile = writePicture("one.bmp", 20, 20, kBlue);
    open();
    details.setTrack(&track(1), &album(1));
    for (const int entry : {kTrackImage, kDetails}) {
        int failures = 0;
        commands.fakeHost.insideCall = [&] {
            commands.fakeHost.insideCall = nullptr;
            ++failures;
            throw std::bad_alloc();
        };
        choose(entry);
        UpdateWindow(details.shownControl());
        ASSERT_EQ(failures, 1) << entry;
        details.tick();
        UpdateWindow(details.shownControl());
    }
    EXPECT_EQ(ListView(child(controlId::kTrackDetails)).text(1, 1), "The Harbour Quartet");
    EXPECT_EQ(commands.fakeHost.textReads[FileText::Artist], 1) << "before anybody asked";
    choose(kTrackImage);
    UpdateWindow(child(controlId::kTrackArtwork));
    EXPECT_EQ(GetPixel(WindowDc(child(controlId::kTrackArtwork)).dc(), 200, 100), kBlue);
}

// The host may run a message loop inside a call, and everything may end there.
TEST_F(TrackDetailsTest, TrackMayGoWhileItIsRead)
{
    open();
    for (const int entry : {kComments, kTrackImage, kDetails}) {
        choose(kAlbumImage);
        details.setTrack(&track(1), &album(1));
        commands.fakeHost.insideCall = [this] {
            commands.fakeHost.insideCall = nullptr;
            details.setTrack(nullptr, nullptr);
        };
        choose(entry);
        paint(details.shownControl());
        EXPECT_EQ(textShown(), "");
        EXPECT_EQ(ListView(child(controlId::kTrackDetails)).count(), 0);
    }
}

TEST_F(TrackDetailsTest, NoObjectOfTheSystemIsLeftBehind)
{
    album(1).thumbnailFile = writePicture("a.bmp", 300, 300, kRed);
    hostTrack(1).imageFile = writePicture("b.bmp", 30, 300, kBlue);
    open();
    const auto round = [this] {
        for (int entry = 0; entry < 9; ++entry) {
            choose(entry);
            for (const int id : {1, 2}) {
                details.setTrack(&track(id), &album(1));
                details.move({0, 0, 300 + 10 * id, 200});
                paint(details.shownControl());
            }
            details.settingsChanged();
        }
    };
    round();
    const int before = test::gdiObjects();
    for (int i = 0; i < 3; ++i)
        round();
    EXPECT_EQ(test::gdiObjects(), before);
}

} // namespace
} // namespace tessera
