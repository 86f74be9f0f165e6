#include "ui/PaneAlbumDetails.h"

#include "base/Text.h"
#include "ui/Commands.h"

namespace tessera {

PaneAlbumDetails::PaneAlbumDetails(Commands& commands)
    : Mapped(paneId::kAlbumDetails, "PaneAlbumDetails", "Album Details", commands)
{
}

PaneAlbumDetails::~PaneAlbumDetails()
{
    destroy();
}

bool PaneAlbumDetails::createPane(HWND parent)
{
    if (!createWindow(parent))
        return false;
    reload();
    return true;
}

void PaneAlbumDetails::rebuildTrees(Log& log)
{
    m_summary.count(commands().library());
    log.line("Sorting");
    showSummary();
}

void PaneAlbumDetails::reload()
{
    m_summary.count(commands().library());
    showSummary();
}

void PaneAlbumDetails::clearRecords()
{
    m_summary.clear();
    showSummary();
}

void PaneAlbumDetails::setView(ListStyle style)
{
    commands().albumDetails().listviewStyle = static_cast<int>(style);
}

void PaneAlbumDetails::showSummary()
{
    const auto albums = static_cast<long>(m_summary.albums());
    setStatus(albums > 0 ? format("Total Albums: %ld", albums) : "Nothing Selected");
    InvalidateRect(handle(), nullptr, FALSE);
}

void PaneAlbumDetails::paintContent(HDC dc, const RECT& content)
{
    if (!commands().isBusy())
        m_summary.draw(dc, content, commands());
}

} // namespace tessera
