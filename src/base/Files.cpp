#include "base/Files.h"

#include <algorithm>

namespace tessera {

BufferedWriter::BufferedWriter(OutputFile& file, std::size_t capacity) : m_file(file), m_buffer(capacity) {}

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
    if (bytes.size() > m_buffer.size() - m_used && !flush())
        return;
    if (bytes.size() >= m_buffer.size()) {
        m_good = m_file.write(bytes);
    } else {
        std::ranges::copy(bytes, m_buffer.begin() + static_cast<std::ptrdiff_t>(m_used));
        m_used += bytes.size();
    }
}

bool BufferedWriter::flush()
{
    if (m_good && m_used > 0)
        m_good = m_file.write(ByteView(m_buffer).first(m_used));
    m_used = 0;
    return m_good;
}

} // namespace tessera
