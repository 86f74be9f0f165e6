#pragma once

#include "base/Files.h"

#include <cstddef>
#include <string>
#include <windows.h>

namespace tessera {

class Commands;

// A report list's content: a line for each item, its columns separated by tabs, trailing white
// space left out, a line feed at the end. `records` becomes the number of items.
std::string listText(HWND list, std::size_t& records);

struct ExportResult {
    std::size_t records = 0;
    DWORD error = ERROR_SUCCESS; // the system's, when the file could not be created or written
};
// Creates or truncates the file.
ExportResult exportList(HWND list, const std::string& path, FileSystem& files);

// Asks where, writes, and says how many records it took; a file that cannot be written is
// reported with the system's own words.
void exportListToText(Commands& commands, const char* baseName, HWND list);

} // namespace tessera
