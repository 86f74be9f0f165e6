#include "base/Memory.h"

#include <cstring>
#include <new>

namespace tessera {

MemoryBlock MemoryBlock::copyOf(ByteView bytes)
{
    MemoryBlock block;
    if (bytes.empty())
        return block;
    block.m_handle = ::operator new(bytes.size(), std::nothrow);
    if (block.m_handle == nullptr)
        return block;
    std::memcpy(block.m_handle, bytes.data(), bytes.size());
    block.m_size = static_cast<std::uint32_t>(bytes.size());
    return block;
}

std::vector<std::uint8_t> MemoryBlock::bytes() const
{
    const auto* memory = static_cast<const std::uint8_t*>(m_handle);
    return {memory, memory + m_size};
}

void MemoryBlock::reset()
{
    ::operator delete(m_handle);
    m_handle = nullptr;
    m_size = 0;
}

} // namespace tessera
