#include "windowing/ListView.h"

#include "base/Text.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {
namespace {

char* systemText(const std::string& text)
{
    return const_cast<char*>(text.c_str()); // the control only reads it
}

} // namespace

bool ListView::create(HWND parent, UINT id, const RECT& place, DWORD style, DWORD extended)
{
    return createControl(WC_LISTVIEWA, parent, id, place, style | WS_TABSTOP, extended);
}

int ListView::addColumn(const std::string& title, int width, int format) const
{
    const int index = columnCount();
    LVCOLUMNA column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    column.fmt = format;
    column.cx = width;
    column.pszText = systemText(title);
    column.iSubItem = index;
    return static_cast<int>(
        send(LVM_INSERTCOLUMNA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column)));
}

int ListView::columnCount() const
{
    return header() ? static_cast<int>(SendMessageA(header(), HDM_GETITEMCOUNT, 0, 0)) : 0;
}

std::vector<int> ListView::columnOrder() const
{
    std::vector<int> order(static_cast<std::size_t>(columnCount()));
    send(LVM_GETCOLUMNORDERARRAY, order.size(), reinterpret_cast<LPARAM>(order.data()));
    return order;
}

void ListView::setColumnWidth(int column, int width) const
{
    send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(width, 0));
}

int ListView::insert(int index, const std::string& text, int image, LPARAM data) const
{
    LVITEMA item{};
    item.mask = LVIF_TEXT | LVIF_PARAM | (image >= 0 ? LVIF_IMAGE : 0);
    item.iItem = index;
    item.pszText = systemText(text);
    item.iImage = image;
    item.lParam = data;
    return static_cast<int>(send(LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
}

int ListView::addRow(const std::vector<std::string>& texts, int image) const
{
    const int row = insert(count(), texts.empty() ? std::string() : texts.front(), image);
    for (std::size_t column = 1; column < texts.size(); ++column) {
        setText(row, static_cast<int>(column), texts[column]);
    }
    return row;
}

void ListView::setText(int row, int column, const std::string& text) const
{
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = systemText(text);
    send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

std::string ListView::text(int row, int column) const
{
    constexpr std::size_t kLongest = 1024 * 1024;
    std::string text(512, '\0');
    for (;;) {
        LVITEMA item{};
        item.iSubItem = column;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        const auto length = static_cast<std::size_t>(
            send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item)));
        // A text that fills the buffer may have been cut; the parent of a virtual list may also
        // have put a buffer of its own in place of ours.
        if (length + 1 < text.size() || text.size() >= kLongest) {
            return std::string(item.pszText, item.pszText ? length : 0);
        }
        text.assign(text.size() * 2, '\0');
    }
}

LPARAM ListView::data(int row) const
{
    LVITEMA item{};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    send(LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    return item.lParam;
}

void ListView::setVirtualCount(int rows) const
{
    const RedrawOff quiet(m_handle);
    send(LVM_SETITEMCOUNT, static_cast<WPARAM>(rows), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    if ((GetWindowLongA(m_handle, GWL_STYLE) & LVS_TYPEMASK) != LVS_REPORT)
        send(LVM_ARRANGE, LVA_DEFAULT); // laying out while redrawing is on repaints item by item
}

int ListView::nextSelected(int after) const
{
    return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(after), LVNI_SELECTED));
}

std::vector<int> ListView::selection() const
{
    std::vector<int> rows;
    for (int row = nextSelected(); row >= 0; row = nextSelected(row)) {
        rows.push_back(row);
    }
    return rows;
}

void ListView::select(int row, bool selected) const
{
    LVITEMA item{};
    item.stateMask = LVIS_SELECTED;
    item.state = selected ? LVIS_SELECTED : 0;
    if (row >= 0) {
        send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        return;
    }
    const RedrawOff quiet(m_handle); // else seconds for a long virtual list
    send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
}

void ListView::setFocused(int row) const
{
    LVITEMA item{};
    item.stateMask = LVIS_FOCUSED;
    item.state = LVIS_FOCUSED;
    send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void ListView::unfocus() const
{
    LVITEMA item{};
    item.stateMask = LVIS_FOCUSED;
    if (const int row = focused(); row >= 0)
        send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void ListView::setColours(COLORREF background, COLORREF text) const
{
    send(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(background));
    send(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(background));
    send(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(text));
}

void answerText(const LVITEMA& item, const std::string& text)
{
    if (!item.pszText || item.cchTextMax <= 0) {
        return;
    }
    const auto room = static_cast<std::size_t>(item.cchTextMax) - 1;
    std::size_t length = std::min(text.size(), room);
    if (length < text.size()) {
        std::size_t end = 0;
        while (end + characterLength(text, end) <= length) {
            end += characterLength(text, end);
        }
        length = end;
    }
    std::copy_n(text.data(), length, item.pszText);
    item.pszText[length] = '\0';
}

} // namespace tessera
