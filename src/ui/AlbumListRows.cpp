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
constexpr int kSmallSide = 16;  // of the cover
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
        OffsetRect(&place, header.x, header.y);
        widths[column] = static_cast<int>(place.right - place.left) - kTextMargin - kEndMargin;
    }
    const int top = std::max(topItem(), 0);
    m_rowIcon = partOf(top, LVIR_ICON);
    RECT& first = m_columns[0];
    first.left = std::min(partOf(top, LVIR_LABEL).left, first.right);
    widths[0] = static_cast<int>(first.right - first.left) - kLabelMargin - kEndMargin;
    m_rows.setWidths(widths);
}

// All columns, in whatever order they stand; not the cover where it stands in front of them.
RECT AlbumList::rowTexts(const RECT& row) const
{
    const auto [first, last] = std::ranges::minmax(m_columns, std::less(), &RECT::left);
    return {first.left, row.top, last.right, row.bottom};
}

// In the middle of a row that is higher.
POINT AlbumList::smallCoverPlace(const RECT& row) const
{
    return {m_rowIcon.left, (row.top + row.bottom - kSmallSide) / 2};
}

void AlbumList::drawRow(HDC dc, int item, RECT place)
{
    if (IsRectEmpty(&place))
        place = partOf(item, LVIR_BOUNDS);
    if (!isDirty(place))
        return;
    const auto state = m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_SELECTED | LVIS_FOCUSED);
    const bool selected = (state & LVIS_SELECTED) != 0;
    const RECT texts = rowTexts(place);
    const DcScope restore(dc);
    SelectObject(dc, m_commands.listFont());
    SetBkMode(dc, TRANSPARENT);
    if (selected)
        fillRect(dc, texts, GetSysColor(m_hasFocus ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
    SetTextColor(dc, !selected ? m_commands.treeText()
                               : GetSysColor(m_hasFocus ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
    drawRowTexts(dc, item, place);
    const RECT icon{m_rowIcon.left, place.top, m_rowIcon.right, place.bottom};
    if (isDirty(icon)) {
        const POINT cover = smallCoverPlace(place);
        drawCover(dc, m_commands.covers().smallList(), item, cover.x, cover.y);
    }
    if (m_hasFocus && (state & LVIS_FOCUSED) != 0)
        drawFocus(dc, texts);
}

// The sorted column, from the header to the bottom. Some systems' controls have shaded it already,
// when they are told of it; their colour stays.
void AlbumList::markColumn(HDC dc) const
{
    if (m_background || m_sortColumn < 0)
        return;
    const RECT& column = m_columns[static_cast<std::size_t>(m_sortColumn)];
    const RECT strip{column.left, column.bottom, column.right, m_lvw.clientRect().bottom};
    RECT painted{};
    RECT shaded{};
    if (GetClipBox(dc, &painted) == NULLREGION || !IntersectRect(&shaded, &strip, &painted))
        return;
    const COLORREF ground = m_commands.treeBackground();
    if (GetPixel(dc, static_cast<int>(shaded.left), static_cast<int>(shaded.bottom) - 1) == ground)
        fillRect(dc, shaded, mixed(ground, m_commands.treeText(), kMarkPercent));
}

void AlbumList::drawRowTexts(HDC dc, int item, const RECT& row)
{
    const AlbumRows::Row& texts = m_rows.row(m_places[static_cast<std::size_t>(item)], album(item), dc);
    const LONG y = (row.top + row.bottom - m_lineHeight) / 2;
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        const LONG left = m_columns[column].left + (column == 0 ? kLabelMargin - kTextMargin : 0);
        const RECT place{left, row.top, m_columns[column].right, row.bottom};
        if (!texts[column].text.empty() && isDirty(place))
            drawFitted(dc, texts[column],
                       textStart(place, albumColumns()[column].format, texts[column].width), y, place);
    }
}

} // namespace tessera
