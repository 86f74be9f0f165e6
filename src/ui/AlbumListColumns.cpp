// Columns and sorting.

#include "ui/AlbumColumns.h"
#include "ui/AlbumList.h"
#include "windowing/Drawing.h"

namespace tessera {

namespace {

constexpr int kTitleRoom = 30; // pixels at 96 dpi

} // namespace

void AlbumList::addColumns()
{
    const HWND header = m_lvw.header();
    const WindowDc dc(header);
    const SelectScope font(dc.dc(), reinterpret_cast<HFONT>(SendMessageA(header, WM_GETFONT, 0, 0)));
    for (const AlbumColumn& column : albumColumns()) {
        // The header keeps room on both sides, and the sort arrow wants its own.
        const LONG title = textSize(dc.dc(), column.title).cx + scaled(kTitleRoom, dc.dc());
        const int width = column.width == 0 ? static_cast<int>(title) : scaled(column.width, dc.dc());
        m_lvw.addColumn(column.title, width, column.format);
    }
}

void AlbumList::columnClicked(int column)
{
    m_ascending = column == m_sortColumn ? !m_ascending : true;
    m_sortColumn = column;
    markSortColumn();
    if (m_places.size() > 1)
        sortItems();
}

void AlbumList::setSort(int column, bool ascending)
{
    m_sortColumn = column >= 0 && column < static_cast<int>(kColumnCount) ? column : -1;
    m_ascending = ascending;
    markSortColumn();
}

// What is selected and focused moves with its album.
void AlbumList::sortItems()
{
    const std::vector<std::uint32_t> selected = selectedPlaces();
    const int focus = m_lvw.focused();
    std::optional<std::uint32_t> focused;
    if (focus >= 0)
        focused = m_places[static_cast<std::size_t>(focus)];
    m_catalogue.sort(m_places, m_sortColumn, m_ascending);
    selectPlaces(selected, focused);
    m_lvw.invalidate(false);
    makeFocusVisible();
}

void AlbumList::showArrow(int column, int arrow) const
{
    if (column < 0)
        return;
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    SendMessageA(m_lvw.header(), HDM_GETITEMA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | arrow;
    SendMessageA(m_lvw.header(), HDM_SETITEMA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
}

void AlbumList::markSortColumn()
{
    if (m_markedColumn != m_sortColumn)
        showArrow(m_markedColumn, 0);
    showArrow(m_sortColumn, m_ascending ? HDF_SORTUP : HDF_SORTDOWN);
    if (m_markedColumn != m_sortColumn)
        m_lvw.send(LVM_SETSELECTEDCOLUMN, static_cast<WPARAM>(m_sortColumn));
    m_markedColumn = m_sortColumn;
    m_lvw.invalidate(false);
}

} // namespace tessera
