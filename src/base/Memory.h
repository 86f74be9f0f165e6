#pragma once

#include "base/Bytes.h"

#include <cstdint>

namespace tessera {

// A movable memory block of the system (an HGLOBAL on Windows), owned.
class MemoryBlock {
public:
    MemoryBlock() = default;
    ~MemoryBlock() { reset(); }
    MemoryBlock(MemoryBlock&& other) noexcept;
    MemoryBlock& operator=(MemoryBlock&& other) noexcept;
    MemoryBlock(const MemoryBlock&) = delete;
    MemoryBlock& operator=(const MemoryBlock&) = delete;

    // A block with a copy of the bytes; an empty one when memory is short.
    static MemoryBlock copyOf(ByteView bytes);

    explicit operator bool() const { return m_handle != nullptr; }
    std::uint32_t size() const { return m_size; }
    std::vector<std::uint8_t> bytes() const;
    void* get() const { return m_handle; }
    // The caller owns the handle from now on.
    void* release();
    void reset();

private:
    void* m_handle = nullptr;
    std::uint32_t m_size = 0;
};

} // namespace tessera
