#include "base/Files.h"

#include <array>

namespace tessera {

BufferedWriter::BufferedWriter(OutputFile& file, std::size_t capacity)
    : m_file(file), m_buffer(std::max<std::size_t>(capacity, 16))
{
}

void BufferedWriter::spill(std::uint32_t value)
{
    std::array<std::uint8_t, sizeof value> bytes{};
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
    spill(bytes);
}

void BufferedWriter::spill(ByteView bytes)
{
    while (m_good && !bytes.empty()) {
        std::size_t taken = 0;
        if (m_used == m_buffer.size()) {
            flush();
        } else if (m_used == 0 && bytes.size() >= m_buffer.size()) {
            taken = bytes.size() - bytes.size() % m_buffer.size();
            m_good = m_file.write(bytes.first(taken));
            m_position += static_cast<std::uint32_t>(taken);
        } else {
            taken = std::min(bytes.size(), m_buffer.size() - m_used);
            append(bytes.first(taken));
        }
        bytes = bytes.subspan(taken);
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
