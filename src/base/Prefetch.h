#pragma once

#include <cstddef>

namespace tessera {

// Asks the processor for memory that will be read soon. Nothing is read, so any address will do.
// Inlined always, like whatever only prefetches: calls of a function without an effect are dropped.
[[gnu::always_inline]] inline void prefetch(const void* start, std::size_t size)
{
    constexpr std::size_t kLine = 64;
    for (std::size_t at = 0; at < size; at += kLine)
        __builtin_prefetch(static_cast<const char*>(start) + at);
}

} // namespace tessera
