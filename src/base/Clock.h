#pragma once

#include <cstdint>

namespace tessera {

// Milliseconds since some start, wrapping around; compare differences only.
std::uint32_t tickCount();

} // namespace tessera
