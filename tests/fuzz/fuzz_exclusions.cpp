#include "base/Text.h"
#include "library/Filters.h"
#include "library/FirstNames.h"

#include <cstdint>
#include <cstdlib>

using namespace tessera;

// An exclusions file and a first-names file of the same bytes; a list matches its own pieces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Exclusions lists = parseExclusions(text);
    if (lists.artists.size() != lists.albums.size())
        std::abort();
    for (std::size_t i = 0; i < lists.artists.size() && i < 50; ++i) {
        for (const std::string& piece : split(lists.artists[i], ", ;")) {
            if (!matchesWildcard(piece, piece))
                std::abort();
            matchesWildcard(lists.albums[i], piece);
        }
    }
    for (const std::string& name : parseFirstNames(text)) {
        if (name.empty() || name != toUpper(name))
            std::abort();
    }
    return 0;
}
