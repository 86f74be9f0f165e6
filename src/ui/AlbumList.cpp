// What the list shows and what it answers when it is asked.

#include "ui/AlbumList.h"

#include "artwork/Covers.h"
#include "base/FlagScope.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr DWORD kStyle = LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS |
                         LVS_AUTOARRANGE | WS_CLIPCHILDREN | WS_TABSTOP;

} // namespace

AlbumList::AlbumList(Commands& commands, AlbumCatalogue& catalogue)
    : m_commands(commands), m_catalogue(catalogue), m_captions(commands.tokens())
{
}

std::span<const MapEntry<AlbumList>> AlbumList::messageMap()
{
    static constexpr std::array<MapEntry<AlbumList>, 9> kMap{{
        {WM_PAINT, &AlbumList::onPaint},
        {WM_ERASEBKGND, &AlbumList::onErase},
        {WM_KEYDOWN, &AlbumList::onKeyDown},
        {WM_KEYUP, &AlbumList::onKeyUp},
        {WM_CHAR, &AlbumList::onCharacter},
        {WM_CONTEXTMENU, &AlbumList::onContextMenu},
        {WM_MOUSEWHEEL, &AlbumList::onWheel},
        {WM_SYSKEYDOWN, &AlbumList::onKeyDown},
        {WM_GETDLGCODE, &AlbumList::onDialogCode},
    }};
    return kMap;
}

bool AlbumList::initAlbumList(HWND parent, UINT id, ListStyle style)
{
    if (!m_lvw.create(parent, id, {0, 0, 0, 0}, kStyle, 0) || !attach(m_lvw.handle()))
        return false;
    m_lvw.setExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    m_lvw.setFont(m_commands.listFont(), false);
    addColumns();
    m_style = style;
    settingsChanged();
    return true;
}

void AlbumList::settingsChanged()
{
    m_lvw.setFont(m_commands.listFont());
    m_lvw.setColours(m_commands.treeBackground(), m_commands.treeText());
    const WindowDc dc(m_lvw.handle());
    const SelectScope font(dc.dc(), m_commands.listFont());
    TEXTMETRICA metrics{};
    GetTextMetricsA(dc.dc(), &metrics);
    m_lineHeight = std::max<int>(metrics.tmHeight, 1);
    m_rows.clear();
    setStyle(m_style);
}

// The list asks while it paints, so nothing of the library is touched while a job has it.
Handled AlbumList::onDisplayInfo(NMLVDISPINFOA& info)
{
    LVITEMA& item = info.item;
    const bool known = item.iItem >= 0 && static_cast<std::size_t>(item.iItem) < m_places.size();
    if (!known || m_commands.isBusy()) {
        if ((item.mask & LVIF_TEXT) != 0)
            answerText(item, {});
        return 0;
    }
    Album& shown = album(item.iItem);
    if ((item.mask & LVIF_TEXT) != 0) {
        const auto column = static_cast<std::size_t>(std::max(item.iSubItem, 0));
        const bool hasText = !picturesShown() && column < kColumnCount;
        answerText(item, hasText ? columnTexts(shown)[column] : std::string());
    }
    if ((item.mask & LVIF_IMAGE) != 0 && item.iSubItem == 0)
        item.iImage = m_commands.covers().imageIndex(shown);
    return 0;
}

Handled AlbumList::answer(NMHDR& header)
{
    if (header.hwndFrom != m_lvw.handle())
        return kDefault;
    switch (header.code) {
    case LVN_GETDISPINFOA:
        return onDisplayInfo(notificationAs<NMLVDISPINFOA>(header));
    case NM_CUSTOMDRAW:
        return onCustomDraw(notificationAs<NMLVCUSTOMDRAW>(header));
    case LVN_ODFINDITEMA:
    case LVN_ODFINDITEMW:
        return onFind(notificationAs<NMLVFINDITEMA>(header), header.code == LVN_ODFINDITEMW);
    case LVN_COLUMNCLICK:
        columnClicked(notificationAs<NMLISTVIEW>(header).iSubItem);
        return 0;
    case LVN_BEGINDRAG:
        dragSelection();
        return 0;
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
        return m_quiet ? Handled(0) : kDefault;
    default:
        return kDefault;
    }
}

void AlbumList::deselect() const
{
    if (selectedCount() > 0)
        m_lvw.select(-1, false);
}

void AlbumList::setAlbums(const AlbumPlaces& places)
{
    {
        const FlagScope quiet(m_quiet);
        deselect();
        m_lvw.unfocus(); // the place would be another album's
    }
    m_given = places;
    m_places = places;
    if (m_sortColumn >= 0 && m_places.size() > 1)
        m_catalogue.sort(m_places, m_sortColumn, m_ascending);
    setCount();
    if (!m_places.empty())
        m_lvw.makeVisible(0);
}

void AlbumList::resetAlbums()
{
    setAlbums({});
    resetCaptions();
    m_rows.clear();
}

void AlbumList::setCount()
{
    m_lvw.setVirtualCount(static_cast<int>(m_places.size()));
}

void AlbumList::marksChanged(std::span<Album* const> changed)
{
    for (const Album* const album : changed) {
        m_captions.drop(m_catalogue.find(album->id));
        m_rows.drop(m_catalogue.find(album->id));
    }
    redrawAlbums(changed, [this](int item) { return partOf(item, LVIR_BOUNDS); });
}

void AlbumList::coversArrived(std::span<Album* const> albums)
{
    redrawAlbums(albums, [this](int item) { return coverPlace(item); });
}

RECT AlbumList::partOf(int item, LONG part) const
{
    RECT place{part, 0, 0, 0};
    m_lvw.send(LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&place));
    return place;
}

// Only what is in view. The list is asked as little as can be: this happens many times a second.
template <class PlaceOf>
void AlbumList::redrawAlbums(std::span<Album* const> albums, PlaceOf placeOf)
{
    if (!IsWindowVisible(m_lvw.handle()))
        return;
    const int end = endOfView();
    for (int item = startOfView(); item < end; ++item) {
        if (std::ranges::find(albums, &album(item)) == albums.end())
            continue;
        const RECT place = placeOf(item);
        InvalidateRect(m_lvw.handle(), &place, FALSE);
    }
}

int AlbumList::itemAt(POINT screen) const
{
    LVHITTESTINFO hit{};
    hit.pt = screen;
    ScreenToClient(m_lvw.handle(), &hit.pt);
    const RECT client = m_lvw.clientRect();
    if (!PtInRect(&client, hit.pt) || WindowFromPoint(screen) != m_lvw.handle())
        return -1;
    return static_cast<int>(m_lvw.send(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
}

RECT AlbumList::itemRect(int item) const
{
    RECT rect = partOf(item, picturesShown() ? LVIR_ICON : LVIR_BOUNDS);
    MapWindowPoints(m_lvw.handle(), nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

} // namespace tessera
