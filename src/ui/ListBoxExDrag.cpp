// A row that is dragged to another place, and the mark that shows where it would go.

#include "ui/ListBoxEx.h"
#include "windowing/Drawing.h"

namespace tessera {

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

} // namespace tessera
