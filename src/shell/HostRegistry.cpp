#include "shell/HostRegistry.h"

#include "base/Text.h"
#include "system/Registry.h"

#include <cstring>

namespace tessera {

namespace {

constexpr const char* kHostKey = "Software\\J. River\\Music Exchange\\1.0\\Media Jukebox";
constexpr const char* kPropertiesKey = "Software\\J. River\\Music Exchange\\1.0\\Media Jukebox\\Properties";
constexpr const char* kDefaultArtworkFolder = "C:\\Program Files\\J River\\Media Jukebox\\Data\\Cover Art";
static_assert(sizeof(LOGFONTA) == 60);

} // namespace

std::string hostArtworkFolder()
{
    const RegistryKey key = RegistryKey::open(HKEY_CURRENT_USER, kPropertiesKey);
    std::string folder = key.text("ImageFileLocation").value_or(kDefaultArtworkFolder);
    if (!folder.empty() && findLastBackslash(folder) == folder.size() - 1) {
        folder.pop_back();
    }
    return folder;
}

std::optional<LOGFONTA> hostListFont()
{
    const RegistryKey key = RegistryKey::open(HKEY_CURRENT_USER, kHostKey);
    const std::optional<StoredValue> stored = key.read("LastFont");
    LOGFONTA font{};
    if (!stored || stored->type != StorageType::Binary || stored->bytes.size() != sizeof font) {
        return std::nullopt;
    }
    std::memcpy(&font, stored->bytes.data(), sizeof font);
    font.lfFaceName[LF_FACESIZE - 1] = '\0';
    return font;
}

} // namespace tessera
