#pragma once

#include <windows.h>

namespace tessera {

// Writes the host's plug-in entry (in silence when that is refused), then the class and the type
// library; answers the latter's result.
HRESULT registerServer();
// Removes the class and the type library; the host's plug-in entry stays.
HRESULT unregisterServer();

} // namespace tessera
