#pragma once

#include <optional>
#include <string>
#include <windows.h>

namespace tessera {

struct FileDialogOptions {
    std::string title{};
    // Pairs of description and patterns: "Text Files (*.txt)|*.txt|All Files (*.*)|*.*||".
    std::string filter{};
    std::string initialName{};      // a name or a full path
    std::string defaultExtension{}; // with or without the dot
    DWORD flags = 0;                // OFN_*, beside those that are always there
};

inline constexpr DWORD kSaveFlags =
    OFN_OVERWRITEPROMPT | OFN_CREATEPROMPT | OFN_NOREADONLYRETURN | OFN_HIDEREADONLY;
inline constexpr DWORD kOpenFlags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;

// The system's dialogs, in explorer style, with long names and sizeable; the current directory
// stays as it was. They answer the full path, none when the user cancelled.
std::optional<std::string> openFile(HWND owner, const FileDialogOptions& options);
std::optional<std::string> saveFile(HWND owner, const FileDialogOptions& options);

// The folder browser with an edit box and a button for new folders; starts at the initial path
// when it is a folder.
std::optional<std::string> browseFolder(HWND owner, const std::string& initialPath,
                                        const std::string& prompt = "\nPlease Select Folder:");

// Opens a window of the system's browser of files. False, and nothing is started, for what is no folder.
bool showFolder(HWND owner, const std::string& path);

// '|' between the pieces becomes the terminator that the system wants; ends with two of them.
std::string systemFilter(const std::string& filter);

} // namespace tessera
