#pragma once

#include "ports/Host.h"
#include "ui/DetailsList.h"
#include "ui/TrackLine.h"

#include <map>

namespace tessera {

// The host's current playlist; its rows are read when they are shown. A double click or Enter on an
// entry goes on playing there.
class PlayingNowList final : public DetailsList {
public:
    explicit PlayingNowList(Commands& commands) : DetailsList(commands) {}

    bool createPlayingNow(HWND parent);
    // What becomes visible is up to date.
    void show(bool visible) override;
    // From time to time: follows the host while the list is visible. Only what changed is painted.
    void tick() { follow(); }
    // At once, after the playlist was changed.
    void refresh() { follow(); }
    int playingRow() const { return m_playing; } // -1: none
    // What the selected row stands for; no file when none is selected or the host may not be called.
    // When it comes to stand for something else, the parent hears of a change as of a selection.
    struct Entry {
        HostFilePtr file;
        std::u16string fileName; // as the host has it, which the code page may not
    };
    Entry selectedEntry();

private:
    using Lines = std::map<int, TrackLine>;
    struct Playlist {
        int count = 0;
        int position = -1;
        Lines lines;             // of the rows in view
        std::u16string selected; // file name of the selected row
    };

    void readRows(int first, int last) override;
    std::string cellText(int row, int column) override;
    int rowImage(int row) const override;
    bool isMarked(int row) const override { return row == m_playing; }
    void activate(int row) override;

    void follow();
    Playlist readPlaylist(Host& host) const;
    Entry readSelected(HostPlaylist& playlist) const;
    void take(Playlist&& playlist);
    void takePosition(int position);

    int m_playing = -1;
    bool m_missed = false; // rows were asked for while the host could not be called
    Lines m_lines;
    std::u16string m_selected; // file name that the parent knows of
};

} // namespace tessera
