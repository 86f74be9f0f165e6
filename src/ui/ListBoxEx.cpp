#include "ui/ListBoxEx.h"

#include "system/Module.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <utility>

namespace tessera {

namespace {

// Pixels at 96 dpi.
constexpr int kEditInset = 5;
constexpr int kEditInsetBesideButton = 30;
constexpr int kEditGrowth = 2;
constexpr int kTextInset = 8;
constexpr int kRowPadding = 4;

} // namespace

UINT browseMessage()
{
    static const UINT message = RegisterWindowMessageA("BL_MESSAGE_BROWSE");
    return message;
}

UINT endEditMessage()
{
    static const UINT message = RegisterWindowMessageA("BL_MESSAGE_ENDEDIT");
    return message;
}

CListBoxEx::CListBoxEx()
    : m_clrSelection(GetSysColor(COLOR_HIGHLIGHT)), m_clrSelectionText(GetSysColor(COLOR_HIGHLIGHTTEXT))
{
}

bool CListBoxEx::create(HWND parent, int id, const RECT& place, DWORD style)
{
    const HWND list =
        CreateWindowExA(WS_EX_CLIENTEDGE, "LISTBOX", "", style | kStyles | WS_CHILD, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), moduleInstance(), nullptr);
    if (!list) {
        return false;
    }
    SendMessageA(list, WM_SETFONT, static_cast<WPARAM>(SendMessageA(parent, WM_GETFONT, 0, 0)), FALSE);
    subclass(list);
    return true;
}

void CListBoxEx::subclass(HWND list)
{
    MakeDragList(list); // before us, so that we hear keys and clicks first
    attach(list);
    m_parent.attach(GetParent(list));
    m_edtInPlace.create(list);
    m_btnInPlace.create(list);
    adoptFont();
}

// The edit wears the list's font; a row is a little higher than its text.
void CListBoxEx::adoptFont() const
{
    const auto font = static_cast<WPARAM>(send(WM_GETFONT));
    SendMessageA(m_edtInPlace.handle(), WM_SETFONT, font, FALSE);
    const WindowDc screen(handle());
    const SelectScope selected(screen.dc(), font ? reinterpret_cast<HFONT>(font) : defaultFont());
    send(LB_SETITEMHEIGHT, 0, textSize(screen.dc(), "X").cy + scaled(kRowPadding, handle()));
}

int CListBoxEx::count() const
{
    return std::max(0, static_cast<int>(send(LB_GETCOUNT)));
}

int CListBoxEx::currentRow() const
{
    return static_cast<int>(send(LB_GETCURSEL));
}

