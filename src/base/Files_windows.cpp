#include "base/Files.h"

#include <exception>
#include <windows.h>

namespace tessera {

namespace {

class FileHandle {
public:
    FileHandle(const std::string& path, DWORD access, DWORD share, DWORD creation)
        : m_handle(
              CreateFileA(path.c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }
    ~FileHandle()
    {
        if (*this)
            CloseHandle(m_handle);
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }
    std::optional<std::uint64_t> size() const
    {
        LARGE_INTEGER size;
        if (!GetFileSizeEx(m_handle, &size))
            return std::nullopt;
        return static_cast<std::uint64_t>(size.QuadPart);
    }

private:
    HANDLE m_handle;
};

OVERLAPPED at(std::uint32_t position)
{
    OVERLAPPED place{};
    place.Offset = position;
    return place;
}

// Every access names its place, so that a read leaves the write position alone.
class WindowsFile : public OutputFile {
public:
    WindowsFile(const std::string& path, DWORD access, DWORD creation)
        : m_file(path, access, FILE_SHARE_READ, creation)
    {
    }
    bool isOpen() const { return static_cast<bool>(m_file); }

    bool write(ByteView bytes) override
    {
        OVERLAPPED place = at(m_position);
        DWORD written = 0;
        const auto length = static_cast<DWORD>(bytes.size());
        if (!WriteFile(m_file.get(), bytes.data(), length, &written, &place) || written != length)
            return false;
        m_position += written;
        return true;
    }

    bool seek(std::uint32_t position) override
    {
        m_position = position;
        return true;
    }

    bool readAt(std::uint32_t position, std::span<std::uint8_t> buffer) override
    {
        OVERLAPPED place = at(position);
        DWORD read = 0;
        const auto length = static_cast<DWORD>(buffer.size());
        return ReadFile(m_file.get(), buffer.data(), length, &read, &place) && read == length;
    }

    std::optional<std::uint64_t> size() override { return m_file.size(); }

    bool flush() override { return FlushFileBuffers(m_file.get()) != FALSE; }

private:
    FileHandle m_file;
    std::uint32_t m_position = 0;
};

bool isDots(const char* name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
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
    try {
        const FileHandle file(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              OPEN_EXISTING);
        const std::optional<std::uint64_t> size = file ? file.size() : std::nullopt;
        if (!size || *size > MAXDWORD)
            return std::nullopt;
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(*size));
        DWORD read = 0;
        if (!bytes.empty() &&
            !ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
            return std::nullopt;
        bytes.resize(read);
        return bytes;
    } catch (const std::exception&) {
        return std::nullopt; // more than the memory that there is
    }

    std::unique_ptr<OutputFile> create(const std::string& path) override { return open(path, CREATE_ALWAYS); }

    std::unique_ptr<OutputFile> openForUpdate(const std::string& path) override
    {
        return open(path, OPEN_EXISTING);
    }

    bool rename(const std::string& from, const std::string& to) override
    {
        return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
               FALSE;
    }

    bool remove(const std::string& path) override { return DeleteFileA(path.c_str()) != FALSE; }

    std::optional<std::string> findFirst(const std::string& pattern) override
    {
        WIN32_FIND_DATAA data;
        const HANDLE search = FindFirstFileA(pattern.c_str(), &data);
        if (search == INVALID_HANDLE_VALUE)
            return std::nullopt;
        const struct Close {
            HANDLE handle;
            ~Close() { FindClose(handle); }
        } close{search};
        do {
            if (!isDots(data.cFileName))
                return std::string(data.cFileName);
        } while (FindNextFileA(search, &data));
        return std::nullopt;
    }

private:
    static std::unique_ptr<OutputFile> open(const std::string& path, DWORD creation)
    {
        auto file = std::make_unique<WindowsFile>(path, GENERIC_READ | GENERIC_WRITE, creation);
        if (!file->isOpen())
            return nullptr;
        return file;
    }
};

} // namespace

FileSystem& systemFiles()
{
    static WindowsFileSystem files;
    return files;
}

} // namespace tessera
