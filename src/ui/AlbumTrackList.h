#pragma once

#include "library/Records.h"
#include "ui/DetailsList.h"
#include "ui/TrackLine.h"

#include <unordered_map>
#include <vector>

namespace tessera {

// The tracks of some albums, album after album, each in track order. What the host knows of a track is
// read when its row is shown. A double click or Enter plays the album from that track.
class AlbumTrackList final : public DetailsList {
public:
    explicit AlbumTrackList(Commands& commands) : DetailsList(commands) {}

    bool createTrackList(HWND parent);
    void show(bool visible) override;
    void settingsChanged() override;
    // None before the records go.
    void setAlbums(std::span<Album* const> albums);
    // Null: none.
    Track* selectedTrack() const;
    // The selected one, else the first.
    Track* shownTrack() const;
    // From time to time while the list is visible: rows that could not be read are asked for again.
    void tick();

private:
    void readRows(int first, int last) override;
    std::string cellText(int row, int column) override;
    void activate(int row) override;

    void layoutRows();
    void forgetRows();
    std::size_t albumIndex(int row) const;
    const std::vector<Track*>& tracksOf(std::size_t album) const;
    Track* trackAt(int row) const;
    bool readRow(int row);

    std::vector<Album*> m_albums;
    std::vector<int> m_firstRows; // of each album, and the number of all rows
    bool m_rowsKnown = true;      // false: the albums are others since the rows were counted
    bool m_byLocation = true;
    bool m_missed = false;     // a row was asked for while the host could not be called
    unsigned m_generation = 0; // of albums and order
    mutable std::unordered_map<std::size_t, std::vector<Track*>> m_tracks; // of albums in view
    std::unordered_map<int, TrackLine> m_lines;
};

} // namespace tessera
