#include "ui/PaneOverview.h"

#include "base/Text.h"
#include "ui/Commands.h"

namespace tessera {

PaneOverview::PaneOverview(Commands& commands)
    : Mapped(paneId::kOverview, "PaneOverview", "Overview", commands)
{
}

PaneOverview::~PaneOverview()
{
    destroy();
}

bool PaneOverview::createPane(HWND parent)
{
    if (!createWindow(parent))
        return false;
    reload();
    return true;
}

void PaneOverview::reload()
{
    m_summary.count(commands().library());
    showSummary();
}

void PaneOverview::clearRecords()
{
    m_summary.clear();
    showSummary();
}

void PaneOverview::setView(ListStyle style)
{
    commands().overview().listviewStyle = static_cast<int>(style);
}

// Every album qualifies.
void PaneOverview::showSummary()
{
    const auto albums = static_cast<long>(m_summary.albums());
    setStatus(albums > 0 ? format("Qualified Albums: %ld out of %ld", albums, albums) : "Nothing Qualified");
    InvalidateRect(handle(), nullptr, FALSE);
}

void PaneOverview::paintContent(HDC dc, const RECT& content)
{
    if (!commands().isBusy())
        m_summary.draw(dc, content, commands());
}

} // namespace tessera
