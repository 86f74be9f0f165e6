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
    m_hHeader = m_lvw.header();
    const WindowDc dc(m_hHeader);
    const SelectScope font(dc.dc(), reinterpret_cast<HFONT>(SendMessageA(m_hHeader, WM_GETFONT, 0, 0)));
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
    m_lvw.invalidate(false);
}

void AlbumList::setSort(int column, bool ascending)
{
    m_sortColumn = column >= 0 && column < static_cast<int>(kColumnCount) ? column : -1;
    m_ascending = ascending;
    markSortColumn();
    m_lvw.invalidate(false);
}

// What is selected and focused moves with its album.
void AlbumList::sortItems()
{
    const int focus = m_lvw.focused();
    if (focus < 0 && selectedCount() == 0)
        return m_catalogue.sort(m_places, m_sortColumn, m_ascending);
    const std::vector<std::uint32_t> selected = selectedPlaces();
    std::optional<std::uint32_t> focused;
    if (focus >= 0)
        focused = m_places[static_cast<std::size_t>(focus)];
    m_catalogue.sort(m_places, m_sortColumn, m_ascending);
    selectPlaces(selected, focused);
    makeFocusVisible();
}

void AlbumList::showArrow(int column, int arrow) const
{
    if (column < 0)
        return;
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    SendMessageA(m_hHeader, HDM_GETITEMA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | arrow;
    SendMessageA(m_hHeader, HDM_SETITEMA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
}

void AlbumList::markSortColumn()
{
    if (m_markedColumn != m_sortColumn)
        showArrow(m_markedColumn, 0);
    showArrow(m_sortColumn, m_ascending ? HDF_SORTUP : HDF_SORTDOWN);
    if (m_markedColumn != m_sortColumn)
        m_lvw.send(LVM_SETSELECTEDCOLUMN, static_cast<WPARAM>(m_sortColumn));
    m_markedColumn = m_sortColumn;
}

} // namespace tessera
