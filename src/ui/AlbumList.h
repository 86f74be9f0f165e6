#pragma once

#include "system/Handle.h"
#include "ui/AlbumCaptions.h"
#include "ui/AlbumCatalogue.h"
#include "ui/AlbumRows.h"
#include "ui/Pane.h"
#include "windowing/ImageList.h"
#include "windowing/ListView.h"
#include "windowing/Window.h"

#include <optional>

namespace tessera {

class Commands;
struct ViewState;

// Albums in a virtual list view: details in sixteen columns, or icons or tiles that it draws itself.
// Its parent hands it the list's notifications first; those that it leaves (clicks, keys, changes of
// the selection) are the parent's. Keys become notifications too: Enter NM_RETURN, and the
// Applications key and Shift+F10 NM_RCLICK with the pointer at the item. The wheel with the Ctrl key
// goes to the parent.
class AlbumList final : public Mapped<AlbumList, DirectSubclass> {
public:
    static std::span<const MapEntry<AlbumList>> messageMap();

    // The catalogue outlives the list.
    AlbumList(Commands& commands, AlbumCatalogue& catalogue);

    // Columns, image lists, font and view. False when there is no window.
    bool initAlbumList(HWND parent, UINT id, ListStyle style);
    // Font, colours, templates and sizes as the settings have them now.
    void settingsChanged();
    // The artwork lists are new ones.
    void refreshImageLists();
    void move(const RECT& place);

    // Another sequence, shown from its top: nothing is selected or has the focus; the sort column and
    // direction stay. Places of the catalogue.
    void setAlbums(const AlbumPlaces& places);
    // The catalogue was filled or emptied: no albums until they are set.
    void resetAlbums();
    // The albums in the order in which they were set.
    const AlbumPlaces& unsorted() const { return m_given; }
    std::size_t count() const { return m_places.size(); }
    Album& album(int item) const { return m_catalogue.album(m_places[static_cast<std::size_t>(item)]); }
    // In its present order.
    std::vector<Album*> selectedAlbums() const;
    void deselect() const;
    int selectedItem() const; // the first; -1: none
    int selectedCount() const { return static_cast<int>(m_lvw.send(LVM_GETSELECTEDCOUNT)); }

    // As a click on the column's header.
    void columnClicked(int column);
    int sortColumn() const { return m_sortColumn; } // -1: none
    // Of the albums that are set from now on; an unknown column: none.
    void setSort(int column, bool ascending);

    ListStyle style() const { return m_style; }
    void setStyle(ListStyle style);
    // Cells as high as the large artwork and the caption, or as wide as a tile.
    void setIconView(int captionHeight);
    void setTileView(int cellWidth);

    // Where it was left; the selection is part of it.
    void keepView(ViewState& state) const;
    void restoreView(const ViewState& state);

    // The item under a point of the screen, -1 for none, and its rectangle on the screen.
    int itemAt(POINT screen) const;
    RECT itemRect(int item) const;
    // Covers of these albums have come.
    void coversArrived(std::span<Album* const> albums);
    // These albums have other marks, which columns and captions may show.
    void marksChanged(std::span<Album* const> changed);
    // Null: none, as it is at first. The bitmap stays the caller's.
    void setBackgroundPicture(HBITMAP picture);

    Handled answer(NMHDR& header);
    const ListView& view() const { return m_lvw; }
    void makeFocusVisible() const;
    // The first album alone is selected and has the focus.
    void selectFirst() const;

private:
    struct Cell {
        int item;
        RECT place;
        bool selected;
        bool focused;
    };

    // columns and sorting
    void addColumns();
    void markSortColumn();
    void showArrow(int column, int arrow) const;
    void sortItems();

    // views
    bool picturesShown() const { return m_style != ListStyle::Details; }
    void showStyle(DWORD listStyle);
    void attachLists();
    void sizeCells(SIZE cell, SIZE spacing);
    void applyGeometry();
    void layoutAgain() const;
    RECT partOf(int item, LONG part) const; // LVIR_*
    template <class PlaceOf>
    void redrawAlbums(std::span<Album* const> albums, PlaceOf placeOf);
    void resetCaptions();
    void setCount();

    // drawing
    Handled onCustomDraw(const NMLVCUSTOMDRAW& draw);
    void drawItem(HDC dc, int item, const RECT& bounds);
    bool isDirty(const RECT& place) const;
    Cell cellOf(int item, const RECT& place) const;
    RECT cellPlace(int item) const;
    RECT coverPlace(int item) const;
    void drawCell(HDC dc, const Cell& cell);
    static void drawFocus(HDC dc, const RECT& place);
    void drawIcon(HDC dc, const Cell& cell);
    void drawTile(HDC dc, const Cell& cell);
    void drawCover(HDC dc, HIMAGELIST list, int item, int x, int y);
    // Left of an icon's caption: it begins where the cover does, unless it is centred.
    static int captionInset(bool centred) { return centred ? 2 : 5; }
    void drawCaption(HDC dc, int item, const RECT& place, bool centred, bool middle);
    void measureColumns();
    void drawRow(HDC dc, int item, RECT place);
    RECT rowTexts(const RECT& row) const;
    POINT smallCoverPlace(const RECT& row) const;
    void markColumn(HDC dc) const;
    void drawRowTexts(HDC dc, int item, const RECT& row);
    COLORREF selectedText() const;
    void drawBackground(HDC dc, const RECT& area) const;
    Handled onPaint(const Message& message);
    Handled onErase(const Message& message);

    // data and keys
    Handled onDisplayInfo(NMLVDISPINFOA& info);
    Handled onFind(NMLVFINDITEMA& find, bool wide);
    int findPrefix(const std::string& prefix, int start, bool wrap) const;
    int findIn(bool artist, const std::string& prefix, int start, bool wrap) const;
    Handled onKeyDown(const Message& message);
    Handled onKeyUp(const Message& message);
    Handled onCharacter(const Message& message);
    Handled onDialogCode(const Message& message);
    Handled onContextMenu(const Message& message);
    Handled onWheel(const Message& message);
    void menuAtItem();
    void notifyParent(UINT code) const;
    void dragSelection();

    // selection
    std::vector<std::uint32_t> selectedPlaces() const;
    void selectPlaces(const std::vector<std::uint32_t>& places, std::optional<std::uint32_t> focused);
    void scrollToTop(int item) const;
    int topItem() const;
    int startOfView() const; // the first item of which anything is in view
    int endOfView() const;   // behind the last item in view
    int firstBelow(LONG top) const;

    Commands& m_commands;
    AlbumCatalogue& m_catalogue;
    AlbumCaptions m_captions;
    AlbumRows m_rows;
    ListView m_lvw;
    std::array<RECT, kColumnCount> m_columns{}; // headers in the paint under way; the first without the cover
    RECT m_rowIcon{};
    RegionHandle m_dirty;     // of the paint under way; none: everything is drawn
    bool m_hasFocus = false;  // asked once for all items of a paint
    HWND m_hHeader = nullptr; // kept: each question to the list goes through its subclasses
    ImageList m_imlCells;     // gives the cells of the picture views their size
    AlbumPlaces m_given;
    AlbumPlaces m_places; // item i shows album m_places[i] of the catalogue
    ListStyle m_style = ListStyle::Details;
    int m_sortColumn = -1;
    int m_markedColumn = -1; // in the header
    bool m_ascending = true;
    bool m_quiet = false; // changes of the selection are our own
    int m_captionHeight = 0;
    int m_tileWidth = 0;
    SIZE m_cell{};
    int m_lineHeight = 1;
    HBITMAP m_background = nullptr;
};

} // namespace tessera
