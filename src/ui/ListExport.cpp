#include "ui/ListExport.h"

#include "base/Clock.h"
#include "base/Text.h"
#include "ui/Commands.h"
#include "windowing/FileDialogs.h"
#include "windowing/ListView.h"

#include <array>
#include <optional>

namespace tessera {

namespace {

std::string systemText(DWORD error)
{
    std::array<char, 512> text{};
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    if (length == 0)
        return format("Error %lu", error);
    return std::string(trimRight({text.data(), length}));
}

std::optional<std::string> askForFile(HWND owner, const char* baseName)
{
    return saveFile(owner, {.title = "Enter the name of the file to export to",
                            .filter = "Text Files (*.txt)|*.txt|All Files (*.*)|*.*||",
                            .initialName = format("%s.txt", baseName),
                            .defaultExtension = "txt",
                            .flags = kSaveFlags});
}

void repaintCurrentPane(const Commands& commands)
{
    RedrawWindow(GetDlgItem(commands.ownerWindow(), commands.currentPane()), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

class WaitCursor {
public:
    WaitCursor() : m_hPrevious(SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32514)))) {}
    ~WaitCursor() { SetCursor(m_hPrevious); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    HCURSOR m_hPrevious;
};

void report(Commands& commands, const std::string& path, const ExportResult& result, std::uint32_t elapsed)
{
    if (result.error != ERROR_SUCCESS) {
        commands.showMessage(MB_OK | MB_ICONEXCLAMATION,
                             format("%s\n\n%s", path.c_str(), systemText(result.error).c_str()));
        return;
    }
    commands.showMessage(MB_OK | MB_ICONINFORMATION,
                         format("Finished writing to %s\n\n%d records written in %.3f seconds.", path.c_str(),
                                static_cast<int>(result.records), elapsed * 0.001));
}

} // namespace

std::string listText(HWND list, std::size_t& records)
{
    const ListView view(list);
    const int columns = view.columnCount();
    const int items = view.count();
    std::string text;
    for (int item = 0; item < items; ++item) {
        std::string line;
        for (int column = 0; column < columns; ++column)
            line += view.text(item, column) + '\t';
        text += trimRight(line);
        text += '\n';
    }
    records = static_cast<std::size_t>(items);
    return text;
}

ExportResult exportList(HWND list, const std::string& path, FileSystem& files)
{
    ExportResult result;
    const std::string text = listText(list, result.records);
    SetLastError(ERROR_SUCCESS);
    const auto file = files.create(path);
    const bool written =
        file && file->write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    if (!written) {
        const DWORD error = GetLastError();
        result.error = error != ERROR_SUCCESS ? error : ERROR_WRITE_FAULT;
    }
    return result;
}

void exportListToText(Commands& commands, const char* baseName, HWND list)
{
    const auto path = askForFile(commands.ownerWindow(), baseName);
    // The dialog runs a message loop: what was busy before or went away meanwhile is left alone.
    if (!path || !IsWindow(list) || commands.isBusy())
        return;
    repaintCurrentPane(commands);
    const std::uint32_t start = tickCount();
    const ExportResult result = [&] {
        const WaitCursor wait;
        return exportList(list, *path, systemFiles());
    }();
    const std::uint32_t elapsed = tickCount() - start;
    repaintCurrentPane(commands);
    report(commands, *path, result, elapsed);
}

} // namespace tessera
