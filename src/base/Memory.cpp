#include "base/Memory.h"

#include <utility>

namespace tessera {

MemoryBlock::MemoryBlock(MemoryBlock&& other) noexcept
    : m_handle(std::exchange(other.m_handle, nullptr)), m_size(std::exchange(other.m_size, 0))
{
}

MemoryBlock& MemoryBlock::operator=(MemoryBlock&& other) noexcept
{
    if (this != &other) {
        reset();
        m_handle = std::exchange(other.m_handle, nullptr);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

void* MemoryBlock::release()
{
    m_size = 0;
    return std::exchange(m_handle, nullptr);
}

} // namespace tessera
