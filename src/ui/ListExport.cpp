#include "ui/ListExport.h"

#include "base/Clock.h"
#include "base/Text.h"
#include "ui/Commands.h"
#include "ui/Pane.h"
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

CellText shownTexts(HWND list)
{
    return [view = ListView(list)](int item, int column) { return view.text(item, column); };
}

std::string listText(HWND list, const CellText& text, std::size_t& records)
{
    const ListView view(list);
    const std::vector<int> columns = view.columnOrder();
    const int items = view.count();
    std::string all;
    for (int item = 0; item < items; ++item) {
        std::string line;
        for (const int column : columns)
            line += onOneLine(text(item, column)) + '\t';
        all += trimRight(line);
        all += '\n';
    }
    records = static_cast<std::size_t>(items);
    return all;
}

ExportResult exportList(HWND list, const CellText& text, const std::string& path, FileSystem& files)
{
    ExportResult result;
    const std::string content = listText(list, text, result.records);
    SetLastError(ERROR_SUCCESS);
    const auto file = files.create(path);
    const bool written =
        file && file->write({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
    if (!written) {
        const DWORD error = GetLastError();
        result.error = error != ERROR_SUCCESS ? error : ERROR_WRITE_FAULT;
    }
    return result;
}

void exportListToText(Commands& commands, const Pane& pane)
{
    const HWND list = pane.exportList();
    if (!list)
        return;
    const auto path = askForFile(commands.ownerWindow(), pane.exportBaseName());
    // The dialog runs a message loop: what was busy before or went away meanwhile is left alone.
    if (!path || !IsWindow(list) || commands.isBusy())
        return;
    repaintCurrentPane(commands);
    const std::uint32_t start = tickCount();
    const ExportResult result = [&] {
        const WaitCursor wait;
        const CellText text = [&](int item, int column) { return pane.exportText(item, column); };
        return exportList(list, text, *path, systemFiles());
    }();
    const std::uint32_t elapsed = tickCount() - start;
    repaintCurrentPane(commands);
    report(commands, *path, result, elapsed);
}

} // namespace tessera
