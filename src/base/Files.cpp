#include "base/Files.h"

namespace tessera {

BufferedWriter::BufferedWriter(OutputFile& file, std::size_t capacity)
    : m_file(file), m_buffer(std::max<std::size_t>(capacity, 16))
{
}

void BufferedWriter::putBlock(ByteView bytes)
{
    if (!reserve(std::min(bytes.size(), m_buffer.size())))
        return;
    if (bytes.size() < m_buffer.size()) {
        append(bytes);
        return;
    }
    m_good = m_file.write(bytes);
    m_position += static_cast<std::uint32_t>(bytes.size());
}

bool BufferedWriter::flush()
{
    if (m_good && m_used > 0)
        m_good = m_file.write(ByteView(m_buffer).first(m_used));
    m_used = 0;
    return m_good;
}

} // namespace tessera
