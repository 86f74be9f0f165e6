// The list and its rows: what they show and which keys they answer.

#include "ui/ListBoxEx.h"

#include "base/FlagScope.h"
#include "system/Module.h"
#include "windowing/CarriedPointer.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

// Pixels at 96 dpi.
constexpr int kTextInset = 8;
constexpr int kRowPadding = 4;

// The messages in which the system's drag list asks the parent; others, such as those of the scroll bar, may
// run loops in which anything arrives.
bool mayDrag(UINT message)
{
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_KEYDOWN ||
           message == WM_TIMER || message == WM_CANCELMODE || message == WM_CAPTURECHANGED;
}

} // namespace

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

RECT CListBoxEx::rowRect(int row) const
{
    RECT rect{};
    send(LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
    return rect;
}

// As a whole: the last row in view may be cut off.
void CListBoxEx::bringIntoView(int row) const
{
    RECT client{};
    GetClientRect(handle(), &client);
    const RECT rect = rowRect(row);
    const LONG page = std::max<LONG>(client.bottom / std::max<LONG>(rect.bottom - rect.top, 1), 1);
    if (rect.top < 0) {
        send(LB_SETTOPINDEX, row);
    } else if (rect.bottom > client.bottom) {
        send(LB_SETTOPINDEX, std::max<LONG>(row - page + 1, 0));
    }
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
        return CarriedPointer::isKnown(message.lParam) &&
                       onReport(*reinterpret_cast<const InPlaceReport*>(message.lParam))
                   ? TRUE
                   : FALSE;
    }
    const Handled handled = Mapped::route(message);
    if (handled || !mayDrag(message.id)) {
        return handled;
    }
    const FlagScope ownInput(m_bOwnInput);
    return defaultProcessing(message);
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
        if (!m_bOwnInput ||
            InSendMessage()) { // the list sends it while it handles the mouse; others can send it at any time
            return kDefault;
        }
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

} // namespace tessera
