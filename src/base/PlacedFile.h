#pragma once

#include "base/Files.h"

#include <exception>
#include <span>
#include <utility>

namespace tessera {

// The part of an output file that is the same on every system. `SystemFile` owns an open file and
// offers `size`, `readAt`, `writeAt` and `flush`; every access names its place, so that a read
// leaves the write position alone.
template <class SystemFile>
class PlacedFile final : public OutputFile {
public:
    explicit PlacedFile(SystemFile file) : m_file(std::move(file)) {}

    // Null when the file is not open.
    static std::unique_ptr<OutputFile> of(SystemFile file)
    {
        return file ? std::make_unique<PlacedFile>(std::move(file)) : nullptr;
    }

    bool write(ByteView bytes) override
    {
        if (bytes.size() > UINT32_MAX - m_position || !m_file.writeAt(m_position, bytes))
            return false;
        m_position += static_cast<std::uint32_t>(bytes.size());
        return true;
    }
    bool seek(std::uint32_t position) override
    {
        m_position = position;
        return true;
    }
    bool readAt(std::uint32_t position, std::span<std::uint8_t> buffer) override
    {
        return m_file.readAt(position, buffer) == buffer.size();
    }
    std::optional<std::uint64_t> size() override { return m_file.size(); }
    bool flush() override { return m_file.flush(); }

private:
    SystemFile m_file;
    std::uint32_t m_position = 0;
};

// The whole content with one read; none when the file is not open, cannot be read, or is larger than
// the memory that there is.
template <class SystemFile>
std::optional<std::vector<std::uint8_t>> contentOf(const SystemFile& file)
try {
    const std::optional<std::uint64_t> size = file ? file.size() : std::nullopt;
    if (!size || *size > UINT32_MAX)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(*size));
    const std::optional<std::size_t> read = file.readAt(0, bytes);
    if (!read)
        return std::nullopt;
    bytes.resize(*read);
    return bytes;
} catch (const std::exception&) {
    return std::nullopt;
}

// The same of its first bytes.
template <class SystemFile>
std::optional<std::vector<std::uint8_t>> beginningOf(const SystemFile& file, std::size_t most)
try {
    std::vector<std::uint8_t> bytes(most);
    const std::optional<std::size_t> read = file ? file.readAt(0, bytes) : std::nullopt;
    if (!read)
        return std::nullopt;
    bytes.resize(*read);
    return bytes;
} catch (const std::exception&) {
    return std::nullopt;
}

} // namespace tessera
