#include "ui/SortMenu.h"

#include "base/Errors.h"
#include "system/Handle.h"

#include <array>
#include <commctrl.h>

namespace tessera {

namespace {

std::array<char, 257> columnTitle(HWND list, int column)
{
    std::array<char, 257> title{};
    LVCOLUMNA record{};
    record.mask = LVCF_TEXT;
    record.pszText = title.data();
    record.cchTextMax = static_cast<int>(title.size());
    SendMessageA(list, LVM_GETCOLUMNA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&record));
    return title;
}

int columnCount(HWND list)
{
    const auto header = reinterpret_cast<HWND>(SendMessageA(list, LVM_GETHEADER, 0, 0));
    return header ? static_cast<int>(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0)) : 0;
}

} // namespace

void addSortMenu(HMENU menu, HWND list, UINT firstCommand, int sortColumn)
{
    MenuHandle popup(CreatePopupMenu());
    if (!popup) {
        assertionFailed("(*ppMenu)->CreatePopupMenu()", "TesseraMain", __LINE__);
        return;
    }
    const int count = columnCount(list);
    for (int column = 0; column < count; ++column) {
        const UINT flags = MF_STRING | (column == sortColumn ? MF_CHECKED : MF_UNCHECKED);
        AppendMenuA(popup.get(), flags, firstCommand + static_cast<UINT>(column),
                    columnTitle(list, column).data());
    }
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    if (AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(popup.get()), "Sort By")) {
        popup.release();
    }
}

} // namespace tessera
