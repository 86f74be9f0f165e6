// Where the controls of the details pane stand.

#include "ui/Colours.h"
#include "ui/Commands.h"
#include "ui/PaneAlbumDetails.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <cmath>

namespace tessera {

namespace {

constexpr int kStripPadding = 4; // around a combo box
constexpr int kLine = 2;         // height of an etched line
constexpr double kMiddle = 50.0;

int partOf(LONG extent, double percent)
{
    return static_cast<int>(static_cast<double>(extent) * 0.01 * percent);
}

} // namespace

// The bars say how the pane is divided, each by its own percentage; what is between them follows.
void PaneAlbumDetails::layoutContent(const RECT& content)
{
    if (!m_pSplitTracks)
        return;
    m_strips.clear();
    const RECT client = clientRect();

    m_pSplitMain.layout(content);
    const RECT main = Control(m_pSplitMain.handle()).rect();
    m_trees.move(layoutStrip({m_pcboView, m_psepView}, {0, content.top, main.left, content.bottom}));

    m_pSplitDetails.layout({main.right, 0, client.right, client.bottom});
    const RECT details = Control(m_pSplitDetails.handle()).rect();
    m_plvwAlbums.move({main.right, content.top, client.right, std::max(details.top, content.top)});

    layoutTracksBar({main.right, details.bottom, client.right, client.bottom});
    const RECT tracks = Control(m_pSplitTracks.handle()).rect();
    const RECT lists = layoutStrip({m_pcboAlbumInfo, m_psepAlbumInfo},
                                   {main.right, details.bottom, tracks.left, client.bottom});
    m_plvwAlbumInfo.move(lists);
    m_plvwAlbumTracks.move(lists);
    m_plvwPlayingNow.move(lists);
    m_trackDetails.move(layoutStrip({m_trackDetails.combo(), m_psepTrackDetails},
                                    {tracks.right, details.bottom, client.right, client.bottom}));
}

// Its percentage counts from the pane's left edge, as that of every bar, and where it is dropped it
// stays; it keeps a fifth of the place on both sides. In the middle it halves what the main bar leaves.
void PaneAlbumDetails::layoutTracksBar(const RECT& area)
{
    const double percent = std::clamp(m_pSplitTracks.position(), 20.0, 80.0);
    const LONG width = clientRect().right;
    const LONG room = area.right - area.left;
    const LONG offset = partOf(width, percent);
    const LONG wanted = percent == kMiddle ? area.left + room / 2
                                           : std::clamp(offset, area.left + room / 5, area.right - room / 5);
    m_pSplitTracks.layout({wanted - offset, area.top, wanted - offset + width, area.bottom});
}

// A combo box between two lines at the top of the area; answers what is left of it.
RECT PaneAlbumDetails::layoutStrip(const Strip& strip, const RECT& area)
{
    const WindowDc dc(handle());
    const LONG padding = scaled(kStripPadding, dc.dc());
    const RECT combo = strip.combo.rect();
    RECT place{area.left, area.top, area.right,
               area.top + (combo.bottom - combo.top) + 2 * padding + 2 * kLine};
    m_strips.push_back(place);
    strip.lines[0].move({place.left, place.top, place.right, place.top + kLine});
    strip.lines[1].move({place.left, place.bottom - kLine, place.right, place.bottom});
    SetWindowPos(strip.combo.handle(), nullptr, static_cast<int>(place.left + padding),
                 static_cast<int>(place.top + kLine + padding),
                 static_cast<int>(std::max<LONG>(place.right - place.left - 2 * padding, 0)),
                 static_cast<int>(combo.bottom - combo.top), SWP_NOZORDER | SWP_NOACTIVATE);
    return {area.left, std::min(place.bottom, area.bottom), area.right, area.bottom};
}

void PaneAlbumDetails::paintContent(HDC dc, const RECT& content)
{
    if (commands().isBusy())
        return;
    if (m_summary.albums() == 0)
        return m_summary.draw(dc, content, commands());
    for (const RECT& strip : m_strips)
        fillRect(dc, strip, commands().frameFace());
}

// Without albums the place is for the invitation.
void PaneAlbumDetails::showControls()
{
    const bool any = m_summary.albums() > 0;
    for (const Control& control :
         {Control(m_pcboView), Control(m_pcboAlbumInfo), Control(m_trackDetails.combo()),
          Control(m_plvwAlbums.view()), Control(m_pSplitMain.handle()), Control(m_pSplitDetails.handle()),
          Control(m_pSplitTracks.handle())})
        control.show(any);
    for (const auto* lines : {&m_psepView, &m_psepAlbumInfo, &m_psepTrackDetails}) {
        for (const Static& line : *lines)
            line.show(any);
    }
    m_trees.tree(m_trees.shownIndex()).view().show(any);
    m_trackDetails.show(any);
    showBelow();
    layoutContent(contentRect());
    InvalidateRect(handle(), nullptr, FALSE);
}

void PaneAlbumDetails::showBelow()
{
    const bool any = m_summary.albums() > 0;
    m_plvwAlbumInfo.show(any && m_below == Below::AlbumInfo);
    m_plvwAlbumTracks.show(any && m_below == Below::AlbumTracks);
    m_plvwPlayingNow.show(any && m_below == Below::PlayingNow);
}

// A bar that was dropped in the very middle of the pane is to stay there, too: its window is there
// already, which it is not when a double click has moved it.
Handled PaneAlbumDetails::onBarMoved(NMHDR& header)
{
    const LONG place = Control(header.hwndFrom).rect().left + SplitterCtrl::kThickness / 2;
    const bool dropped = place == partOf(clientRect().right, kMiddle);
    if (header.hwndFrom == m_pSplitTracks.handle() && dropped && m_pSplitTracks.position() == kMiddle)
        m_pSplitTracks.setPosition(std::nextafter(kMiddle, 100.0));
    layoutContent(contentRect());
    InvalidateRect(handle(), nullptr, FALSE);
    return 0;
}

} // namespace tessera
