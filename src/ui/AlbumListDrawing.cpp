// What the list draws itself.

#include "artwork/Covers.h"
#include "ui/AlbumColumns.h"
#include "ui/AlbumList.h"
#include "ui/Colours.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const char* kNothing = "There are no items to show.";
constexpr int kTileSide = 64;
constexpr int kTextMargin = 6; // beside a column's text
constexpr int kTileMargin = 6;
constexpr int kIconMargin = 5;  // round the cover
constexpr int kMarkPercent = 5; // of the text colour in the sorted column

void drawBitmapTiled(HDC dc, HBITMAP bitmap, const RECT& area)
{
    BITMAP size{};
    if (GetObjectA(bitmap, sizeof size, &size) == 0 || size.bmWidth <= 0 || size.bmHeight <= 0)
        return;
    const MemoryDc memory(dc);
    const SelectScope selected(memory.dc(), bitmap);
    for (LONG y = area.top; y < area.bottom; y += size.bmHeight) {
        for (LONG x = area.left; x < area.right; x += size.bmWidth)
            BitBlt(dc, x, y, size.bmWidth, size.bmHeight, memory.dc(), 0, 0, SRCCOPY);
    }
}

} // namespace

void AlbumList::setBackgroundPicture(HBITMAP picture)
{
    m_background = picture;
    m_lvw.send(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(picture ? CLR_NONE : m_commands.treeBackground()));
    m_lvw.invalidate();
}

void AlbumList::drawBackground(HDC dc, const RECT& area) const
{
    if (m_background)
        drawBitmapTiled(dc, m_background, area);
    else
        fillRect(dc, area, m_commands.treeBackground());
}

Handled AlbumList::onErase(const Message& message)
{
    if (!m_places.empty() && !m_background)
        return kDefault;
    if (m_background)
        drawBackground(reinterpret_cast<HDC>(message.wParam), m_lvw.clientRect());
    return 1;
}

// Only the empty list is painted here; with items the control goes through them.
Handled AlbumList::onPaint(const Message&)
{
    if (!m_places.empty())
        return kDefault;
    const PaintScope paint(m_lvw.handle());
    RECT area = m_lvw.clientRect();
    if (!picturesShown()) {
        RECT header{};
        GetClientRect(m_hHeader, &header);
        area.top = header.bottom;
    }
    const DoubleBuffer buffer(paint.dc(), area);
    drawBackground(buffer.dc(), area);
    const SelectScope font(buffer.dc(), m_commands.listFont());
    SetBkMode(buffer.dc(), TRANSPARENT);
    SetTextColor(buffer.dc(), m_commands.treeText());
    drawLine(buffer.dc(), kNothing, area, DT_CENTER | DT_VCENTER);
    return 0;
}

Handled AlbumList::onCustomDraw(NMLVCUSTOMDRAW& draw)
{
    switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        if (m_background)
            drawBackground(draw.nmcd.hdc, m_lvw.clientRect());
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        return drawItem(draw);
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM: {
        const COLORREF back = m_commands.treeBackground();
        draw.clrTextBk = m_background                    ? CLR_NONE
                         : draw.iSubItem == m_sortColumn ? mixed(back, m_commands.treeText(), kMarkPercent)
                                                         : back;
        draw.clrText = m_commands.treeText();
        return drawNumber(draw) ? CDRF_SKIPDEFAULT : CDRF_NEWFONT;
    }
    default:
        return CDRF_DODEFAULT;
    }
}

Handled AlbumList::drawItem(NMLVCUSTOMDRAW& draw)
{
    const auto item = static_cast<int>(draw.nmcd.dwItemSpec);
    if (!picturesShown()) {
        m_rowSelected = m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_SELECTED) != 0;
        return CDRF_NOTIFYSUBITEMDRAW;
    }
    if (item >= 0 && static_cast<std::size_t>(item) < m_places.size() && !m_commands.isBusy())
        drawCell(draw.nmcd.hdc, cellOf(item));
    return CDRF_SKIPDEFAULT;
}

