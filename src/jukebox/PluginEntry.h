#pragma once

#include <optional>
#include <string>
#include <windows.h>

namespace tessera::jukebox {

// What a plug-in registers with the player.
struct PluginEntry {
    std::string name;
    CLSID classId{};
    std::string server; // path of the module; empty when the class itself is not registered
};

inline constexpr const char* kPluginsPath =
    "Software\\J. River\\Music Exchange\\1.0\\Media Jukebox\\Plugins\\Interface";

// The entry of that name, else the first that has a class; none when no plug-in is registered.
std::optional<PluginEntry> findPlugin(const std::string& preferred = "Tessera 2.0",
                                      const std::string& path = kPluginsPath);

} // namespace tessera::jukebox
