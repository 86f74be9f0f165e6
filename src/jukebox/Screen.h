#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>
#include <windows.h>

#include <commctrl.h>

// Looking at this process's windows from another thread, as a script or a screen reader does.
// Nothing here waits for a window that does not answer longer than a few seconds.
namespace tessera::jukebox {

// None when the window did not answer in time.
std::optional<LRESULT> ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0,
                           UINT milliseconds = 3000);
bool answers(HWND window, UINT milliseconds = 3000);

std::wstring textOf(HWND window);
bool setText(HWND window, const std::wstring& text);
std::string classOf(HWND window);

std::vector<HWND> topLevelWindows();          // visible ones of this process
std::vector<HWND> childrenOf(HWND window);    // direct ones, front to back
std::vector<HWND> descendantsOf(HWND window); // all of them
HWND childWithId(HWND window, int id);        // direct; null when there is none
HWND descendantWithId(HWND window, int id, const std::string& windowClass);
// A visible dialog of this process with that caption; null when there is none.
HWND dialogCaptioned(const std::wstring& caption);
// Texts of all labels of a dialog, longest first.
std::vector<std::wstring> labelsOf(HWND dialog);

// One row of a list view: the texts of its first columns, in the code page. None when the list
// did not answer.
std::optional<std::vector<std::string>> rowOf(HWND list, int row, int columns);
int rowCount(HWND list); // -1 when the list did not answer
int columnCount(HWND list);
std::vector<std::string> columnTitles(HWND list); // in the code page; empty when it did not answer
// Selects these rows and no other, the first of them has the focus and comes into view. Rows that
// are none are left out.
void selectRows(HWND list, std::span<const int> rows);

// Nodes of a tree below a node, at most so many; its roots when the node is null.
std::vector<HTREEITEM> nodesBelow(HWND tree, HTREEITEM node, std::size_t most);
std::string nodeText(HWND tree, HTREEITEM node); // in the code page

// An entry of a combo box, as if it was clicked; one that is not visible is left alone.
void chooseEntry(HWND combo, int entry);

// What a user would see: a line per visible top-level window with its caption and labels.
std::vector<std::string> describeScreen();

} // namespace tessera::jukebox
