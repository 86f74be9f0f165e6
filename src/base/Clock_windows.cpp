#include "base/Clock.h"

#include <windows.h>

namespace tessera {

std::uint32_t tickCount()
{
    return GetTickCount();
}

} // namespace tessera
