#include "base/PlacedFile.h"

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tessera {

namespace {

std::string toNative(std::string path)
{
    std::ranges::replace(path, '\\', '/');
    return path;
}

class Descriptor {
public:
    Descriptor(const std::string& path, int flags) : m_descriptor(::open(toNative(path).c_str(), flags, 0644))
    {
    }
    Descriptor(Descriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    ~Descriptor()
    {
        if (*this)
            ::close(m_descriptor);
    }
    Descriptor& operator=(Descriptor&&) = delete;

    explicit operator bool() const { return m_descriptor >= 0; }
    // By seeking, since every access names its place: asking for the status, which holds the times
    // of the file too, makes the next write much slower.
    std::optional<std::uint64_t> size() const
    {
        const off_t end = ::lseek(m_descriptor, 0, SEEK_END);
        return end < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(end));
    }
    std::optional<std::size_t> readAt(std::uint32_t position, std::span<std::uint8_t> bytes) const
    {
        const ssize_t count = ::pread(m_descriptor, bytes.data(), bytes.size(), position);
        return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
    }
    bool writeAt(std::uint32_t position, ByteView bytes)
    {
        while (!bytes.empty()) {
            const ssize_t written = ::pwrite(m_descriptor, bytes.data(), bytes.size(), position);
            if (written <= 0)
                return false;
            position += static_cast<std::uint32_t>(written);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
        return true;
    }
    bool flush() { return ::fsync(m_descriptor) == 0; }

private:
    int m_descriptor;
};

class NativeFileSystem : public FileSystem {
public:
    bool exists(const std::string& path) override { return ::access(toNative(path).c_str(), F_OK) == 0; }

    std::optional<FileInfo> info(const std::string& path) override
    {
        struct stat status {};
        if (::stat(toNative(path).c_str(), &status) != 0)
            return std::nullopt;
        return FileInfo{static_cast<std::uint64_t>(status.st_size)};
    }

    std::optional<std::vector<std::uint8_t>> readAll(const std::string& path) override
    {
        return contentOf(Descriptor(path, O_RDONLY));
    }

    std::optional<std::vector<std::uint8_t>> readBeginning(const std::string& path, std::size_t most) override
    {
        return beginningOf(Descriptor(path, O_RDONLY), most);
    }

    std::unique_ptr<OutputFile> create(const std::string& path) override
    {
        return PlacedFile<Descriptor>::of({path, O_RDWR | O_CREAT | O_TRUNC});
    }

    std::unique_ptr<OutputFile> createNew(const std::string& path) override
    {
        return PlacedFile<Descriptor>::of({path, O_RDWR | O_CREAT | O_EXCL});
    }

    std::unique_ptr<OutputFile> openForUpdate(const std::string& path) override
    {
        return PlacedFile<Descriptor>::of({path, O_RDWR});
    }

    bool rename(const std::string& from, const std::string& to) override
    {
        return std::rename(toNative(from).c_str(), toNative(to).c_str()) == 0;
    }

    bool remove(const std::string& path) override { return ::unlink(toNative(path).c_str()) == 0; }

    bool removeTemporary(const std::string& path) override
    {
        std::error_code failed;
        const auto whole = std::filesystem::canonical(toNative(path), failed).native();
        const auto folder = std::filesystem::temp_directory_path(failed) / "";
        return !failed && whole.starts_with(folder.native()) && remove(path);
    }

    // Folders list in no order; the first by name is taken.
    std::optional<std::string> findFirst(const std::string& pattern) override
    {
        const std::vector<std::string> all = findAll(pattern);
        return all.empty() ? std::nullopt : std::optional(all.front());
    }

    std::vector<std::string> findAll(const std::string& pattern) override
    {
        const std::string path = toNative(pattern);
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
        const std::string last = slash == std::string::npos ? path : path.substr(slash + 1);
        const std::unique_ptr<DIR, int (*)(DIR*)> list(::opendir(folder.c_str()), ::closedir);
        std::vector<std::string> names;
        while (const dirent* entry = list ? ::readdir(list.get()) : nullptr) {
            std::string name = entry->d_name;
            if (name != "." && name != ".." &&
                ::fnmatch(last.c_str(), name.c_str(), FNM_CASEFOLD | FNM_NOESCAPE) == 0)
                names.push_back(std::move(name));
        }
        std::ranges::sort(names);
        return names;
    }

    bool heldByAnother() const override { return false; } // nobody can here
};

} // namespace

FileSystem& systemFiles()
{
    static NativeFileSystem files;
    return files;
}

} // namespace tessera
