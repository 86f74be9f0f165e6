#include "base/PlacedFile.h"

#include <utility>
#include <windows.h>

namespace tessera {

namespace {

OVERLAPPED at(std::uint32_t position)
{
    OVERLAPPED place{};
    place.Offset = position;
    return place;
}

// Whether this thread's last call that opens or renames met another program.
thread_local bool t_held = false;

void noteError(DWORD error)
{
    t_held =
        error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE;
}

class FileHandle {
public:
    FileHandle(const std::string& path, DWORD access, DWORD share, DWORD creation)
        : m_handle(
              CreateFileA(path.c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
        noteError(*this ? ERROR_SUCCESS : GetLastError());
    }
    FileHandle(FileHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    ~FileHandle()
    {
        if (*this)
            CloseHandle(m_handle);
    }
    FileHandle& operator=(FileHandle&&) = delete;

    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }
    std::optional<std::uint64_t> size() const
    {
        LARGE_INTEGER size;
        if (!GetFileSizeEx(m_handle, &size))
            return std::nullopt;
        return static_cast<std::uint64_t>(size.QuadPart);
    }
    // What is behind the end reads as nothing.
    std::optional<std::size_t> readAt(std::uint32_t position, std::span<std::uint8_t> bytes) const
    {
        OVERLAPPED place = at(position);
        DWORD read = 0;
        if (!bytes.empty() &&
            !ReadFile(m_handle, bytes.data(), static_cast<DWORD>(bytes.size()), &read, &place) &&
            GetLastError() != ERROR_HANDLE_EOF)
            return std::nullopt;
        return read;
    }
    bool writeAt(std::uint32_t position, ByteView bytes)
    {
        OVERLAPPED place = at(position);
        DWORD written = 0;
        const auto length = static_cast<DWORD>(bytes.size());
        return WriteFile(m_handle, bytes.data(), length, &written, &place) && written == length;
    }
    bool flush() { return FlushFileBuffers(m_handle) != FALSE; }

private:
    HANDLE m_handle;
};

bool isDots(const char* name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

// Without dots and short names, which would make two names of one file; empty for what is missing.
std::string wholeName(const std::string& path)
{
    char full[MAX_PATH + 1];
    char whole[MAX_PATH + 1];
    const auto fits = [](DWORD length) { return length > 0 && length <= MAX_PATH; };
    return fits(GetFullPathNameA(path.c_str(), sizeof full, full, nullptr)) &&
                   fits(GetLongPathNameA(full, whole, sizeof whole))
               ? whole
               : std::string();
}

// The folder ends in a backslash.
bool isBelow(const std::string& path, const std::string& folder)
{
    const auto length = static_cast<int>(folder.size());
    return length > 0 && path.size() > folder.size() &&
           CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, path.c_str(), length, folder.c_str(), length) ==
               CSTR_EQUAL;
}

bool isWritableFile(const std::string& path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) == 0;
}

class WindowsFileSystem : public FileSystem {
public:
    bool exists(const std::string& path) override
    {
        return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    std::optional<FileInfo> info(const std::string& path) override
    {
        WIN32_FILE_ATTRIBUTE_DATA data;
        if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data))
            return std::nullopt;
        return FileInfo{static_cast<std::uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow};
    }

    std::optional<std::vector<std::uint8_t>> readAll(const std::string& path) override
    {
        return contentOf(FileHandle(path, GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING));
    }

    std::optional<std::vector<std::uint8_t>> readBeginning(const std::string& path, std::size_t most) override
    {
        return beginningOf(FileHandle(path, GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING),
                           most);
    }

    std::unique_ptr<OutputFile> create(const std::string& path) override
    {
        return openForWriting(path, CREATE_ALWAYS);
    }

    std::unique_ptr<OutputFile> createNew(const std::string& path) override
    {
        return openForWriting(path, CREATE_NEW);
    }

    // Some systems open a read-only file for those who may do everything.
    std::unique_ptr<OutputFile> openForUpdate(const std::string& path) override
    {
        const DWORD attributes = GetFileAttributesA(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
            noteError(ERROR_ACCESS_DENIED);
            return nullptr;
        }
        return openForWriting(path, OPEN_EXISTING);
    }

    bool rename(const std::string& from, const std::string& to) override
    {
        const bool renamed = MoveFileExA(from.c_str(), to.c_str(),
                                         MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
        const DWORD error = renamed ? ERROR_SUCCESS : GetLastError();
        noteError(error);
        // A target that somebody has open is told as a refusal.
        t_held = t_held || (error == ERROR_ACCESS_DENIED && isWritableFile(to));
        return renamed;
    }

    bool remove(const std::string& path) override { return DeleteFileA(path.c_str()) != FALSE; }

    bool removeTemporary(const std::string& path) override
    {
        char folder[MAX_PATH + 2] = {};
        GetTempPathA(sizeof folder, folder);
        return isBelow(wholeName(path), wholeName(folder)) && remove(path);
    }

    std::optional<std::string> findFirst(const std::string& pattern) override
    {
        std::optional<std::string> first;
        forEach(pattern, [&](const char* name) {
            first = name;
            return false;
        });
        return first;
    }

    std::vector<std::string> findAll(const std::string& pattern) override
    {
        std::vector<std::string> names;
        forEach(pattern, [&](const char* name) {
            names.emplace_back(name);
            return true;
        });
        std::ranges::sort(names);
        return names;
    }

    bool heldByAnother() const override { return t_held; }

private:
    // Until the visitor answers false.
    template <class Visitor>
    static void forEach(const std::string& pattern, Visitor visitor)
    {
        WIN32_FIND_DATAA data;
        const HANDLE search = FindFirstFileA(pattern.c_str(), &data);
        if (search == INVALID_HANDLE_VALUE)
            return;
        const struct Close {
            HANDLE handle;
            ~Close() { FindClose(handle); }
        } close{search};
        do {
            if (!isDots(data.cFileName) && !visitor(data.cFileName))
                return;
        } while (FindNextFileA(search, &data));
    }

    static std::unique_ptr<OutputFile> openForWriting(const std::string& path, DWORD creation)
    {
        return PlacedFile<FileHandle>::of({path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, creation});
    }
};

} // namespace

FileSystem& systemFiles()
{
    static WindowsFileSystem files;
    return files;
}

} // namespace tessera
