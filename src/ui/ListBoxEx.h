#pragma once

#include "ui/InPlaceButton.h"
#include "ui/InPlaceEdit.h"
#include "windowing/Window.h"

#include <commctrl.h>
#include <span>
#include <string>
#include <vector>

namespace tessera {

// Registered messages to the list's parent.
// The browse button was clicked: the edited row, 0.
UINT browseMessage();
// An edit is about to be accepted: its row, the new text (const char*).
UINT endEditMessage();

// A single-column list of texts that the user edits in place, reorders by key or by dragging, and
// to which the owner may lend a "..." button beside the edited row. The parent hears LBN_SELCHANGE
// also when a key or an edit changes the current row. User-interface thread only.
class CListBoxEx : public Mapped<CListBoxEx, Subclass> {
public:
    // A style bit of the list's own: the browse button is wanted. The system gives the bit no meaning
    // for a list that draws its rows itself.
    static constexpr DWORD kBrowseButton = LBS_USETABSTOPS;
    static constexpr DWORD kStyles =
        LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL;
    // Item data of a row that is drawn as the end of the list.
    static constexpr LPARAM kEndRowMark = 0x45424558;

    CListBoxEx();

    // kStyles and the client edge are added to what is given. The font is the parent's.
    bool create(HWND parent, int id, const RECT& place, DWORD style);
    // Takes over a list of a dialog template that was made with kStyles.
    void subclass(HWND list);

    void enableEditing(bool on) { m_bEditing = on; }
    void enableDragging(bool on) { m_bDragging = on; }

    int count() const;
    int currentRow() const;                        // -1: none
    int editedRow() const { return m_nEditedRow; } // -1: no edit is open
    std::string rowText(int row) const;
    // Every row's text, in order, without the end row of a drag.
    std::vector<std::string> rows() const;
    void setRows(const std::vector<std::string>& texts);
    void selectRow(int row) const;

    // Opens the edit; -1 means the current row, a row past the last one appends an empty row first.
    void beginEdit(int row = -1);
    void endEdit(bool cancel);
    // Ends an open edit as Return does.
    void acceptEdit();
    // For the owner's answer to a browse: replaces the text of the open edit.
    void setEditText(const std::string& text);

    void appendAndEdit();
    void deleteCurrentRow();
    // Swaps the current row with the one above (-1) or below (1) and follows it.
    void moveCurrentRow(int step);

    static std::span<const MapEntry<CListBoxEx>> messageMap();
    Handled route(const Message& message) override;

protected:
    // The point is in screen coordinates; answers the cursor to show (DL_MOVECURSOR and so on).
    virtual int dragFeedback(POINT point);
    // Moves the dragged row before the target; -1, no row, moves it nowhere.
    virtual void drop(int targetRow, POINT point);
    virtual void dragCancelled(POINT point);
    virtual bool canEdit(int row);
    // Answers whether the text is kept. Tells the parent, unless the edit is cancelled.
    virtual bool endOfEdit(int row, bool cancelled);

    int draggedRow() const { return m_nDraggedRow; }

private:
    // Drawing and dragging are the parent's to hear.
    class Parent : public Subclass {
    public:
        explicit Parent(CListBoxEx& list) : m_list(list) {}
        Handled route(const Message& message) override { return m_list.onParentMessage(message); }

    private:
        CListBoxEx& m_list;
    };

    Handled onParentMessage(const Message& message);
    Handled onKeyDown(const Message& message);
    Handled onAltKeyDown(const Message& message);
    Handled onDoubleClick(const Message& message);
    Handled onMoving(const Message& message);
    Handled onSetFont(const Message& message);
    Handled onPaint(const Message& message);
    Handled onCommand(const Message& message);

    bool mayKeepEdit();
    bool onReport(const InPlaceReport& report);
    bool onInPlaceKey(const InPlaceReport& report);
    void passFocus(HWND from) const;
    void browse();
    void editCurrentRow();
    void showInPlace(RECT place, const std::string& text) const;
    void hideInPlace() const;
    bool ownsFocus() const;
    bool isInPlace(HWND window) const;
    bool wantsBrowse() const;
    void adoptFont() const;

    void drawRow(const DRAWITEMSTRUCT& item) const;

    LRESULT onDrag(const DRAGLISTINFO& info);
    bool beginDrag(POINT point);
    void dragOver(POINT point);
    void finishDrag();
    void removeEndRow() const;
    void showMark(int row);
    void invertMark() const;
    RECT markRect() const;

    RECT rowRect(int row) const;
    void bringIntoView(int row) const;
    LPARAM rowData(int row) const;
    // Answers the new row, below 0 when memory is short.
    int insertRow(int row, const std::string& text, LPARAM data) const;
    void removeRow(int row) const { send(LB_DELETESTRING, row); }
    void replaceRow(int row, const std::string& text) const;
    void moveRow(int from, int to) const;
    void selectNearest(int row) const;
    void tellSelection() const;
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageA(handle(), message, wParam, lParam);
    }

    Parent m_parent{*this};
    CInPlaceEdit m_edtInPlace;
    CInPlaceButton m_btnInPlace;
    const COLORREF m_clrSelection;
    const COLORREF m_clrSelectionText;
    bool m_bEditing = true;
    bool m_bDragging = true;
    bool m_bEndRow = false;   // a drag has added its end row
    bool m_bBrowsing = false; // the owner is answering a browse: the focus may be elsewhere
    bool m_bEnding = false;
    bool m_bOwnInput = false; // the list itself handles a message
    int m_nEditedRow = -1;
    int m_nDraggedRow = -1;
    int m_nMarkRow = -1; // the insertion mark stands above it
};

} // namespace tessera
