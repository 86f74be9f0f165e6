#pragma once

#include <optional>
#include <string>
#include <windows.h>

namespace tessera {

// What the host keeps in its own part of the registry; read, never written.

// The host's cover-art folder, without its last backslash.
std::string hostArtworkFolder();
// The font of the host's lists; none when it is missing or is no whole record.
std::optional<LOGFONTA> hostListFont();

} // namespace tessera
