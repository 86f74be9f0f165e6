#pragma once

#include <windows.h>

namespace tessera {

// Adds a separator and the sub-menu "Sort By" to a menu: an item for each column of the list, with
// the ids from the first one on; the column that the list is sorted by (-1: none) is checked.
void addSortMenu(HMENU menu, HWND list, UINT firstCommand, int sortColumn);

} // namespace tessera
