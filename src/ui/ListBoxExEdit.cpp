// A row that is edited in its place, with the browse button beside it.

#include "ui/ListBoxEx.h"

#include "base/FlagScope.h"
#include "windowing/CarriedPointer.h"
#include "windowing/Drawing.h"

#include <utility>

namespace tessera {

namespace {

// Pixels at 96 dpi.
constexpr int kEditInset = 5;
constexpr int kEditInsetBesideButton = 30;
constexpr int kEditGrowth = 2;

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
    bringIntoView(row);
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
    endEdit(!mayKeepEdit());
}

// The parent may show a box, and then the focus is lost once more.
bool CListBoxEx::mayKeepEdit()
{
    const FlagScope ending(m_bEnding);
    return endOfEdit(m_nEditedRow, false);
}

void CListBoxEx::endEdit(bool cancel)
{
    const int row = std::exchange(m_nEditedRow, -1);
    if (row < 0) {
        return;
    }
    const std::string text = m_edtInPlace.text();
    hideInPlace();
    if (text.empty() || (cancel && rowText(row).empty())) { // also a new row that is not wanted after all
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
        const std::string text = m_edtInPlace.text();
        const CarriedPointer carried(text.c_str());
        SendMessageA(m_parent.handle(), endEditMessage(), static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(text.c_str()));
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

} // namespace tessera
