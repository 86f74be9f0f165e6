#include "ui/AlbumTrackList.h"

#include "library/TrackOrder.h"
#include "ui/Commands.h"
#include "ui/HostReading.h"
#include "ui/ids.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr std::size_t kMostLines = 2000; // that are kept; more have been scrolled past

} // namespace

bool AlbumTrackList::createTrackList(HWND parent)
{
    static constexpr Column kColumns[] = {{"Album Tracks", 0}, {"Duration", 70, LVCFMT_RIGHT}};
    m_byLocation = commands().general().sortTracksByLocation;
    return createList(parent, controlId::kAlbumTracks, kColumns);
}

void AlbumTrackList::show(bool visible)
{
    if (visible)
        layoutRows();
    DetailsList::show(visible);
}

void AlbumTrackList::settingsChanged()
{
    if (std::exchange(m_byLocation, commands().general().sortTracksByLocation) !=
        commands().general().sortTracksByLocation)
        forgetRows();
    DetailsList::settingsChanged();
}

// A hidden list does not even count.
void AlbumTrackList::setAlbums(std::span<Album* const> albums)
{
    m_albums.assign(albums.begin(), albums.end());
    m_firstRows.clear();
    m_rowsKnown = false;
    forgetRows();
    if (m_albums.empty() || (GetWindowLongA(view().handle(), GWL_STYLE) & WS_VISIBLE) != 0)
        layoutRows();
}

void AlbumTrackList::layoutRows()
{
    if (std::exchange(m_rowsKnown, true))
        return;
    m_firstRows.reserve(m_albums.size() + 1);
    int rows = 0;
    for (const Album* const album : m_albums) {
        m_firstRows.push_back(rows);
        rows += static_cast<int>(album->tracks.size());
    }
    m_firstRows.push_back(rows);
    resetRows(rows);
}

void AlbumTrackList::forgetRows()
{
    ++m_generation;
    m_lines.clear();
    m_tracks.clear();
}

// Albums without tracks have no row: the last album that begins there has it.
std::size_t AlbumTrackList::albumIndex(int row) const
{
    const auto behind = std::ranges::upper_bound(m_firstRows, row);
    return static_cast<std::size_t>(behind - m_firstRows.begin()) - 1;
}

const std::vector<Track*>& AlbumTrackList::tracksOf(std::size_t album) const
{
    std::vector<Track*>& tracks = m_tracks[album];
    if (tracks.empty())
        tracks = tracksInOrder(*m_albums[album], m_byLocation);
    return tracks;
}

Track* AlbumTrackList::trackAt(int row) const
{
    if (row < 0 || m_firstRows.empty() || row >= m_firstRows.back() || commands().isBusy())
        return nullptr;
    const std::size_t album = albumIndex(row);
    return tracksOf(album)[static_cast<std::size_t>(row - m_firstRows[album])];
}

// Rows that are not counted yet are those of other albums.
Track* AlbumTrackList::selectedTrack() const
{
    return m_rowsKnown ? trackAt(selectedRow()) : nullptr;
}

Track* AlbumTrackList::shownTrack() const
{
    if (Track* const selected = selectedTrack())
        return selected;
    const auto first = std::ranges::find_if(m_albums, [](const Album* a) { return !a->tracks.empty(); });
    if (first == m_albums.end() || commands().isBusy())
        return nullptr;
    return tracksOf(static_cast<std::size_t>(first - m_albums.begin())).front();
}

void AlbumTrackList::tick()
{
    if (isShown() && commands().mayCallHost() && std::exchange(m_missed, false))
        redrawAll();
}

void AlbumTrackList::readRows(int first, int last)
{
    if (m_lines.size() >= kMostLines)
        m_lines.clear();
    for (int row = first; row < last; ++row) {
        if (!m_lines.contains(row) && !readRow(row))
            return;
    }
}

// False: the host may not be called now, or it has let other albums in.
bool AlbumTrackList::readRow(int row)
{
    const bool missed = std::exchange(m_missed, true); // until the row is known
    const Track* const track = commands().mayCallHost() ? trackAt(row) : nullptr;
    if (!track)
        return false;
    const HostFilePtr file = track->m_pMJFile;
    const std::string artist = track->album && track->album->artist ? track->album->artist->hostName : "";
    TrackLine line{trackText(row - m_firstRows[albumIndex(row)] + 1, ""), ""};
    const unsigned generation = m_generation;
    const bool asked = !file || readFromHost(commands(), [&](Host&) { line = readTrackLine(*file, artist); });
    if (!asked || generation != m_generation)
        return false;
    m_lines[row] = std::move(line);
    m_missed = missed;
    return true;
}

std::string AlbumTrackList::cellText(int row, int column)
{
    const auto line = m_lines.find(row);
    if (line == m_lines.end())
        return {};
    return column == 0 ? line->second.text : line->second.duration;
}

void AlbumTrackList::activate(int row)
{
    if (!commands().mayCallHost() || !trackAt(row))
        return;
    const std::size_t album = albumIndex(row);
    commands().playAlbumFrom(*m_albums[album], row - m_firstRows[album]);
}

} // namespace tessera
