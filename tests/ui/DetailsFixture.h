#pragma once

#include "AlbumFixture.h"
#include "PaintCounter.h"
#include "ui/DetailsList.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace tessera {

// Stands in for the pane: hands its children's notifications on.
class NotifiedWindow final : public Mapped<NotifiedWindow> {
public:
    static std::span<const MapEntry<NotifiedWindow>> messageMap() { return {}; }
    Handled route(const Message& message) override
    {
        if (message.id == WM_NOTIFY && onNotify)
            return onNotify(*reinterpret_cast<NMHDR*>(message.lParam));
        if (message.id == WM_COMMAND && onCommand)
            onCommand(LOWORD(message.wParam), HIWORD(message.wParam));
        if (message.id == WM_ERASEBKGND) {
            RECT area{};
            GetClientRect(message.window, &area);
            fillRect(reinterpret_cast<HDC>(message.wParam), area, RGB(255, 255, 255));
            return 1;
        }
        return Mapped::route(message);
    }
    std::function<Handled(NMHDR&)> onNotify;
    std::function<void(UINT id, UINT code)> onCommand;

private:
    WindowClass windowClass() const override { return {.name = "TesseraTestPane"}; }
};

// A library whose tracks the fake host knows, one album after another.
inline void addTracks(FakeCommands& commands, Album& album, std::initializer_list<const char16_t*> names)
{
    std::int32_t number = 0;
    for (const char16_t* const name : names) {
        test::HostTrack host;
        host.fileName = toWide(album.path + "\\") + name + u".mp3";
        host.artist = toWide(album.artist->displayName);
        host.album = toWide(album.displayTitle);
        host.number = ++number;
        host.more[FileText::Name] = name;
        host.more[FileText::DurationText] = u"3:2" + std::u16string(1, static_cast<char16_t>(u'0' + number));
        commands.fakeHost.tracks.push_back(host);

        const auto id = static_cast<std::int32_t>(commands.records.tracks.size()) + 1;
        auto track = std::make_unique<Track>();
        track->id = id;
        track->album = &album;
        track->fileName = toCodePage(host.fileName);
        track->m_pMJFile = commands.fakeHost.file(track->fileName);
        album.tracks[id] = track.get();
        commands.records.tracks[id] = std::move(track);
    }
    album.artist->hostName = album.artist->displayName;
}

class DetailsTest : public testing::Test {
protected:
    static constexpr RECT kPlace{0, 0, 400, 200};

    DetailsTest()
    {
        initCommonControls();
        commands.background = RGB(255, 255, 255);
        parent.create(nullptr, 0, {0, 0, 420, 220}, {WS_POPUP | WS_CLIPCHILDREN | WS_VISIBLE, 0});
        Artist& quartet = addArtist(commands.records, "The Harbour Quartet");
        Artist& various = addArtist(commands.records, "(Various)");
        addAlbum(commands.records, "Tidewater", quartet, 1975);
        addAlbum(commands.records, "Nothing", quartet);
        addAlbum(commands.records, "Sampler", various, 1999);
        addTracks(commands, album(1), {u"Part One", u"Another", u"Part Three"});
        addTracks(commands, album(3), {u"First", u"Second"});
        commands.generalSettings.sortTracksByLocation = false;
        commands.fakeHost.hasPlaylist = true;
    }

    Album& album(int id) { return *commands.records.albums[id]; }
    Track& track(int id) { return *commands.records.tracks[id]; }
    test::HostTrack& hostTrack(int id) { return commands.fakeHost.tracks[static_cast<std::size_t>(id) - 1]; }
    void handOn(DetailsList& list)
    {
        parent.onNotify = [&list](NMHDR& header) { return list.answer(header); };
    }
    static std::vector<std::string> column(const DetailsList& list, int column)
    {
        std::vector<std::string> texts;
        for (int row = 0; row < list.count(); ++row)
            texts.push_back(list.view().text(row, column));
        return texts;
    }
    static void paint(HWND window) { RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }
    void doubleClick(const DetailsList& list, int row)
    {
        NMITEMACTIVATE click{};
        click.hdr = {list.view().handle(), 0, static_cast<UINT>(NM_DBLCLK)};
        click.iItem = row;
        SendMessageA(parent.handle(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&click));
    }
    static void pressEnter(const DetailsList& list)
    {
        SendMessageA(list.view().handle(), WM_KEYDOWN, VK_RETURN, 1);
    }

    using Texts = std::vector<std::string>;
    FakeCommands commands;
    NotifiedWindow parent;
};

} // namespace tessera
