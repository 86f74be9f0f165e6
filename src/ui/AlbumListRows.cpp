// The rows of the details view. They are drawn as a whole: the control would ask for each of their
// texts, and would cut the last digit of a number that reaches over what it is measured as.

#include "artwork/Covers.h"
#include "ui/AlbumColumns.h"
#include "ui/AlbumList.h"
#include "ui/Colours.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kTextMargin = 6;  // beside a column's text
constexpr int kLabelMargin = 2; // between the small cover and the first one
constexpr int kEndMargin = 2;   // behind a text that fills its column
constexpr int kMarkPercent = 5; // of the text colour in the sorted column

LONG textStart(const RECT& place, int format, int width)
{
    switch (format & LVCFMT_JUSTIFYMASK) {
    case LVCFMT_RIGHT:
        return place.right - kTextMargin - width;
    case LVCFMT_CENTER:
        return std::max((place.left + place.right - width) / 2, place.left + kTextMargin);
    default:
        return place.left + kTextMargin;
    }
}

} // namespace

// Where the columns stand, once for all rows of a paint.
void AlbumList::measureColumns()
{
    POINT header{};
    MapWindowPoints(m_hHeader, m_lvw.handle(), &header, 1);
    AlbumRows::Widths widths{};
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        RECT& place = m_columns[column];
        SendMessageA(m_hHeader, HDM_GETITEMRECT, column, reinterpret_cast<LPARAM>(&place));
        OffsetRect(&place, header.x, 0);
        widths[column] = static_cast<int>(place.right - place.left) - kTextMargin - kEndMargin;
    }
    const int top = std::max(topItem(), 0);
    m_rowIcon = partOf(top, LVIR_ICON);
    RECT& first = m_columns[0];
    first.left = std::min(partOf(top, LVIR_LABEL).left + kLabelMargin - kTextMargin, first.right);
    widths[0] = static_cast<int>(first.right - first.left) - kTextMargin - kEndMargin;
    m_rows.setWidths(widths);
}

void AlbumList::drawRow(HDC dc, int item, RECT place)
{
    if (IsRectEmpty(&place))
        place = partOf(item, LVIR_BOUNDS);
    if (!isDirty(place))
        return;
    const auto state = m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_SELECTED | LVIS_FOCUSED);
    const bool selected = (state & LVIS_SELECTED) != 0;
    const RECT texts{m_columns.front().left, place.top, m_columns.back().right, place.bottom};
    const DcScope restore(dc);
    SelectObject(dc, m_commands.listFont());
    SetBkMode(dc, TRANSPARENT);
    if (selected)
        fillRect(dc, texts, GetSysColor(m_hasFocus ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
    else
        markRow(dc, place);
    SetTextColor(dc, !selected ? m_commands.treeText()
                               : GetSysColor(m_hasFocus ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
    drawRowTexts(dc, item, place);
    const RECT icon{m_rowIcon.left, place.top, m_rowIcon.right, place.bottom};
    if (isDirty(icon))
        drawCover(dc, m_commands.covers().smallList(), item, icon.left, icon.top);
    if (m_hasFocus && (state & LVIS_FOCUSED) != 0)
        drawFocus(dc, texts);
}

// The sorted column.
void AlbumList::markRow(HDC dc, const RECT& row) const
{
    if (m_background || m_sortColumn < 0)
        return;
    const RECT& column = m_columns[static_cast<std::size_t>(m_sortColumn)];
    fillRect(dc, {column.left, row.top, column.right, row.bottom},
             mixed(m_commands.treeBackground(), m_commands.treeText(), kMarkPercent));
}

void AlbumList::drawRowTexts(HDC dc, int item, const RECT& row)
{
    const AlbumRows::Row& texts = m_rows.row(m_places[static_cast<std::size_t>(item)], album(item), dc);
    const LONG y = (row.top + row.bottom - m_lineHeight) / 2;
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        const RECT place{m_columns[column].left, row.top, m_columns[column].right, row.bottom};
        if (!texts[column].text.empty() && isDirty(place))
            drawFitted(dc, texts[column],
                       textStart(place, albumColumns()[column].format, texts[column].width), y, place);
    }
}

} // namespace tessera
