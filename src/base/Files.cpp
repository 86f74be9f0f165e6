#include "base/Files.h"

namespace tessera {

BufferedWriter::BufferedWriter(OutputFile& file, std::size_t capacity) : m_file(file), m_capacity(capacity)
{
    m_buffer.reserve(capacity);
}

void BufferedWriter::put(std::uint32_t value)
{
    const std::uint8_t bytes[] = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                                  static_cast<std::uint8_t>(value >> 16),
                                  static_cast<std::uint8_t>(value >> 24)};
    putBlock(bytes);
}

void BufferedWriter::putText(std::string_view text)
{
    put(static_cast<std::uint32_t>(text.size()));
    putBlock({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void BufferedWriter::putBlock(ByteView bytes)
{
    if (!m_good)
        return;
    m_position += static_cast<std::uint32_t>(bytes.size());
    if (m_buffer.size() + bytes.size() > m_capacity && !flush())
        return;
    if (bytes.size() >= m_capacity)
        m_good = m_file.write(bytes);
    else
        m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
}

bool BufferedWriter::flush()
{
    if (m_good && !m_buffer.empty())
        m_good = m_file.write(m_buffer);
    m_buffer.clear();
    return m_good;
}

} // namespace tessera
