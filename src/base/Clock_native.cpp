#include "base/Clock.h"

#include <chrono>

namespace tessera {

std::uint32_t tickCount()
{
    using namespace std::chrono;
    return static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace tessera
