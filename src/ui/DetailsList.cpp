#include "ui/DetailsList.h"

#include "ui/CommandKeys.h"
#include "ui/Commands.h"
#include "windowing/Drawing.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr DWORD kStyle = ListView::kReport | LVS_OWNERDATA | LVS_SINGLESEL | LVS_NOSORTHEADER |
                         LVS_SHAREIMAGELISTS | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
constexpr DWORD kExtendedStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
constexpr int kLeastWidth = 60; // of the column that takes what is left

} // namespace

std::span<const MapEntry<DetailsList>> DetailsList::messageMap()
{
    static constexpr std::array<MapEntry<DetailsList>, 8> kMap{{
        {WM_KEYDOWN, &DetailsList::onKeyDown},
        {WM_CHAR, &DetailsList::onCharacter},
        {WM_PAINT, &DetailsList::onPaint},
        {WM_PRINTCLIENT, &DetailsList::onPaint},
        {LVM_GETITEMA, &DetailsList::onItemWanted},
        {LVM_GETITEMW, &DetailsList::onItemWanted},
        {LVM_GETITEMTEXTA, &DetailsList::onTextWanted},
        {LVM_GETITEMTEXTW, &DetailsList::onTextWanted},
    }};
    return kMap;
}

bool DetailsList::createList(HWND parent, UINT id, std::span<const Column> columns)
{
    if (!m_lvw.create(parent, id, {0, 0, 0, 0}, kStyle, 0) || !attach(m_lvw.handle()))
        return false;
    m_lvw.show(false);
    m_lvw.setExtendedStyle(kExtendedStyle);
    for (const Column& column : columns) {
        const int index = m_lvw.addColumn(column.title, scaled(column.width, m_lvw.handle()), column.format);
        if (column.width == 0)
            m_stretched = index;
    }
    DetailsList::settingsChanged();
    return true;
}

void DetailsList::settingsChanged()
{
    m_lvw.setFont(m_commands.listFont());
    m_lvw.setColours(m_commands.treeBackground(), m_commands.treeText());
    fitColumns();
    m_lvw.invalidate();
}

void DetailsList::move(const RECT& place)
{
    m_lvw.move(place);
    fitColumns();
}

void DetailsList::show(bool visible)
{
    m_lvw.show(visible);
}

// A scroll bar that is about to come counts as there, or another one would come with it.
void DetailsList::fitColumns() const
{
    if (!m_lvw)
        return;
    int left = static_cast<int>(m_lvw.rect().right - m_lvw.rect().left);
    if (m_lvw.count() > static_cast<int>(m_lvw.send(LVM_GETCOUNTPERPAGE)))
        left -= GetSystemMetrics(SM_CXVSCROLL);
    for (int column = 0; column < m_lvw.columnCount(); ++column)
        left -= column == m_stretched ? 0 : m_lvw.columnWidth(column);
    left = std::max(left, scaled(kLeastWidth, m_lvw.handle()));
    if (left != m_lvw.columnWidth(m_stretched))
        m_lvw.setColumnWidth(m_stretched, left);
}

// The list would look at every row; mostly it is the one with the focus.
int DetailsList::selectedRow() const
{
    if (m_lvw.send(LVM_GETSELECTEDCOUNT) == 0)
        return -1;
    const int focus = m_lvw.focused();
    const bool selected =
        focus >= 0 && m_lvw.send(LVM_GETITEMSTATE, static_cast<WPARAM>(focus), LVIS_SELECTED) != 0;
    return selected ? focus : m_lvw.nextSelected();
}

void DetailsList::tellSelection() const
{
    NMLISTVIEW change{};
    change.hdr = {m_lvw.handle(), static_cast<UINT_PTR>(GetDlgCtrlID(m_lvw.handle())), LVN_ITEMCHANGED};
    change.iItem = selectedRow();
    change.uChanged = LVIF_STATE;
    SendMessageA(GetParent(m_lvw.handle()), WM_NOTIFY, change.hdr.idFrom, reinterpret_cast<LPARAM>(&change));
}

