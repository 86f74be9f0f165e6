#pragma once

#include "base/Files.h"

#include <cstddef>
#include <functional>
#include <string>
#include <windows.h>

namespace tessera {

class Commands;
class Pane;

// The text of a list's item in a column.
using CellText = std::function<std::string(int item, int column)>;
// What the list itself says.
CellText shownTexts(HWND list);

// A report list's content: a line for each item, its columns in the header's order and separated by
// tabs, control characters in them as blanks, trailing white space left out, a line feed at the end.
// `records` becomes the number of items.
std::string listText(HWND list, const CellText& text, std::size_t& records);

struct ExportResult {
    std::size_t records = 0;
    DWORD error = ERROR_SUCCESS; // the system's, when the file could not be created or written
};
// Creates or truncates the file.
ExportResult exportList(HWND list, const CellText& text, const std::string& path, FileSystem& files);

// Asks where, writes the list of the pane, if it has one, and says how many records it took; a file
// that cannot be written is reported with the system's own words.
void exportListToText(Commands& commands, const Pane& pane);

} // namespace tessera
