#pragma once

#include "DetailsFixture.h"
#include "system/Com.h"
#include "ui/PaneAlbumDetails.h"
#include "ui/ids.h"

namespace tessera {

// The pane on a parent of its own, over five albums by three artists, and what a user does with it.
class PaneAlbumDetailsTest : public testing::Test {
protected:
    static constexpr int kWide = 900;
    static constexpr int kTall = 600;
    // Entries of the view combo box.
    static constexpr int kLibrary = 0;
    static constexpr int kNew = 1;
    static constexpr int kFavourites = 2;
    static constexpr int kCompleted = 3;
    using Texts = std::vector<std::string>;

    PaneAlbumDetailsTest()
    {
        initCommonControls();
        commands.owner = parent;
        commands.background = RGB(255, 255, 250);
        commands.databaseSettings.lastUsed = "C:\\a.ts2";
        commands.generalSettings.moveThe = false;
        commands.generalSettings.sortTracksByLocation = false;
        commands.albumDetailsSettings.trackDetailsCombo = 2; // Comments
        commands.fakeHost.hasPlaylist = true;
        Artist& lumen = addArtist(commands.records, "LUMEN");
        Artist& quartet = addArtist(commands.records, "The Harbour Quartet");
        Artist& linde = addArtist(commands.records, "Vera Linde");
        addAlbum(commands.records, "Early", lumen, 1999);
        addAlbum(commands.records, "Yearling", quartet, 1975);
        addAlbum(commands.records, "Rock & Roll", lumen, 2010);
        addAlbum(commands.records, "Tidewater", quartet);
        addAlbum(commands.records, "Nothing", linde);
        for (const auto& [id, record] : commands.records.albums)
            record->genre = id % 2 == 0 ? "Jazz" : "Rock";
        album(1).rank = 3;
        album(1).set(kAlbumFavourite, true);
        album(2).set(kAlbumNew, true);
        album(2).newDate = 20200131;
        album(3).set(kAlbumHasImage, true);
        addTracks(commands, album(1), {u"Dawn", u"Noon"});
        addTracks(commands, album(4), {u"Ebb", u"Flow", u"Slack"});
        for (test::HostTrack& track : commands.fakeHost.tracks)
            track.more[FileText::Comment] = u"About " + track.more[FileText::Name];
    }
    ~PaneAlbumDetailsTest() override
    {
        pane.reset();
        DestroyWindow(parent);
    }

    void open()
    {
        commands.library(); // as the controller: the catalogue is filled when panes come
        pane.reset();
        pane = std::make_unique<PaneAlbumDetails>(commands);
        ASSERT_TRUE(pane->createPane(parent));
        MoveWindow(pane->window(), 0, 0, kWide, kTall, TRUE);
        SendMessageA(pane->window(), kActivateMessage, 1, 0);
        ShowWindow(parent, SW_SHOWNORMAL);
        SetForegroundWindow(parent);
        settle();
    }
    // What the pane has posted to itself is done, as far as it has.
    static void settle() { pumpMessages(0); }

    Album& album(int id) { return *commands.records.albums[id]; }
    HWND child(int id) const { return GetDlgItem(pane->window(), id); }
    RECT place(int id) const { return Control(child(id)).rect(); }
    TreeView tree(int entry = kLibrary) const { return TreeView(child(controlId::kTreeLibrary + entry)); }
    ListView list() const { return ListView(child(controlId::kDetailsAlbums)); }
    Texts titles() const
    {
        Texts titles;
        for (int row = 0; row < list().count(); ++row)
            titles.push_back(pane->albumList().album(row).displayTitle);
        return titles;
    }
    // The node that the texts lead to, null for none.
    HTREEITEM node(const Texts& path, int entry = kLibrary) const
    {
        const TreeView view = tree(entry);
        HTREEITEM item = nullptr;
        for (const std::string& text : path) {
            item = item ? view.child(item) : view.root();
            while (item && view.text(item) != text)
                item = view.next(item);
            if (!item)
                break;
        }
        return item;
    }
    Texts children(HTREEITEM parentNode, int entry) const
    {
        Texts texts;
        const TreeView view = tree(entry);
        for (HTREEITEM item = view.child(parentNode); item; item = view.next(item))
            texts.push_back(view.text(item));
        return texts;
    }
    void choose(const Texts& path, int entry = kLibrary) const
    {
        const HTREEITEM item = node(path, entry);
        EXPECT_TRUE(item) << path.back();
        tree(entry).select(item);
        settle();
    }
    void chooseEntry(int comboId, int entry) const
    {
        const ComboBoxEx combo(child(comboId));
        combo.select(entry);
        SendMessageA(pane->window(), WM_COMMAND, MAKEWPARAM(comboId, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(combo.handle()));
        settle();
    }
    void chooseTree(int entry) const { chooseEntry(controlId::kTreeCombo, entry); }
    void chooseBelow(int entry) const { chooseEntry(controlId::kAlbumInfoCombo, entry); }
    void selectOnly(std::initializer_list<int> rows) const
    {
        list().select(-1, false);
        for (const int row : rows)
            list().select(row);
        settle();
    }
    void send(UINT command) const
    {
        SendMessageA(pane->window(), WM_COMMAND, command, 0);
        settle();
    }
    // In the album list.
    void key(WPARAM key, bool control = false, bool shift = false) const
    {
        hold(control, shift);
        SendMessageA(list().handle(), WM_KEYDOWN, key, 1);
        hold(false, false);
        settle();
    }
    static void hold(bool control, bool shift)
    {
        BYTE keys[256] = {};
        GetKeyboardState(keys);
        keys[VK_CONTROL] = control ? 0x80 : 0;
        keys[VK_SHIFT] = shift ? 0x80 : 0;
        SetKeyboardState(keys);
    }
    Texts takeCalls() { return std::exchange(commands.calls, {}); }
    // Titles of the albums that were last written.
    Texts written()
    {
        Texts texts;
        for (const Album* const album : std::exchange(commands.marked, {}))
            texts.push_back(album->displayTitle);
        return texts;
    }

    ComInit com;
    FakeCommands commands;
    ColouredCovers covers{commands.fakeCovers};
    HWND parent = makeParentWindow(kWide, kTall);
    std::unique_ptr<PaneAlbumDetails> pane;
};

} // namespace tessera