// Right-aligned texts may reach over what they are measured as, and the list would cut their last digit.
bool AlbumList::drawNumber(const NMLVCUSTOMDRAW& draw) const
{
    const auto item = static_cast<int>(draw.nmcd.dwItemSpec);
    const auto column = static_cast<std::size_t>(std::max(draw.iSubItem, 0));
    if (column >= kColumnCount || albumColumns()[column].format != LVCFMT_RIGHT || m_commands.isBusy() ||
        item < 0 || static_cast<std::size_t>(item) >= m_places.size())
        return false;
    RECT place = draw.nmcd.rc;
    if (IsRectEmpty(&place)) {
        place = {LVIR_BOUNDS, draw.iSubItem, 0, 0};
        m_lvw.send(LVM_GETSUBITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&place));
    }
    const HDC dc = draw.nmcd.hdc;
    const DcScope restore(dc);
    const bool focus = GetFocus() == m_lvw.handle();
    if (m_rowSelected)
        fillRect(dc, place, GetSysColor(focus ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
    else if (draw.clrTextBk != CLR_NONE)
        fillRect(dc, place, draw.clrTextBk);
    SelectObject(dc, m_commands.listFont());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, m_rowSelected ? GetSysColor(focus ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT) : draw.clrText);
    InflateRect(&place, -kTextMargin, 0);
    drawLine(dc, columnTexts(album(item))[column], place, DT_RIGHT | DT_VCENTER | DT_NOCLIP);
    return true;
}

AlbumList::Cell AlbumList::cellOf(int item) const
{
    RECT icon{LVIR_ICON, 0, 0, 0};
    m_lvw.send(LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&icon));
    const auto state = m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_SELECTED | LVIS_FOCUSED);
    const LONG left = (icon.left + icon.right - m_cell.cx) / 2;
    const LONG top = (icon.top + icon.bottom - m_cell.cy) / 2;
    return {item,
            {left, top, left + m_cell.cx, top + m_cell.cy},
            (state & LVIS_SELECTED) != 0,
            (state & LVIS_FOCUSED) != 0 && GetFocus() == m_lvw.handle()};
}

// A text colour of the panes' own, when the host's skin gives one that shows on the highlight.
COLORREF AlbumList::selectedText() const
{
    const COLORREF custom = m_commands.listSelectedText();
    return custom == GetSysColor(COLOR_HIGHLIGHT) ? GetSysColor(COLOR_HIGHLIGHTTEXT) : custom;
}

void AlbumList::drawCell(HDC dc, const Cell& cell)
{
    const DcScope restore(dc);
    SelectObject(dc, m_commands.listFont());
    SetBkMode(dc, TRANSPARENT);
    if (cell.selected)
        fillRect(dc, cell.place, GetSysColor(COLOR_HIGHLIGHT));
    SetTextColor(dc, cell.selected ? selectedText() : m_commands.treeText());
    if (m_style == ListStyle::Icons)
        drawIcon(dc, cell);
    else
        drawTile(dc, cell);
    if (cell.focused) {
        SetTextColor(dc, RGB(0, 0, 0));
        SetBkColor(dc, RGB(255, 255, 255));
        DrawFocusRect(dc, &cell.place);
    }
}

void AlbumList::drawIcon(HDC dc, const Cell& cell)
{
    const Covers& covers = m_commands.covers();
    const SIZE artwork = covers.largeSize();
    drawCover(dc, covers.large(), cell.item, static_cast<int>(cell.place.left) + kIconMargin,
              static_cast<int>(cell.place.top) + kIconMargin);
    const bool centred = m_commands.general().iconCaptionCentred;
    const RECT text{cell.place.left + captionInset(centred), cell.place.top + artwork.cy + 2 * kIconMargin,
                    cell.place.right - captionInset(true), cell.place.bottom};
    drawCaption(dc, cell.item, text, centred, false);
}

void AlbumList::drawTile(HDC dc, const Cell& cell)
{
    drawCover(dc, m_commands.covers().medium(), cell.item, static_cast<int>(cell.place.left),
              static_cast<int>(cell.place.top));
    const RECT text{cell.place.left + kTileSide + kTileMargin, cell.place.top, cell.place.right - kTileMargin,
                    cell.place.bottom};
    drawCaption(dc, cell.item, text, false, true);
}

void AlbumList::drawCover(HDC dc, HIMAGELIST list, int item, int x, int y)
{
    const int index = m_commands.covers().imageIndex(album(item));
    if (list && index >= 0)
        ImageList_Draw(list, index, dc, x, y, ILD_NORMAL);
}

void AlbumList::drawCaption(HDC dc, int item, const RECT& place, bool centred, bool middle)
{
    const std::size_t at = m_places[static_cast<std::size_t>(item)];
    const AlbumCaptions::Lines& lines = m_captions.lines(at, album(item), dc);
    LONG y = place.top;
    if (middle)
        y += (place.bottom - place.top - static_cast<LONG>(lines.size()) * m_lineHeight) / 2;
    for (const AlbumCaptions::Line& line : lines) {
        const LONG x = centred ? (place.left + place.right - line.width) / 2 : place.left;
        ExtTextOutW(dc, x, y, ETO_CLIPPED, &place, line.text.data(), static_cast<UINT>(line.text.size()),
                    nullptr);
        y += m_lineHeight;
    }
}

} // namespace tessera
