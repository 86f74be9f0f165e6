#pragma once

#include <cstdint>
#include <string>

namespace tessera {

enum class DurationStyle { Clock = 0, Long = 1 };

// Clock: "00:36:38", hours not limited to two digits. Long: "1h 2m 3s ", parts that are 0 left out.
std::string formatDuration(std::uint32_t seconds, DurationStyle style);

} // namespace tessera