void DetailsList::setRows(int rows)
{
    const int before = m_lvw.count();
    if (rows == before)
        return;
    m_lvw.send(LVM_SETITEMCOUNT, static_cast<WPARAM>(rows), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    fitColumns();
}

void DetailsList::resetRows(int rows)
{
    const RedrawOff quiet(m_lvw.handle());
    m_lvw.send(LVM_SETITEMCOUNT, 0, 0);
    m_lvw.send(LVM_SETITEMCOUNT, static_cast<WPARAM>(rows), 0);
    fitColumns();
}

void DetailsList::redrawRow(int row) const
{
    RECT bounds{LVIR_BOUNDS, 0, 0, 0};
    if (row < 0 || row >= m_lvw.count())
        return; // some systems do not bear the question
    if (m_lvw.send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&bounds)))
        InvalidateRect(m_lvw.handle(), &bounds, FALSE);
}

std::pair<int, int> DetailsList::rowsInView() const
{
    const int first = std::max(static_cast<int>(m_lvw.send(LVM_GETTOPINDEX)), 0);
    const int page = static_cast<int>(m_lvw.send(LVM_GETCOUNTPERPAGE)) + 1; // the last one may be cut
    return {first, std::min(first + page, m_lvw.count())};
}

void DetailsList::answerInfo(LVITEMA& item)
{
    const bool known = item.iItem >= 0 && item.iItem < m_lvw.count();
    if ((item.mask & LVIF_TEXT) != 0)
        answerText(item, known ? cellText(item.iItem, std::max(item.iSubItem, 0)) : std::string());
    if ((item.mask & LVIF_IMAGE) != 0)
        item.iImage = known && item.iSubItem == 0 ? rowImage(item.iItem) : -1;
}

Handled DetailsList::onCustomDraw(NMLVCUSTOMDRAW& draw) const
{
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT)
        return CDRF_DODEFAULT;
    const bool marked = isMarked(static_cast<int>(draw.nmcd.dwItemSpec));
    SelectObject(draw.nmcd.hdc, marked ? m_commands.boldListFont() : m_commands.listFont());
    return CDRF_NEWFONT;
}

Handled DetailsList::answer(NMHDR& header)
{
    if (header.hwndFrom != m_lvw.handle() || !m_lvw)
        return kDefault;
    switch (header.code) {
    case LVN_GETDISPINFOA:
        answerInfo(notificationAs<NMLVDISPINFOA>(header).item);
        return 0;
    case NM_CUSTOMDRAW:
        return onCustomDraw(notificationAs<NMLVCUSTOMDRAW>(header));
    case LVN_ODFINDITEMA:
    case LVN_ODFINDITEMW:
        return -1; // not by typing: only the rows in view are known
    case NM_DBLCLK:
        if (const int row = notificationAs<NMITEMACTIVATE>(header).iItem; row >= 0)
            activate(row);
        return 0;
    default:
        return kDefault;
    }
}

Handled DetailsList::onPaint(const Message&)
{
    const auto [first, last] = rowsInView();
    if (first < last)
        readRows(first, last);
    return kDefault;
}

Handled DetailsList::onItemWanted(const Message& message)
{
    const auto* const item = reinterpret_cast<const LVITEMA*>(message.lParam);
    if (item && (item->mask & LVIF_TEXT) != 0 && item->iItem >= 0 && item->iItem < m_lvw.count())
        readRows(item->iItem, item->iItem + 1);
    return kDefault;
}

Handled DetailsList::onTextWanted(const Message& message)
{
    const auto row = static_cast<int>(message.wParam);
    if (row >= 0 && row < m_lvw.count())
        readRows(row, row + 1);
    return kDefault;
}

Handled DetailsList::onKeyDown(const Message& message)
{
    if (message.wParam != VK_RETURN)
        return kDefault;
    if (const int row = selectedRow(); row >= 0)
        activate(row);
    return 0;
}

Handled DetailsList::onCharacter(const Message& message)
{
    return isEnter(message.wParam) ? Handled(0) : kDefault;
}

} // namespace tessera
