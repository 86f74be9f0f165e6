#pragma once

#include "base/Files.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <set>

namespace tessera::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

// A file system in memory; paths are compared as they are. Any call can be made to fail. A file that is
// open keeps its name and stays.
class FakeFiles : public FileSystem {
public:
    std::map<std::string, Bytes> files;
    std::set<std::string> folders;
    std::string temporaryFolder = "C:\\temp\\";
    std::set<std::string> readOnly;   // files and folders that refuse writing
    std::set<std::string> unreadable; // as while memory is short
    int calls = 0;                    // also those of open files
    int failingCall = 0;              // from 1; 0: none
    int deadFrom = 0;                 // this call and all later ones fail
    std::map<std::string, int> held;  // files ('?': any character) that so many tries find in use
    std::size_t room = std::numeric_limits<std::size_t>::max(); // bytes until the disk is full
    std::size_t torn = 0;                                       // bytes that a failing write leaves behind
    std::map<std::string, std::string> matches;                 // pattern: entry that the system lists first
    std::vector<std::string> searched;                          // patterns, in order
    std::vector<std::string> removed;
    std::function<void()> insideCall;

    bool fails()
    {
        m_held = false;
        ++calls;
        const bool fail = calls == failingCall || (deadFrom > 0 && calls >= deadFrom);
        if (insideCall)
            insideCall();
        return fail;
    }

    bool exists(const std::string& path) override
    {
        return !fails() && (files.contains(path) || folders.contains(path));
    }
    std::optional<FileInfo> info(const std::string& path) override
    {
        if (fails() || !files.contains(path))
            return std::nullopt;
        return FileInfo{files[path].size()};
    }
    std::optional<Bytes> readAll(const std::string& path) override
    {
        if (fails() || isHeld(path) || unreadable.contains(path) || !files.contains(path))
            return std::nullopt;
        return files[path];
    }
    std::optional<Bytes> readBeginning(const std::string& path, std::size_t most) override
    {
        std::optional<Bytes> bytes = readAll(path);
        if (bytes)
            bytes->resize(std::min(bytes->size(), most));
        return bytes;
    }
    std::unique_ptr<OutputFile> create(const std::string& path) override
    {
        if (fails() || isHeld(path) || isReadOnly(path) || folders.contains(path))
            return nullptr;
        files[path].clear();
        return std::make_unique<File>(*this, path);
    }
    std::unique_ptr<OutputFile> createNew(const std::string& path) override
    {
        return files.contains(path) ? nullptr : create(path);
    }
    std::unique_ptr<OutputFile> openForUpdate(const std::string& path) override
    {
        if (fails() || isHeld(path) || isReadOnly(path) || !files.contains(path))
            return nullptr;
        return std::make_unique<File>(*this, path);
    }
    bool rename(const std::string& from, const std::string& to) override
    {
        if (fails() || isHeld(from) || isHeld(to) || !files.contains(from) || isReadOnly(to) ||
            folders.contains(to) || m_open.contains(from) || m_open.contains(to))
            return false;
        auto file = files.extract(from);
        try {
            file.key().assign(to);
        } catch (...) {
            files.insert(std::move(file));
            throw;
        }
        files.erase(to);
        files.insert(std::move(file));
        return true;
    }
    bool remove(const std::string& path) override
    {
        removed.push_back(path);
        return !fails() && !m_open.contains(path) && files.erase(path) > 0;
    }
    bool removeTemporary(const std::string& path) override
    {
        return path.starts_with(temporaryFolder) && remove(path);
    }
    std::optional<std::string> findFirst(const std::string& pattern) override
    {
        searched.push_back(pattern);
        const auto found = matches.find(pattern);
        if (fails() || found == matches.end())
            return std::nullopt;
        return found->second;
    }
    // '?' alone stands for something else.
    std::vector<std::string> findAll(const std::string& pattern) override
    {
        std::vector<std::string> names;
        for (const auto& [path, content] : files) {
            if (isLike(path, pattern))
                names.push_back(path.substr(path.rfind('\\') + 1));
        }
        return fails() ? std::vector<std::string>() : names;
    }
    bool heldByAnother() const override { return m_held; }

private:
    class File : public OutputFile {
    public:
        File(FakeFiles& owner, const std::string& path)
            : m_owner(owner), m_path(path), m_open(owner.m_open.insert(path))
        {
        }
        ~File() override { m_owner.m_open.erase(m_open); }
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        bool write(ByteView bytes) override
        {
            if (m_owner.fails() || bytes.size() > m_owner.room) {
                put(bytes.first(std::min(m_owner.torn, bytes.size())));
                return false;
            }
            m_owner.room -= bytes.size();
            put(bytes);
            return true;
        }
        void put(ByteView bytes)
        {
            Bytes& content = m_owner.files.at(m_path);
            content.resize(std::max(content.size(), m_position + bytes.size()));
            std::ranges::copy(bytes, content.begin() + static_cast<std::ptrdiff_t>(m_position));
            m_position += bytes.size();
        }
        bool seek(std::uint32_t position) override
        {
            m_position = position;
            return !m_owner.fails();
        }
        bool readAt(std::uint32_t position, std::span<std::uint8_t> buffer) override
        {
            const Bytes& content = m_owner.files.at(m_path);
            if (m_owner.fails() || position > content.size() || buffer.size() > content.size() - position)
                return false;
            std::ranges::copy_n(content.begin() + position, static_cast<std::ptrdiff_t>(buffer.size()),
                                buffer.begin());
            return true;
        }
        std::optional<std::uint64_t> size() override
        {
            if (m_owner.fails())
                return std::nullopt;
            return m_owner.files.at(m_path).size();
        }
        bool flush() override { return !m_owner.fails(); }

    private:
        FakeFiles& m_owner;
        std::string m_path;
        std::multiset<std::string>::iterator m_open;
        std::size_t m_position = 0;
    };

    static bool isLike(std::string_view path, std::string_view pattern)
    {
        const auto same = [](char here, char wanted) { return wanted == '?' || here == wanted; };
        return std::ranges::equal(path, pattern, same);
    }
    bool isHeld(const std::string& path)
    {
        const auto found =
            std::ranges::find_if(held, [&](const auto& file) { return isLike(path, file.first); });
        m_held = found != held.end() && found->second-- > 0;
        return m_held;
    }
    bool isReadOnly(const std::string& path) const
    {
        return readOnly.contains(path) || readOnly.contains(path.substr(0, path.rfind('\\')));
    }

    bool m_held = false;
    std::multiset<std::string> m_open;
};

} // namespace tessera::test
