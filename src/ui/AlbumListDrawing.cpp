// What the list draws itself.

#include "artwork/Covers.h"
#include "ui/AlbumList.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const char* kNothing = "There are no items to show.";
constexpr int kTileSide = 64;
constexpr int kTileMargin = 6;
constexpr int kIconMargin = 5; // round the cover

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

// Only the empty list is painted here; with items the control goes through them: through all in the
// rectangle around what is to be painted, which covers that come here and there make a large one.
Handled AlbumList::onPaint(const Message&)
{
    if (!m_places.empty()) {
        m_dirty.reset(CreateRectRgn(0, 0, 0, 0));
        if (GetUpdateRgn(m_lvw.handle(), m_dirty.get(), FALSE) == ERROR)
            m_dirty.reset();
        return kDefault;
    }
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

Handled AlbumList::onCustomDraw(const NMLVCUSTOMDRAW& draw)
{
    switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        m_hasFocus = GetFocus() == m_lvw.handle();
        if (m_background)
            drawBackground(draw.nmcd.hdc, m_lvw.clientRect());
        if (!picturesShown()) {
            measureColumns();
            markColumn(draw.nmcd.hdc);
        }
        return CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPREPAINT:
        drawItem(draw.nmcd.hdc, static_cast<int>(draw.nmcd.dwItemSpec), draw.nmcd.rc);
        return CDRF_SKIPDEFAULT;
    case CDDS_POSTPAINT:
        m_dirty.reset();
        return CDRF_DODEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

bool AlbumList::isDirty(const RECT& place) const
{
    return !m_dirty || RectInRegion(m_dirty.get(), &place);
}

void AlbumList::drawItem(HDC dc, int item, const RECT& bounds)
{
    if (item < 0 || static_cast<std::size_t>(item) >= m_places.size() || m_commands.isBusy())
        return;
    if (picturesShown()) {
        if (const RECT place = cellPlace(item); isDirty(place))
            drawCell(dc, cellOf(item, place));
    } else
        drawRow(dc, item, bounds);
}

RECT AlbumList::cellPlace(int item) const
{
    RECT icon = partOf(item, LVIR_ICON);
    const LONG left = (icon.left + icon.right - m_cell.cx) / 2;
    const LONG top = (icon.top + icon.bottom - m_cell.cy) / 2;
    return {left, top, left + m_cell.cx, top + m_cell.cy};
}

// All that changes when the album's cover comes.
RECT AlbumList::coverPlace(int item) const
{
    if (m_style == ListStyle::Details) {
        const RECT icon = partOf(item, LVIR_ICON);
        const RECT row = partOf(item, LVIR_BOUNDS);
        return {icon.left, row.top, icon.right, row.bottom};
    }
    const RECT cell = cellPlace(item);
    if (m_style == ListStyle::Tiles)
        return {cell.left, cell.top, cell.left + kTileSide, cell.top + kTileSide};
    const SIZE artwork = m_commands.covers().largeSize();
    return {cell.left + kIconMargin, cell.top + kIconMargin, cell.left + kIconMargin + artwork.cx,
            cell.top + kIconMargin + artwork.cy};
}

AlbumList::Cell AlbumList::cellOf(int item, const RECT& place) const
{
    const auto state = m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_SELECTED | LVIS_FOCUSED);
    return {item, place, (state & LVIS_SELECTED) != 0, (state & LVIS_FOCUSED) != 0 && m_hasFocus};
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
    if (cell.focused)
        drawFocus(dc, cell.place);
}

void AlbumList::drawFocus(HDC dc, const RECT& place)
{
    SetTextColor(dc, RGB(0, 0, 0));
    SetBkColor(dc, RGB(255, 255, 255));
    DrawFocusRect(dc, &place);
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
    if (!isDirty(place))
        return; // only the cover is new
    const std::size_t at = m_places[static_cast<std::size_t>(item)];
    const AlbumCaptions::Lines& lines = m_captions.lines(at, album(item), dc);
    LONG y = place.top;
    if (middle)
        y += (place.bottom - place.top - static_cast<LONG>(lines.size()) * m_lineHeight) / 2;
    for (const FittedLine& line : lines) {
        drawFitted(dc, line, centred ? (place.left + place.right - line.width) / 2 : place.left, y, place);
        y += m_lineHeight;
    }
}

} // namespace tessera
