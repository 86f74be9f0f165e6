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

    bool take(std::uint32_t& value);
    bool take(std::int32_t& value);
    // The view points into the bytes that are read.
    bool takeBlock(std::uint32_t length, ByteView& block);

    std::uint32_t position() const { return static_cast<std::uint32_t>(m_position); }
    std::uint32_t remaining() const { return static_cast<std::uint32_t>(m_bytes.size() - m_position); }

private:
    ByteView m_bytes;
    std::size_t m_position = 0;
};

} // namespace tessera
