#include "base/Durations.h"

#include "base/Text.h"

namespace tessera {

std::string formatDuration(std::uint32_t seconds, DurationStyle style)
{
    const unsigned long parts[] = {seconds / 3600, seconds % 3600 / 60, seconds % 60};
    if (style != DurationStyle::Long)
        return format("%02lu:%02lu:%02lu", parts[0], parts[1], parts[2]);
    static constexpr char kUnits[] = {'h', 'm', 's'};
    std::string text;
    for (int i = 0; i < 3; ++i) {
        if (parts[i] != 0)
            text += format("%lu%c ", parts[i], kUnits[i]);
    }
    return text;
}

} // namespace tessera
