#include "base/Files.h"

#include <array>

namespace tessera {

BufferedWriter::BufferedWriter(OutputFile& file, std::size_t capacity, std::uint64_t most)
    : m_file(file), m_buffer(std::max<std::size_t>(capacity, 16)), m_room(most)
{
}

void BufferedWriter::pass(ByteView bytes)
{
    m_tooLarge = bytes.size() > m_room;
    m_good = !m_tooLarge && m_file.write(bytes);
    m_room -= m_good ? bytes.size() : 0;
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
            pass(bytes.first(taken));
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
        pass(ByteView(m_buffer).first(m_used));
    m_used = 0;
    return m_good;
}

} // namespace tessera
