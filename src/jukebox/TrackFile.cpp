#include "jukebox/TrackFile.h"

#include <windows.h>

#include <atomic>
#include <memory>

namespace tessera::jukebox {

namespace {

struct CloseHandleLater {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<HANDLE, CloseHandleLater>;

FileHandle openFile(const std::wstring& path, DWORD access, DWORD disposition)
{
    const HANDLE handle = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                      disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return FileHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

std::optional<WIN32_FILE_ATTRIBUTE_DATA> fileAttributes(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    return data;
}

std::wstring withThousands(std::uint64_t number)
{
    std::wstring digits = std::to_wstring(number);
    for (std::size_t position = digits.size(); position > 3; position -= 3) {
        digits.insert(position - 3, 1, L',');
    }
    return digits;
}

std::wstring twoDigits(std::int32_t number)
{
    return (number < 10 ? L"0" : L"") + std::to_wstring(number);
}

std::wstring extensionOf(const std::wstring& path)
{
    const std::size_t dot = path.find_last_of(L".\\/");
    return dot == std::wstring::npos || path[dot] != L'.' ? std::wstring() : path.substr(dot);
}

std::wstring temporaryName(const std::wstring& extension)
{
    static std::atomic<unsigned> counter = 0;
    wchar_t folder[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"mjimage-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++counter) + extension;
}

} // namespace

std::wstring fileSizeText(const std::wstring& path)
{
    const auto data = fileAttributes(path);
    if (!data) {
        return {};
    }
    const std::uint64_t bytes = (std::uint64_t{data->nFileSizeHigh} << 32) | data->nFileSizeLow;
    return withThousands((bytes + 1023) / 1024) + L"kb";
}

std::wstring fileDateText(const std::wstring& path)
{
    const auto data = fileAttributes(path);
    FILETIME local{};
    SYSTEMTIME time{};
    if (!data || !FileTimeToLocalFileTime(&data->ftLastWriteTime, &local) ||
        !FileTimeToSystemTime(&local, &time)) {
        return {};
    }
    wchar_t text[128] = {};
    GetDateFormatW(LOCALE_USER_DEFAULT, DATE_LONGDATE, &time, nullptr, text, 128);
    return text;
}

std::wstring durationText(std::int32_t seconds)
{
    seconds = std::max(seconds, 0);
    const std::wstring tail = L":" + twoDigits(seconds % 60);
    if (seconds < 3600) {
        return std::to_wstring(seconds / 60) + tail;
    }
    return std::to_wstring(seconds / 3600) + L":" + twoDigits(seconds / 60 % 60) + tail;
}

std::wstring copyToTemporaryFile(const std::wstring& path)
{
    // A name that is taken is left alone: the copy fails and the next name is tried.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::wstring name = temporaryName(extensionOf(path));
        if (CopyFileW(path.c_str(), name.c_str(), TRUE)) {
            SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
            return name;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) {
            return {};
        }
    }
    return {};
}

std::optional<std::string> readWholeFile(const std::wstring& path)
{
    const FileHandle file = openFile(path, GENERIC_READ, OPEN_EXISTING);
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size) || size.QuadPart > 0x40000000) {
        return std::nullopt;
    }
    std::string content(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    if (!ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &read, nullptr) ||
        read != content.size()) {
        return std::nullopt;
    }
    return content;
}

bool writeWholeFile(const std::wstring& path, std::string_view content)
{
    const FileHandle file = openFile(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    return file &&
           WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
           written == content.size();
}

} // namespace tessera::jukebox
