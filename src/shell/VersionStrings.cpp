#include "shell/VersionStrings.h"

#include "system/Module.h"

namespace tessera {

std::size_t getVersionStrings(std::span<const std::string> names, std::vector<std::string>& texts)
{
    for (const std::string& name : names) {
        texts.push_back(versionString(name));
    }
    return names.size();
}

} // namespace tessera
