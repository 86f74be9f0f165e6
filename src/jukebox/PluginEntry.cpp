#include "jukebox/PluginEntry.h"

#include "base/Text.h"
#include "system/Registry.h"

#include <objbase.h>

namespace tessera::jukebox {

namespace {

std::string serverOf(const std::string& classId)
{
    const RegistryKey key =
        RegistryKey::open(HKEY_CLASSES_ROOT, "CLSID\\" + classId + "\\InprocServer32", KEY_READ);
    return key.text("").value_or("");
}

std::optional<PluginEntry> readEntry(const std::string& path, const std::string& name)
{
    const RegistryKey key = RegistryKey::open(HKEY_CURRENT_USER, path + "\\" + name, KEY_READ);
    const std::optional<std::string> classId = key.text("CLSID");
    PluginEntry entry{name, {}, {}};
    if (!classId) {
        return std::nullopt;
    }
    const std::u16string wide = toWide(*classId);
    if (FAILED(CLSIDFromString(reinterpret_cast<const wchar_t*>(wide.c_str()), &entry.classId))) {
        return std::nullopt;
    }
    entry.server = serverOf(*classId);
    return entry;
}

} // namespace

std::optional<PluginEntry> findPlugin(const std::string& preferred, const std::string& path)
{
    if (const std::optional<PluginEntry> entry = readEntry(path, preferred)) {
        return entry;
    }
    for (const std::string& name : RegistryKey::open(HKEY_CURRENT_USER, path, KEY_READ).subKeys()) {
        if (const std::optional<PluginEntry> entry = readEntry(path, name)) {
            return entry;
        }
    }
    return std::nullopt;
}

} // namespace tessera::jukebox
