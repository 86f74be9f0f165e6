#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessera {

using ByteView = std::span<const std::uint8_t>;

// Reads little-endian values from a view and never beyond its end: each take advances and
// answers true, or answers false and leaves everything as it was.
class ByteReader {
public:
    explicit ByteReader(ByteView bytes) : m_bytes(bytes) {}

    bool take(std::uint32_t& value)
    {
        if (m_bytes.size() - m_position < sizeof value)
            return false;
        const std::uint8_t* at = m_bytes.data() + m_position;
        value = static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
                static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
        m_position += sizeof value;
        return true;
    }
    bool take(std::int32_t& value)
    {
        std::uint32_t raw = 0;
        if (!take(raw))
            return false;
        value = static_cast<std::int32_t>(raw);
        return true;
    }
    // The view points into the bytes that are read.
    bool takeBlock(std::uint32_t length, ByteView& block)
    {
        if (m_bytes.size() - m_position < length)
            return false;
        block = m_bytes.subspan(m_position, length);
        m_position += length;
        return true;
    }

    std::uint32_t position() const { return static_cast<std::uint32_t>(m_position); }
    std::uint32_t remaining() const { return static_cast<std::uint32_t>(m_bytes.size() - m_position); }

private:
    ByteView m_bytes;
    std::size_t m_position = 0;
};

} // namespace tessera
