#include "windowing/FileDialogs.h"

#include "base/Text.h"
#include "system/Border.h"
#include "system/ComPtr.h"

#include <algorithm>
#include <cderr.h>
#include <commdlg.h>
#include <memory>
#include <shellapi.h>
#include <shlobj.h>

namespace tessera {
namespace {

using SystemDialog = BOOL(WINAPI*)(OPENFILENAMEA*);

// The dialog to open a file leaves the process in the chosen folder, whatever its flag says; the process is
// the host's.
class CurrentFolderKept {
public:
    CurrentFolderKept() : m_folder(GetCurrentDirectoryW(0, nullptr), L'\0')
    {
        GetCurrentDirectoryW(static_cast<DWORD>(m_folder.size()), m_folder.data());
    }
    ~CurrentFolderKept() { SetCurrentDirectoryW(m_folder.c_str()); }
    CurrentFolderKept(const CurrentFolderKept&) = delete;
    CurrentFolderKept& operator=(const CurrentFolderKept&) = delete;

private:
    std::wstring m_folder;
};

std::optional<std::string> runDialog(SystemDialog dialog, HWND owner, const FileDialogOptions& options)
{
    const std::string filter = systemFilter(options.filter);
    const std::string extension =
        options.defaultExtension.substr(options.defaultExtension.starts_with('.') ? 1 : 0);
    std::string path(32 * 1024, '\0');
    options.initialName.copy(path.data(), path.size() - 1);
    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = filter.c_str();
    request.nFilterIndex = 1;
    request.lpstrFile = path.data();
    request.nMaxFile = static_cast<DWORD>(path.size());
    request.lpstrTitle = options.title.c_str();
    request.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    request.Flags = options.flags | OFN_EXPLORER | OFN_LONGNAMES | OFN_ENABLESIZING | OFN_NOCHANGEDIR;
    const CurrentFolderKept kept;
    BOOL chosen = dialog(&request);
    if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
        path.assign(path.size(), '\0'); // the name cannot be shown: ask without one
        request.lpstrFile = path.data();
        chosen = dialog(&request);
    }
    return chosen ? std::optional<std::string>(path.c_str()) : std::nullopt;
}

struct FreeTaskMemory {
    void operator()(void* memory) const { CoTaskMemFree(memory); }
};

// Asked a second time when the dialog stands: systems from 7 on do not scroll to what is selected while it
// comes up. The path lives as long as the dialog.
int CALLBACK selectInitial(HWND window, UINT message, LPARAM, LPARAM initialPath) noexcept
{
    if (message == BFFM_INITIALIZED && *reinterpret_cast<const char*>(initialPath) != '\0') {
        SendMessageA(window, BFFM_SETSELECTIONA, TRUE, initialPath);
        PostMessageA(window, BFFM_SETSELECTIONA, TRUE, initialPath);
    }
    return 0;
}

} // namespace

std::string systemFilter(const std::string& filter)
{
    std::string result = filter;
    while (result.ends_with('|')) {
        result.pop_back();
    }
    std::replace(result.begin(), result.end(), '|', '\0');
    result.append(2, '\0');
    return result;
}

std::optional<std::string> openFile(HWND owner, const FileDialogOptions& options)
{
    return runDialog(&GetOpenFileNameA, owner, options);
}

std::optional<std::string> saveFile(HWND owner, const FileDialogOptions& options)
{
    return runDialog(&GetSaveFileNameA, owner, options);
}

std::optional<std::string> browseFolder(HWND owner, const std::string& initialPath, const std::string& prompt)
{
    const OleInit ole;
    char name[MAX_PATH] = "";
    BROWSEINFOA request{};
    request.hwndOwner = owner;
    request.pszDisplayName = name;
    request.lpszTitle = prompt.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE | BIF_EDITBOX | BIF_STATUSTEXT;
    request.lpfn = &selectInitial;
    request.lParam = reinterpret_cast<LPARAM>(initialPath.c_str());
    const std::unique_ptr<void, FreeTaskMemory> place(SHBrowseForFolderA(&request));
    char path[MAX_PATH] = "";
    if (!place || !SHGetPathFromIDListA(static_cast<PCIDLIST_ABSOLUTE>(place.get()), path)) {
        return std::nullopt;
    }
    return path;
}

namespace {

// By its whole path: the name alone could start another program that the search finds first.
std::string browserOfFiles()
{
    char folder[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryA(folder, sizeof folder);
    return std::string(folder, length < sizeof folder ? length : 0) + "\\explorer.exe";
}

bool isWholeFolderPath(const std::string& path)
{
    const bool onDrive = path.size() >= 2 && path[1] == ':' && (path.size() == 2 || path[2] == '\\');
    const bool whole = onDrive || path.starts_with("\\\\");
    const DWORD attributes = whole ? GetFileAttributesA(path.c_str()) : INVALID_FILE_ATTRIBUTES;
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

// The browser's command line takes what begins with a slash for a switch, and ends a path at a comma or an
// equals sign.
bool showFolder(HWND owner, const std::string& path)
{
    if (path.find_first_of("/\"") != std::string::npos || !isWholeFolderPath(path)) {
        return false;
    }
    const bool quoted = path.find_first_of(",=") != std::string::npos;
    const std::string parameters = format(quoted ? "/n,/e,\"%s\"" : "/n,/e,%s", path.c_str());
    ShellExecuteA(owner, "open", browserOfFiles().c_str(), parameters.c_str(), nullptr, SW_SHOWNORMAL);
    return true;
}

} // namespace tessera
