// The geometry of the views.

#include "artwork/Covers.h"
#include "ui/AlbumList.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kTileSide = 64;
constexpr int kTileMargin = 6;     // between cover and text
constexpr int kLongestSide = 2000; // of a cell, whatever the settings say

int sane(int size, int least)
{
    return std::clamp(size, least, kLongestSide);
}

} // namespace

void AlbumList::setStyle(ListStyle style)
{
    m_style = style;
    switch (style) {
    case ListStyle::Icons:
        return setIconView(m_commands.general().iconCaptionHeight);
    case ListStyle::Tiles:
        return setTileView(m_commands.general().tileWidth);
    case ListStyle::Details:
        break;
    }
    const RedrawOff quiet(m_lvw.handle());
    showStyle(LVS_REPORT);
    attachLists();
    makeFocusVisible();
}

void AlbumList::setIconView(int captionHeight)
{
    m_style = ListStyle::Icons;
    m_captionHeight = sane(captionHeight, 0);
    const RedrawOff quiet(m_lvw.handle());
    showStyle(LVS_ICON);
    applyGeometry();
    makeFocusVisible();
}

void AlbumList::setTileView(int cellWidth)
{
    m_style = ListStyle::Tiles;
    m_tileWidth = sane(cellWidth, kTileSide);
    const RedrawOff quiet(m_lvw.handle());
    showStyle(LVS_ICON);
    applyGeometry();
    makeFocusVisible();
}

void AlbumList::showStyle(DWORD listStyle)
{
    const auto before = static_cast<DWORD>(GetWindowLongA(m_lvw.handle(), GWL_STYLE));
    const DWORD after = (before & ~static_cast<DWORD>(LVS_TYPEMASK)) | listStyle;
    if (after != before)
        SetWindowLongA(m_lvw.handle(), GWL_STYLE, static_cast<LONG>(after));
}

void AlbumList::applyGeometry()
{
    if (m_style == ListStyle::Icons) {
        const SIZE artwork = m_commands.covers().largeSize();
        const SIZE cell{artwork.cx + 10, artwork.cy + m_captionHeight + 15};
        sizeCells(cell, {cell.cx + 10, cell.cy + 10});
    } else {
        sizeCells({m_tileWidth, kTileSide}, {m_tileWidth + 30, 71});
    }
    resetCaptions();
    layoutAgain();
}

void AlbumList::sizeCells(SIZE cell, SIZE spacing)
{
    m_cell = cell;
    attachLists();
    m_lvw.send(LVM_SETICONSPACING, 0, MAKELPARAM(spacing.cx, spacing.cy));
}

// In the picture views the normal list only gives the cells their size; the artwork is drawn by us.
void AlbumList::attachLists()
{
    const Covers& covers = m_commands.covers();
    if (picturesShown()) {
        ImageList cells(
            ImageList_Create(static_cast<int>(m_cell.cx), static_cast<int>(m_cell.cy), ILC_COLOR, 0, 1));
        m_lvw.setImageList(cells.get(), LVSIL_NORMAL);
        m_imlCells = std::move(cells);
    } else {
        m_lvw.setImageList(covers.large(), LVSIL_NORMAL);
        m_imlCells.reset();
    }
    m_lvw.setImageList(covers.smallList(), LVSIL_SMALL);
}

void AlbumList::layoutAgain() const
{
    SetWindowPos(m_lvw.handle(), nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    m_lvw.send(LVM_ARRANGE, LVA_DEFAULT);
}

void AlbumList::resetCaptions()
{
    const GeneralSettings& general = m_commands.general();
    if (m_style == ListStyle::Icons)
        m_captions.reset(general.iconViewTokens,
                         static_cast<int>(m_cell.cx) - captionInset(general.iconCaptionCentred) -
                             captionInset(true),
                         m_captionHeight / m_lineHeight, m_catalogue.size());
    else
        m_captions.reset(general.tileViewTokens, static_cast<int>(m_cell.cx) - kTileSide - 2 * kTileMargin,
                         kTileSide / m_lineHeight, m_catalogue.size());
}

// Cells of another size lie elsewhere; the first one in view stays there.
void AlbumList::refreshImageLists()
{
    const RedrawOff quiet(m_lvw.handle());
    if (!picturesShown())
        return attachLists();
    const int top = topItem();
    applyGeometry();
    if (top > 0)
        scrollToTop(top);
}

// Laid out while redrawing is off: on, every cell that moves is repainted by itself.
void AlbumList::move(const RECT& place)
{
    const RECT before = m_lvw.rect();
    if (EqualRect(&before, &place))
        return;
    InvalidateRect(GetParent(m_lvw.handle()), &before, FALSE); // what a smaller list leaves behind
    const RedrawOff quiet(m_lvw.handle());
    m_lvw.move(place);
    if (picturesShown())
        m_lvw.send(LVM_ARRANGE, LVA_DEFAULT);
}

} // namespace tessera
