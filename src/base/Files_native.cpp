#include "base/Files.h"

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <exception>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

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
    ~Descriptor()
    {
        if (*this)
            ::close(m_descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    std::optional<std::uint64_t> size() const
    {
        struct stat status {};
        if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
            return std::nullopt;
        return static_cast<std::uint64_t>(status.st_size);
    }

private:
    int m_descriptor;
};

class NativeFile : public OutputFile {
public:
    NativeFile(const std::string& path, int flags) : m_file(path, flags) {}
    bool isOpen() const { return static_cast<bool>(m_file); }

    bool write(ByteView bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t written = ::pwrite(m_file.get(), bytes.data(), bytes.size(), m_position);
            if (written <= 0)
                return false;
            m_position += static_cast<std::uint32_t>(written);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
        return true;
    }

    bool seek(std::uint32_t position) override
    {
        m_position = position;
        return true;
    }

    bool readAt(std::uint32_t position, std::span<std::uint8_t> buffer) override
    {
        return ::pread(m_file.get(), buffer.data(), buffer.size(), position) ==
               static_cast<ssize_t>(buffer.size());
    }

    std::optional<std::uint64_t> size() override { return m_file.size(); }

    bool flush() override { return ::fsync(m_file.get()) == 0; }

private:
    Descriptor m_file;
    std::uint32_t m_position = 0;
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
    try {
        const Descriptor file(path, O_RDONLY);
        const std::optional<std::uint64_t> size = file ? file.size() : std::nullopt;
        if (!size || *size > UINT32_MAX)
            return std::nullopt;
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(*size));
        const ssize_t count = ::pread(file.get(), bytes.data(), bytes.size(), 0);
        if (count < 0)
            return std::nullopt;
        bytes.resize(static_cast<std::size_t>(count));
        return bytes;
    } catch (const std::exception&) {
        return std::nullopt; // more than the memory that there is
    }

    std::unique_ptr<OutputFile> create(const std::string& path) override
    {
        return open(path, O_RDWR | O_CREAT | O_TRUNC);
    }

    std::unique_ptr<OutputFile> openForUpdate(const std::string& path) override { return open(path, O_RDWR); }

    bool rename(const std::string& from, const std::string& to) override
    {
        return std::rename(toNative(from).c_str(), toNative(to).c_str()) == 0;
    }

    bool remove(const std::string& path) override { return ::unlink(toNative(path).c_str()) == 0; }

    // Folders list in no order; the first by name is taken.
    std::optional<std::string> findFirst(const std::string& pattern) override
    {
        const std::string path = toNative(pattern);
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
        const std::string last = slash == std::string::npos ? path : path.substr(slash + 1);
        const std::unique_ptr<DIR, int (*)(DIR*)> list(::opendir(folder.c_str()), ::closedir);
        std::optional<std::string> first;
        while (const dirent* entry = list ? ::readdir(list.get()) : nullptr) {
            const std::string name = entry->d_name;
            if (name == "." || name == ".." ||
                ::fnmatch(last.c_str(), name.c_str(), FNM_CASEFOLD | FNM_NOESCAPE) != 0)
                continue;
            if (!first || name < *first)
                first = name;
        }
        return first;
    }

private:
    static std::unique_ptr<OutputFile> open(const std::string& path, int flags)
    {
        auto file = std::make_unique<NativeFile>(path, flags);
        if (!file->isOpen())
            return nullptr;
        return file;
    }
};

} // namespace

FileSystem& systemFiles()
{
    static NativeFileSystem files;
    return files;
}

} // namespace tessera
