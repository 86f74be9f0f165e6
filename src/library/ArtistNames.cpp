#include "library/ArtistNames.h"

#include "base/Text.h"

namespace tessera {

namespace {

constexpr std::string_view kThe = "THE ";

// The first word goes behind the rest.
std::string moveWord(const std::string& name, std::size_t length)
{
    return name.substr(length + 1) + ", " + name.substr(0, length);
}

} // namespace

std::string filedArtistName(const std::string& name, bool moveThe, const std::set<std::string>& firstNames)
{
    if (!moveThe && firstNames.empty())
        return name;
    const std::string upper = toUpper(name);
    if (moveThe && upper.starts_with(kThe))
        return moveWord(name, kThe.size() - 1);
    const std::size_t blank = upper.find(' ');
    if (blank == 0 || blank == std::string::npos || !firstNames.contains(upper.substr(0, blank)))
        return name;
    return moveWord(name, blank);
}

} // namespace tessera
