#pragma once

#include "base/Bytes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tessera {

// A file that is open for writing; closed with the object. Every operation answers false when
// the system refused it (disk full, device gone) and leaves the caller to say so.
class OutputFile {
public:
    virtual ~OutputFile() = default;
    virtual bool write(ByteView bytes) = 0;
    virtual bool seek(std::uint32_t position) = 0;
    // Fills the buffer from a position without moving the write position (in-place updates compare
    // first); false, too, when the file does not reach so far.
    virtual bool readAt(std::uint32_t position, std::span<std::uint8_t> buffer) = 0;
    // In bytes; none when the system does not say.
    virtual std::optional<std::uint64_t> size() = 0;
    // To the medium, not just to the system.
    virtual bool flush() = 0;
};

struct FileInfo {
    std::uint64_t size = 0;
};

// The part of the file system that the library needs; tests put a failing one in its place.
// Paths are absolute, in the code page, with backslashes.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual bool exists(const std::string& path) = 0; // files and folders
    virtual std::optional<FileInfo> info(const std::string& path) = 0;
    // The whole content with one read; none when it cannot be opened or read, or memory is short.
    virtual std::optional<std::vector<std::uint8_t>> readAll(const std::string& path) = 0;
    // At most so many bytes from its beginning.
    virtual std::optional<std::vector<std::uint8_t>> readBeginning(const std::string& path,
                                                                   std::size_t most) = 0;
    // Created or truncated.
    virtual std::unique_ptr<OutputFile> create(const std::string& path) = 0;
    // Created; none when anything has that name, a link included.
    virtual std::unique_ptr<OutputFile> createNew(const std::string& path) = 0;
    // Must exist; opened for reading and writing, not truncated.
    virtual std::unique_ptr<OutputFile> openForUpdate(const std::string& path) = 0;
    // Takes the place of what is there.
    virtual bool rename(const std::string& from, const std::string& to) = 0;
    virtual bool remove(const std::string& path) = 0;
    // For names that others gave: only what lies below the system's folder for temporary files.
    virtual bool removeTemporary(const std::string& path) = 0;
    // The first entry but "." and ".." that the system lists for a pattern with "*" and "?" in its
    // last component; its name without the folder.
    virtual std::optional<std::string> findFirst(const std::string& pattern) = 0;
    // The names of all of them, without the folder, sorted.
    virtual std::vector<std::string> findAll(const std::string& pattern) = 0;
    // Asked after a call on this thread that did not open or rename: true when another program holds the
    // file, which may be over in a moment.
    virtual bool heldByAnother() const = 0;
};

// The real one; lives as long as the process.
FileSystem& systemFiles();

// Collects small writes in a buffer; blocks of a buffer's size and more go straight through. The
// file sees whole buffers, whatever the pieces: systems are slower where a write ends inside a page.
// The first refusal sticks: `good` is false from then on and later writes do nothing. So does the first
// write that would make the file larger than `most` bytes; the file never sees it.
class BufferedWriter {
public:
    explicit BufferedWriter(OutputFile& file, std::size_t capacity = 64 * 1024,
                            std::uint64_t most = UINT32_MAX);

    void put(std::uint32_t value)
    {
        if (fits(sizeof value))
            append(value);
        else
            spill(value);
    }
    void put(std::int32_t value) { put(static_cast<std::uint32_t>(value)); }
    // Length, then the bytes.
    void putText(std::string_view text)
    {
        const ByteView bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
        put(static_cast<std::uint32_t>(bytes.size()));
        putBlock(bytes);
    }
    void putBlock(ByteView bytes)
    {
        if (fits(bytes.size()))
            append(bytes);
        else
            spill(bytes);
    }
    bool flush(); // the buffer to the file
    bool good() const { return m_good; }
    bool tooLarge() const { return m_tooLarge; }

private:
    bool fits(std::size_t size) const { return m_good && size <= m_buffer.size() - m_used; }
    // What does not fit into the rest of the buffer.
    void spill(std::uint32_t value);
    void spill(ByteView bytes);
    void pass(ByteView bytes); // to the file
    void append(std::uint32_t value)
    {
        std::uint8_t* const at = m_buffer.data() + m_used;
        at[0] = static_cast<std::uint8_t>(value);
        at[1] = static_cast<std::uint8_t>(value >> 8);
        at[2] = static_cast<std::uint8_t>(value >> 16);
        at[3] = static_cast<std::uint8_t>(value >> 24);
        m_used += sizeof value;
    }
    void append(ByteView bytes)
    {
        if (!bytes.empty())
            std::memcpy(m_buffer.data() + m_used, bytes.data(), bytes.size());
        m_used += bytes.size();
    }

    OutputFile& m_file;
    std::vector<std::uint8_t> m_buffer;
    std::size_t m_used = 0;
    std::uint64_t m_room; // in the file
    bool m_good = true;
    bool m_tooLarge = false;
};

} // namespace tessera
