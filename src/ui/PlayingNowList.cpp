#include "ui/PlayingNowList.h"

#include "ui/Commands.h"
#include "ui/HostReading.h"
#include "ui/ids.h"

#include <algorithm>
#include <optional>

namespace tessera {

namespace {

constexpr std::size_t kMostLines = 2000; // that are kept; more have been scrolled past

TrackLine readEntry(HostPlaylist& playlist, int row)
{
    const HostFilePtr file = playlist.file(row);
    return file ? readTrackLine(*file, std::nullopt) : TrackLine{trackText(row + 1, "", ""), ""};
}

} // namespace

bool PlayingNowList::createPlayingNow(HWND parent)
{
    static constexpr Column kColumns[] = {{"Playing Now", 0}, {"Duration", 70, LVCFMT_RIGHT}};
    if (!createList(parent, controlId::kPlayingNow, kColumns))
        return false;
    view().setImageList(commands().smallIcons(), LVSIL_SMALL);
    return true;
}

void PlayingNowList::show(bool visible)
{
    DetailsList::show(visible);
    if (visible)
        follow();
}

// What the host refuses leaves the list as it was. The parent may call the host, so it comes last.
void PlayingNowList::follow()
{
    if (!isShown())
        return;
    std::optional<Playlist> playlist;
    readFromHost(commands(), [&](Host& host) { playlist = readPlaylist(host); });
    if (!playlist || !handle())
        return;
    const bool isOther = playlist->selected != m_selected;
    take(std::move(*playlist));
    if (isOther)
        tellSelection();
}

PlayingNowList::Playlist PlayingNowList::readPlaylist(Host& host) const
{
    const std::unique_ptr<HostPlaylist> current = host.playlist();
    if (!current)
        return {};
    Playlist playlist{std::max(current->count(), 0), current->position(), {}, {}};
    const auto [first, last] = rowsInView();
    for (int row = first; row < std::min(last, playlist.count); ++row)
        playlist.lines[row] = readEntry(*current, row);
    if (selectedRow() < playlist.count)
        playlist.selected = readSelected(*current).fileName;
    return playlist;
}

void PlayingNowList::take(Playlist&& playlist)
{
    const bool opened = count() == 0;
    const Lines before = std::exchange(m_lines, std::move(playlist.lines));
    setRows(playlist.count);
    const bool all = std::exchange(m_missed, false);
    for (const auto& [row, line] : m_lines) {
        const auto old = before.find(row);
        if (all || old == before.end() || old->second != line)
            redrawRow(row);
    }
    takePosition(playlist.position < playlist.count ? playlist.position : -1);
    if (opened && m_playing >= 0)
        view().makeVisible(m_playing);
}

void PlayingNowList::takePosition(int position)
{
    const int before = std::exchange(m_playing, position);
    if (before == position)
        return;
    redrawRow(before);
    redrawRow(position);
}

// All of them through one object of the host's.
void PlayingNowList::readRows(int first, int last)
{
    while (first < last && m_lines.contains(first))
        ++first;
    if (first >= last)
        return;
    Lines lines;
    const bool asked = readFromHost(commands(), [&](Host& host) {
        const std::unique_ptr<HostPlaylist> playlist = host.playlist();
        for (int row = first; row < last && playlist; ++row) {
            if (!m_lines.contains(row))
                lines[row] = readEntry(*playlist, row);
        }
    });
    m_missed = m_missed || !asked;
    if (m_lines.size() > kMostLines)
        m_lines.clear();
    m_lines.merge(lines);
}

std::string PlayingNowList::cellText(int row, int column)
{
    const auto line = m_lines.find(row);
    if (line == m_lines.end())
        return {};
    return column == 0 ? line->second.text : line->second.duration;
}

int PlayingNowList::rowImage(int row) const
{
    return row == m_playing ? icon::kPlay : -1;
}

void PlayingNowList::activate(int row)
{
    if (!commands().mayCallHost())
        return;
    commands().playEntry(row);
    if (handle())
        refresh();
}

PlayingNowList::Entry PlayingNowList::readSelected(HostPlaylist& playlist) const
{
    const int row = selectedRow();
    HostFilePtr file = row >= 0 ? playlist.file(row) : nullptr;
    std::u16string name = file ? file->wideText(FileText::Filename) : std::u16string();
    return {std::move(file), std::move(name)};
}

PlayingNowList::Entry PlayingNowList::selectedEntry()
{
    Entry entry;
    readFromHost(commands(), [&](Host& host) {
        if (const std::unique_ptr<HostPlaylist> playlist = host.playlist())
            entry = readSelected(*playlist);
    });
    m_selected = entry.fileName;
    return entry;
}

} // namespace tessera