std::string CListBoxEx::rowText(int row) const
{
    const LRESULT length = send(LB_GETTEXTLEN, row);
    if (length <= 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    text.resize(std::max<LRESULT>(0, send(LB_GETTEXT, row, reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

std::vector<std::string> CListBoxEx::rows() const
{
    std::vector<std::string> texts;
    for (int row = 0; row < count(); ++row) {
        if (rowData(row) != kEndRowMark) {
            texts.push_back(rowText(row));
        }
    }
    return texts;
}

void CListBoxEx::setRows(const std::vector<std::string>& texts)
{
    endEdit(true);
    send(LB_RESETCONTENT);
    for (const std::string& text : texts) {
        insertRow(count(), text, 0);
    }
}

void CListBoxEx::selectRow(int row) const
{
    send(LB_SETCURSEL, row);
}

void CListBoxEx::selectNearest(int row) const
{
    selectRow(std::min(row, count() - 1));
    tellSelection();
}

void CListBoxEx::tellSelection() const
{
    SendMessageA(m_parent.handle(), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(handle()), LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(handle()));
}

// Rows

RECT CListBoxEx::rowRect(int row) const
{
    RECT rect{};
    send(LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
    return rect;
}

LPARAM CListBoxEx::rowData(int row) const
{
    return send(LB_GETITEMDATA, row);
}

int CListBoxEx::insertRow(int row, const std::string& text, LPARAM data) const
{
    const LRESULT place = send(LB_INSERTSTRING, row, reinterpret_cast<LPARAM>(text.c_str()));
    send(LB_SETITEMDATA, place, data);
    return static_cast<int>(place);
}

void CListBoxEx::replaceRow(int row, const std::string& text) const
{
    const RedrawOff still(handle());
    const LPARAM data = rowData(row);
    removeRow(row);
    insertRow(row, text, data);
}

// The data travels with the text.
void CListBoxEx::moveRow(int from, int to) const
{
    const RedrawOff still(handle());
    const std::string text = rowText(from);
    const LPARAM data = rowData(from);
    removeRow(from);
    insertRow(to, text, data);
    selectRow(to);
}

void CListBoxEx::deleteCurrentRow()
{
    if (m_nEditedRow >= 0) {
        m_edtInPlace.setText(""); // the row under the edit goes with its text
        endEdit(true);
        return;
    }
    const int row = currentRow();
    if (row < 0 || m_bEndRow) {
        return;
    }
    removeRow(row);
    selectNearest(row);
}

void CListBoxEx::moveCurrentRow(int step)
{
    const int rowsBefore = count();
    acceptEdit();
    const int row = currentRow();
    const int other = row + step;
    if (row < 0 || m_bEndRow || other < 0 || other >= count() || count() < rowsBefore) {
        return;
    }
    moveRow(row, other); // past its neighbour: the two have changed places
    tellSelection();
}

// Editing

void CListBoxEx::appendAndEdit()
{
    acceptEdit();
    beginEdit(count());
}

void CListBoxEx::editCurrentRow()
{
    const int row = currentRow();
    if (m_bEditing && row >= 0 && canEdit(row)) {
        beginEdit(row);
    }
}

void CListBoxEx::beginEdit(int row)
{
    if (row == -1) {
        row = currentRow();
    }
    if (!m_bEditing || m_nEditedRow >= 0 || m_bEndRow || row < 0) {
        return;
    }
    if (row >= count()) {
        row = insertRow(count(), "", 0);
    }
    if (row < 0) {
        return;
    }
    if (row != currentRow()) {
        selectRow(row);
        tellSelection();
    }
    m_nEditedRow = row;
    showInPlace(rowRect(row), rowText(row));
}

void CListBoxEx::showInPlace(RECT place, const std::string& text) const
{
    const int inset = scaled(kEditInset, handle());
    const int right = place.right - inset;
    place.left += inset;
    place.right = wantsBrowse() ? place.right - scaled(kEditInsetBesideButton, handle()) : right;
    place.top -= scaled(kEditGrowth, handle());
    place.bottom += scaled(kEditGrowth, handle());
    if (wantsBrowse()) {
        m_btnInPlace.show({place.right, place.top, right, place.bottom});
    }
    m_edtInPlace.show(place, text);
}

void CListBoxEx::acceptEdit()
{
    if (m_nEditedRow < 0 || m_bEnding) {
        return;
    }
    m_bEnding = true; // the parent may show a box, and then the focus is lost once more
    const bool keep = endOfEdit(m_nEditedRow, false);
    m_bEnding = false;
    endEdit(!keep);
}

void CListBoxEx::endEdit(bool cancel)
{
    const int row = std::exchange(m_nEditedRow, -1);
    if (row < 0) {
        return;
    }
    const std::string text = m_edtInPlace.text();
    hideInPlace();
    if (text.empty()) {
        removeRow(row);
        selectNearest(row);
    } else if (!cancel) {
        replaceRow(row, text);
        selectRow(row);
    }
    InvalidateRect(handle(), nullptr, TRUE);
}

// Whoever takes the focus keeps it; else it goes back to the list.
void CListBoxEx::hideInPlace() const
{
    if (ownsFocus()) {
        SetFocus(handle());
    }
    m_edtInPlace.hide();
    m_btnInPlace.hide();
}

bool CListBoxEx::ownsFocus() const
{
    return isInPlace(GetFocus());
}

bool CListBoxEx::isInPlace(HWND window) const
{
    return window && (window == m_edtInPlace.handle() || window == m_btnInPlace.handle());
}

void CListBoxEx::setEditText(const std::string& text)
{
    if (m_nEditedRow >= 0) {
        m_edtInPlace.setText(text);
    }
}

bool CListBoxEx::canEdit(int)
{
    return true;
}

bool CListBoxEx::endOfEdit(int row, bool cancelled)
{
    if (!cancelled) {
        SendMessageA(m_parent.handle(), endEditMessage(), static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(m_edtInPlace.text().c_str()));
    }
    return true;
}

bool CListBoxEx::onReport(const InPlaceReport& report)
{
    if (m_nEditedRow < 0) {
        return false;
    }
    switch (report.event) {
    case InPlaceReport::Event::Key:
        return onInPlaceKey(report);
    case InPlaceReport::Event::Click:
        browse();
        return true;
    case InPlaceReport::Event::FocusLost:
        if (!m_bBrowsing && !isInPlace(report.newFocus)) {
            acceptEdit();
        }
        return true;
    }
    return false;
}

bool CListBoxEx::onInPlaceKey(const InPlaceReport& report)
{
    switch (report.key) {
    case VK_RETURN:
        acceptEdit();
        return true;
    case VK_ESCAPE:
        endOfEdit(m_nEditedRow, true);
        endEdit(true);
        return true;
    case VK_TAB:
        wantsBrowse() ? passFocus(report.sender) : acceptEdit();
        return true;
    default:
        return false;
    }
}

// The Tab key goes round between edit and button, so that the button needs no mouse.
void CListBoxEx::passFocus(HWND from) const
{
    SetFocus(from == m_edtInPlace.handle() ? m_btnInPlace.handle() : m_edtInPlace.handle());
}

// The owner's dialog takes the focus, but the edit stays open for the answer.
void CListBoxEx::browse()
{
    if (m_bBrowsing) {
        return;
    }
    m_bBrowsing = true;
    SendMessageA(m_parent.handle(), browseMessage(), static_cast<WPARAM>(m_nEditedRow), 0);
    m_bBrowsing = false;
    if (m_nEditedRow >= 0 && !ownsFocus()) {
        SetFocus(m_edtInPlace.handle());
    }
}

bool CListBoxEx::wantsBrowse() const
{
    return (GetWindowLongA(handle(), GWL_STYLE) & kBrowseButton) != 0;
}

// Messages

std::span<const MapEntry<CListBoxEx>> CListBoxEx::messageMap()
{
    static constexpr MapEntry<CListBoxEx> map[] = {
        {WM_KEYDOWN, &CListBoxEx::onKeyDown},           {WM_SYSKEYDOWN, &CListBoxEx::onAltKeyDown},
        {WM_LBUTTONDBLCLK, &CListBoxEx::onDoubleClick}, {WM_VSCROLL, &CListBoxEx::onMoving},
        {WM_MOUSEWHEEL, &CListBoxEx::onMoving},         {WM_SIZE, &CListBoxEx::onMoving},
        {WM_SETFONT, &CListBoxEx::onSetFont},           {WM_PAINT, &CListBoxEx::onPaint},
        {WM_COMMAND, &CListBoxEx::onCommand},
    };
    return map;
}

Handled CListBoxEx::route(const Message& message)
{
    if (message.id == inPlaceMessage()) {
        return onReport(*reinterpret_cast<const InPlaceReport*>(message.lParam)) ? TRUE : FALSE;
    }
    return Mapped::route(message);
}

Handled CListBoxEx::onKeyDown(const Message& message)
{
    switch (message.wParam) {
    case VK_F2:
        editCurrentRow();
        return 0;
    case VK_INSERT:
        appendAndEdit();
        return 0;
    case VK_DELETE:
        deleteCurrentRow();
        return 0;
    default:
        return kDefault;
    }
}

Handled CListBoxEx::onAltKeyDown(const Message& message)
{
    switch (message.wParam) {
    case VK_LEFT:
    case VK_UP:
        moveCurrentRow(-1);
        return 0;
    case VK_RIGHT:
    case VK_DOWN:
        moveCurrentRow(1);
        return 0;
    default:
        return kDefault;
    }
}

Handled CListBoxEx::onDoubleClick(const Message&)
{
    editCurrentRow();
    return 0;
}

// The edit would stay behind while its row moves.
Handled CListBoxEx::onMoving(const Message&)
{
    acceptEdit();
    return kDefault;
}

Handled CListBoxEx::onSetFont(const Message& message)
{
    const LRESULT result = defaultProcessing(message);
    adoptFont();
    return result;
}

Handled CListBoxEx::onCommand(const Message& message)
{
    if (reinterpret_cast<HWND>(message.lParam) == m_btnInPlace.handle() &&
        HIWORD(message.wParam) == BN_CLICKED) {
        m_btnInPlace.clicked();
    }
    return 0;
}

Handled CListBoxEx::onParentMessage(const Message& message)
{
    static const UINT dragMessage = RegisterWindowMessageA("commctrl_DragListMsg");
    if (message.id == dragMessage) {
        const auto& info = *reinterpret_cast<const DRAGLISTINFO*>(message.lParam);
        return info.hWnd == handle() ? Handled(onDrag(info)) : kDefault;
    }
    if (message.id == WM_DRAWITEM) {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(message.lParam);
        if (item.hwndItem == handle()) {
            drawRow(item);
            return TRUE;
        }
    }
    return kDefault;
}

// Drawing

void CListBoxEx::drawRow(const DRAWITEMSTRUCT& item) const
{
    if (item.itemID == static_cast<UINT>(-1)) {
        return; // the focus in an empty list
    }
    const DcScope dc(item.hDC);
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    fillRect(item.hDC, item.rcItem, selected ? m_clrSelection : GetSysColor(COLOR_WINDOW));
    SetTextColor(item.hDC, selected ? m_clrSelectionText : GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(item.hDC, TRANSPARENT);
    RECT text = item.rcItem;
    text.left += scaled(kTextInset, handle());
    const auto row = static_cast<int>(item.itemID);
    drawLine(item.hDC, rowData(row) == kEndRowMark ? "--- Last Item" : rowText(row), text);
    if (selected) {
        DrawFocusRect(item.hDC, &item.rcItem);
    }
}

// The mark is drawn by inverting, so a repaint under it would leave half of it.
Handled CListBoxEx::onPaint(const Message& message)
{
    if (m_nMarkRow < 0) {
        return kDefault;
    }
    const RECT mark = markRect();
    InvalidateRect(handle(), &mark, TRUE);
    const LRESULT result = defaultProcessing(message);
    invertMark();
    return result;
}

RECT CListBoxEx::markRect() const
{
    const RECT row = rowRect(m_nMarkRow);
    const int inset = scaled(5, handle());
    const int reach = scaled(4, handle());
    return {row.left + inset, row.top - reach, row.right - inset, row.top + reach};
}

void CListBoxEx::invertMark() const
{
    static constexpr WORD kHalftone[] = {0x5555, 0xAAAA, 0x5555, 0xAAAA, 0x5555, 0xAAAA, 0x5555, 0xAAAA};
    const BitmapHandle pattern(CreateBitmap(8, 8, 1, 1, kHalftone));
    const BrushHandle brush(CreatePatternBrush(pattern.get()));
    const WindowDc list(handle());
    const DcScope dc(list.dc());
    SelectObject(list.dc(), brush.get());
    SetTextColor(list.dc(), RGB(0, 0, 0));
    SetBkColor(list.dc(), RGB(255, 255, 255));

    const RECT mark = markRect();
    const int tick = scaled(3, handle());
    const int half = scaled(2, handle());
    const int middle = (mark.top + mark.bottom) / 2;
    const int width = mark.right - mark.left;
    PatBlt(list.dc(), mark.left, mark.top, tick, mark.bottom - mark.top, PATINVERT);
    PatBlt(list.dc(), mark.left + tick, middle - half, width - 2 * tick, 2 * half, PATINVERT);
    PatBlt(list.dc(), mark.right - tick, mark.top, tick, mark.bottom - mark.top, PATINVERT);
}

// Takes the mark from where it is and draws it above the row; -1 only takes it away.
void CListBoxEx::showMark(int row)
{
    if (row == m_nMarkRow) {
        return;
    }
    UpdateWindow(handle()); // nothing half painted under an inverted mark
    if (m_nMarkRow >= 0) {
        invertMark();
    }
    m_nMarkRow = row;
    if (m_nMarkRow >= 0) {
        invertMark();
    }
}

// Dragging

LRESULT CListBoxEx::onDrag(const DRAGLISTINFO& info)
{
    switch (info.uNotification) {
    case DL_BEGINDRAG:
        return beginDrag(info.ptCursor);
    case DL_DRAGGING:
        if (!m_bEndRow) {
            return DL_STOPCURSOR;
        }
        dragOver(info.ptCursor);
        return dragFeedback(info.ptCursor);
    case DL_DROPPED:
        if (m_bEndRow) {
            showMark(-1);
            drop(LBItemFromPt(handle(), info.ptCursor, FALSE), info.ptCursor);
            finishDrag();
        }
        return DL_CURSORSET;
    case DL_CANCELDRAG:
        if (m_bEndRow) {
            showMark(-1);
            dragCancelled(info.ptCursor);
            finishDrag();
        }
        return 0;
    default:
        return 0;
    }
}

bool CListBoxEx::beginDrag(POINT point)
{
    const int row = LBItemFromPt(handle(), point, FALSE); // the press may not have selected it yet
    if (!m_bDragging || m_nEditedRow >= 0 || m_bEndRow || row < 0) {
        return false;
    }
    m_bEndRow = insertRow(count(), "", kEndRowMark) >= 0;
    m_nDraggedRow = row;
    return m_bEndRow;
}

void CListBoxEx::dragOver(POINT point)
{
    const LRESULT top = send(LB_GETTOPINDEX);
    const int row = LBItemFromPt(handle(), point, TRUE);
    if (send(LB_GETTOPINDEX) != top) {
        m_nMarkRow = -1; // the list has scrolled and the mark with it: paint anew
        RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    }
    showMark(row);
}

void CListBoxEx::finishDrag()
{
    removeEndRow();
    m_bEndRow = false;
    m_nDraggedRow = -1;
    tellSelection();
}

void CListBoxEx::removeEndRow() const
{
    for (int row = count() - 1; row >= 0; --row) {
        if (rowData(row) == kEndRowMark) {
            removeRow(row);
            return;
        }
    }
}

int CListBoxEx::dragFeedback(POINT point)
{
    return LBItemFromPt(handle(), point, FALSE) >= 0 ? DL_MOVECURSOR : DL_STOPCURSOR;
}

void CListBoxEx::drop(int targetRow, POINT)
{
    const int from = m_nDraggedRow;
    if (targetRow < 0 || targetRow == from || targetRow == from + 1) {
        return; // it is there already
    }
    moveRow(from, targetRow > from ? targetRow - 1 : targetRow);
}

void CListBoxEx::dragCancelled(POINT) {}

} // namespace tessera
