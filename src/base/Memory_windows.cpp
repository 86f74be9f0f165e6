#include "base/Memory.h"

#include <cstring>
#include <windows.h>

namespace tessera {

MemoryBlock MemoryBlock::copyOf(ByteView bytes)
{
    MemoryBlock block;
    if (bytes.empty())
        return block;
    const HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (handle == nullptr)
        return block;
    block.m_handle = handle;
    void* const memory = GlobalLock(handle);
    if (memory == nullptr) {
        block.reset();
        return block;
    }
    std::memcpy(memory, bytes.data(), bytes.size());
    GlobalUnlock(handle);
    block.m_size = static_cast<std::uint32_t>(bytes.size());
    return block;
}

std::vector<std::uint8_t> MemoryBlock::bytes() const
{
    if (m_handle == nullptr)
        return {};
    const auto* memory = static_cast<const std::uint8_t*>(GlobalLock(m_handle));
    if (memory == nullptr)
        return {};
    const struct Unlock {
        HGLOBAL handle;
        ~Unlock() { GlobalUnlock(handle); }
    } unlock{m_handle};
    return {memory, memory + m_size};
}

void MemoryBlock::reset()
{
    if (m_handle != nullptr)
        GlobalFree(m_handle);
    m_handle = nullptr;
    m_size = 0;
}

} // namespace tessera
