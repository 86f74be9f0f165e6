#include "jukebox/PlaylistView.h"

#include "jukebox/CommandIds.h"
#include "jukebox/TrackFile.h"
#include "jukebox/WideText.h"

#include <array>

namespace tessera::jukebox {

namespace {

struct PlaylistColumn {
    const char* title;
    Column column;
    int share; // of the width that is not the duration's, in percent
    int format;
};
constexpr std::array kColumns = {
    PlaylistColumn{"Title", Column::Name, 40, LVCFMT_LEFT},
    PlaylistColumn{"Artist", Column::Artist, 30, LVCFMT_LEFT},
    PlaylistColumn{"Album", Column::Album, 30, LVCFMT_LEFT},
    PlaylistColumn{"Duration", Column::Duration, 0, LVCFMT_RIGHT},
};
constexpr int kDurationWidth = 72;

} // namespace

std::span<const MapEntry<PlaylistView>> PlaylistView::messageMap()
{
    using P = PlaylistView;
    static constexpr std::array kMap = {
        MapEntry<P>{WM_CREATE, &P::onCreate},
        MapEntry<P>{WM_SIZE, &P::onSize},
        MapEntry<P>{WM_ERASEBKGND, &P::onErase},
        MapEntry<P>{WM_SETFOCUS, &P::onSetFocus},
        MapEntry<P>{kPlaylistListId, LVN_GETDISPINFOA, &P::onDisplayInfo},
        MapEntry<P>{kPlaylistListId, NM_CUSTOMDRAW, &P::onDraw},
        MapEntry<P>{kPlaylistListId, LVN_ITEMACTIVATE, &P::onActivate},
    };
    return kMap;
}

Handled PlaylistView::onCreate(const Message& message)
{
    if (!m_list.create(message.window, kPlaylistListId, {},
                       ListView::kReport | LVS_OWNERDATA | LVS_SINGLESEL | WS_TABSTOP, 0)) {
        return -1;
    }
    m_list.setExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_INFOTIP);
    m_list.setColours(m_colours.list, m_colours.listText);
    m_boldFont = makeFont("Tahoma", scaled(13, message.window), FW_BOLD);
    for (const PlaylistColumn& column : kColumns) {
        m_list.addColumn(column.title, 100, column.format);
    }
    return kDefault;
}

Handled PlaylistView::onSize(const Message&)
{
    m_list.move(clientRect());
    fitColumns();
    return kDefault;
}

void PlaylistView::fitColumns()
{
    const int duration = scaled(kDurationWidth, handle());
    const int scrollBar = GetSystemMetrics(SM_CXVSCROLL);
    const int width = std::max<int>(clientRect().right - duration - scrollBar, 0);
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const int share = kColumns[i].share;
        m_list.setColumnWidth(static_cast<int>(i), share == 0 ? duration : width * share / 100);
    }
}

Handled PlaylistView::onSetFocus(const Message&)
{
    SetFocus(m_list.handle());
    return 0;
}

void PlaylistView::refresh()
{
    const NowPlaying now = m_player.now();
    const std::int32_t current = now.state == PlayState::Stopped ? -1 : now.position;
    const bool moved = current != m_current;
    m_current = current;
    m_list.setVirtualCount(now.entries);
    m_list.invalidate(false);
    if (moved && current >= 0) {
        m_list.makeVisible(current);
    }
}

std::string PlaylistView::cell(std::int32_t row, int column) const
{
    const std::optional<TrackIndex> track = m_player.entry(row);
    if (!track) { // removed meanwhile
        return {};
    }
    const Column source = kColumns[static_cast<std::size_t>(column)].column;
    if (source == Column::Duration) {
        return codePageText(durationText(m_library.number(*track, source)));
    }
    return codePageText(m_library.text(*track, source));
}

Handled PlaylistView::onDisplayInfo(NMHDR& header)
{
    LVITEMA& item = notificationAs<NMLVDISPINFOA>(header).item;
    if ((item.mask & LVIF_TEXT) != 0) {
        m_cellText = cell(item.iItem, item.iSubItem);
        item.pszText = m_cellText.data();
    }
    return 0;
}

Handled PlaylistView::onDraw(NMHDR& header)
{
    NMLVCUSTOMDRAW& draw = notificationAs<NMLVCUSTOMDRAW>(header);
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
        return CDRF_NOTIFYITEMDRAW;
    }
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT ||
        static_cast<std::int32_t>(draw.nmcd.dwItemSpec) != m_current) {
        return CDRF_DODEFAULT;
    }
    SelectObject(draw.nmcd.hdc, m_boldFont.get());
    draw.clrText = m_colours.listCurrent;
    return CDRF_NEWFONT;
}

// By double click or Enter; either has moved the focus to the row.
Handled PlaylistView::onActivate(NMHDR&)
{
    if (m_list.focused() >= 0) {
        m_player.playEntry(m_list.focused());
    }
    return 0;
}

} // namespace tessera::jukebox
