#include "base/Bytes.h"

#include <cstring>

namespace tessera {

bool ByteReader::take(std::uint32_t& value)
{
    if (remaining() < sizeof value)
        return false;
    const std::uint8_t* at = m_bytes.data() + m_position;
    value = static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
            static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
    m_position += sizeof value;
    return true;
}

bool ByteReader::take(std::int32_t& value)
{
    std::uint32_t raw = 0;
    if (!take(raw))
        return false;
    value = static_cast<std::int32_t>(raw);
    return true;
}

bool ByteReader::takeBlock(std::uint32_t length, ByteView& block)
{
    if (remaining() < length)
        return false;
    block = m_bytes.subspan(m_position, length);
    m_position += length;
    return true;
}

} // namespace tessera
