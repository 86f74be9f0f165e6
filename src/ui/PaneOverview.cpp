#include "ui/PaneOverview.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "ui/AlbumCatalogue.h"
#include "ui/Commands.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

namespace tessera {

namespace {

constexpr const char* kUnit = "PaneOverview";
constexpr const char* kViewName = "Overview";

} // namespace

PaneOverview::PaneOverview(Commands& commands)
    : Mapped(paneId::kOverview, kUnit, "Overview", commands),
      m_plvwDetails(commands, commands.catalogue()),
      m_balloon(commands)
{
}

PaneOverview::~PaneOverview()
{
    destroy();
}

std::span<const MapEntry<PaneOverview>> PaneOverview::messageMap()
{
    using P = PaneOverview;
    static constexpr UINT kList = controlId::kOverviewList;
    static constexpr IdRange kFields{controlId::kSearchArtist, controlId::kSearchGenre};
    static constexpr std::array<MapEntry<P>, 21> kMap{{
        {WM_NOTIFY, &P::onNotify},
        {kList, LVN_ITEMCHANGED, &P::onSelectionChanged},
        {kList, LVN_ODSTATECHANGED, &P::onSelectionChanged},
        {kList, NM_DBLCLK, &P::onDoubleClick},
        {kList, NM_RETURN, &P::onEnter},
        {kList, NM_RCLICK, &P::onRightClick},
        {controlId::kCriteria, EN_CHANGE, &P::onCriteriaChanged},
        {kFields, BN_CLICKED, &P::onSwitch},
        {albumCommand::kFind, &P::onFind},
        {albumCommand::kClearSearch, &P::onClearSearch},
        {albumCommand::kEnterList, &P::onEnterList},
        {albumCommand::kSelectCriteria, &P::onSelectCriteria},
        {IdRange{albumCommand::kSortFirst, albumCommand::kSortLast}, &P::onSort},
        {IdRange{albumCommand::kAppend, albumCommand::kPlay}, &P::onPlay},
        {albumCommand::kGoToDirectory, &P::onGoToDirectory},
        {WM_CTLCOLORSTATIC, &P::onControlColour},
        {WM_CTLCOLORBTN, &P::onControlColour},
        {WM_MOUSEWHEEL, &P::onWheel},
        {WM_SHOWWINDOW, &P::onShow},
        {WM_DESTROY, &P::onDestroy},
        {kPlayedMessage, &P::onPlayed},
    }};
    return kMap;
}

bool PaneOverview::createPane(HWND parent)
{
    if (!createWindow(parent)) {
        return false;
    }
    m_view = loadViewState(commands().viewStore(), kViewName);
    createSearchBox();
    const ListStyle style = listStyleOf(commands().overview().listviewStyle, ListStyle::Tiles);
    commands().overview().listviewStyle = static_cast<int>(style);
    if (!m_plvwDetails.initAlbumList(handle(), controlId::kOverviewList, style))
        assertionFailed("m_plvwDetails->GetSafeHwnd()", kUnit, __LINE__);
    m_plvwDetails.setSort(m_view.sortColumn, m_view.ascending);
    m_keys[kSwitches + 1].attachTo(m_plvwDetails.handle(), searchKeys());
    skinControls();
    commands().covers().addListener(*this);
    reload();
    return true;
}

Handled PaneOverview::onDestroy(const Message&)
{
    commands().covers().removeListener(*this);
    m_balloon.hide();
    return kDefault;
}

void PaneOverview::settingsChanged()
{
    m_plvwDetails.settingsChanged();
    showSwitches();
    showControls();
    ContentPane::settingsChanged();
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void PaneOverview::storeState()
{
    keepView();
    if (m_pedtCriteria)
        commands().overview().searchCriteria = m_pedtCriteria.text();
    saveViewState(commands().viewStore(), kViewName, m_view);
}

void PaneOverview::keepView()
{
    if (m_summary.albums() == 0 || m_restores)
        return;
    m_plvwDetails.keepView(m_view);
    m_view.database = m_database;
}

void PaneOverview::reload()
{
    if (m_summary.albums() > 0)
        clearRecords();
    m_summary.count(commands().library());
    m_database = commands().database().lastUsed;
    m_plvwDetails.resetAlbums();
    showControls();
    applySearch(criteria());
    m_restores = m_summary.albums() > 0 && m_view.database == m_database;
    restoreView();
    updateOverviewStatus();
    InvalidateRect(handle(), nullptr, FALSE);
}

// A list without a size cannot scroll; it waits until it has one.
void PaneOverview::restoreView()
{
    const RECT area = m_plvwDetails.view().clientRect();
    if (!m_restores || area.bottom <= 0)
        return;
    m_restores = false;
    m_plvwDetails.restoreView(m_view);
    updateOverviewStatus();
}

// The records are still there when this is called.
void PaneOverview::clearRecords()
{
    m_balloon.hide();
    keepView();
    m_plvwDetails.setAlbums({});
    m_plvwDetails.resetAlbums();
    m_summary.clear();
    showControls();
    updateOverviewStatus();
    InvalidateRect(handle(), nullptr, FALSE);
}

void PaneOverview::marksChanged(std::span<Album* const> changed)
{
    m_balloon.hide();
    m_plvwDetails.marksChanged(changed);
}

void PaneOverview::setView(ListStyle style)
{
    m_balloon.hide();
    commands().overview().listviewStyle = static_cast<int>(style);
    m_plvwDetails.setStyle(style);
}

HWND PaneOverview::focusWindow() const
{
    return m_summary.albums() > 0 ? m_plvwDetails.handle() : handle();
}

void PaneOverview::trackCursor(POINT screen, bool moved)
{
    if (!m_plvwDetails.handle() || commands().isBusy() || !IsWindowVisible(handle()))
        return;
    BalloonTarget target;
    if (const int item = m_plvwDetails.itemAt(screen); item >= 0)
        target = {&m_plvwDetails.album(item), m_plvwDetails.itemRect(item)};
    m_balloon.track(m_plvwDetails.handle(), target, screen, moved);
}

Handled PaneOverview::onShow(const Message& message)
{
    if (message.id == WM_SHOWWINDOW && message.wParam == FALSE)
        m_balloon.hide();
    return kDefault;
}

// Tells what qualifies and what is selected.
std::string PaneOverview::statusText() const
{
    const auto qualified = static_cast<long>(m_plvwDetails.count());
    const long selected = m_plvwDetails.selectedCount();
    if (selected >= 2)
        return format("Multiple Selection: %ld of %ld", selected, qualified);
    if (selected == 1) {
        const int item = m_plvwDetails.selectedItem();
        return format("%s - %ld of %ld", m_plvwDetails.album(item).displayTitle.c_str(),
                      static_cast<long>(item) + 1, qualified);
    }
    if (qualified > 0)
        return format("Qualified Albums: %ld out of %ld", qualified, static_cast<long>(m_summary.albums()));
    return "Nothing Qualified";
}

void PaneOverview::updateOverviewStatus()
{
    m_status = m_statusPrefix + statusText();
    setStatus(m_status);
}

Handled PaneOverview::onNotify(const Message& message)
{
    NMHDR& header = *reinterpret_cast<NMHDR*>(message.lParam);
    const Handled handled = m_plvwDetails.answer(header);
    if (handled && header.code == LVN_COLUMNCLICK)
        updateOverviewStatus(); // what is selected has another place
    return handled;
}

Handled PaneOverview::onSelectionChanged(NMHDR&)
{
    m_searched = false;
    updateOverviewStatus();
    return 0;
}

void PaneOverview::coversArrived(const std::vector<Album*>& albums)
{
    m_plvwDetails.coversArrived(albums);
}

void PaneOverview::imageListsRebuilt()
{
    m_plvwDetails.refreshImageLists();
}

// Without albums the place is for the invitation.
void PaneOverview::showControls()
{
    const bool any = m_summary.albums() > 0;
    const bool search = any && searchShown();
    for (const Control& control : {Control(m_lblCriteria), Control(m_pedtCriteria)})
        control.show(search);
    for (const Button& field : m_chkFields)
        field.show(search);
    m_plvwDetails.view().show(any);
    layoutContent(contentRect());
}

RECT PaneOverview::stripRect(const RECT& content) const
{
    RECT strip = content;
    const int height = searchShown() && m_summary.albums() > 0 ? searchBoxHeight() : 0;
    if (commands().overview().searchBoxTop)
        strip.bottom = std::min(content.bottom, content.top + height);
    else
        strip.top = std::max(content.top, content.bottom - height);
    return strip;
}

void PaneOverview::layoutContent(const RECT& content)
{
    if (!m_plvwDetails.handle())
        return;
    const RECT strip = stripRect(content);
    layoutSearchBox(strip);
    RECT list = content;
    const bool onTop = commands().overview().searchBoxTop;
    if (onTop)
        list.top = strip.bottom;
    else
        list.bottom = strip.top;
    m_plvwDetails.move(list);
    orderControls(onTop);
    restoreView();
}

// The Tab key walks the way that the eye goes.
void PaneOverview::orderControls(bool boxFirst)
{
    const HWND list = m_plvwDetails.handle();
    if (GetWindow(list, boxFirst ? GW_HWNDNEXT : GW_HWNDPREV) != nullptr)
        SetWindowPos(list, boxFirst ? HWND_BOTTOM : HWND_TOP, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void PaneOverview::paintContent(HDC dc, const RECT& content)
{
    if (commands().isBusy())
        return;
    if (m_summary.albums() == 0)
        return m_summary.draw(dc, content, commands());
    const RECT strip = stripRect(content);
    fillRect(dc, strip, commands().frameFace());
}

} // namespace tessera
