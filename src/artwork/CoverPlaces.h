#pragma once

#include "library/Records.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessera {

// Which files may be opened as covers. A database may come from a stranger, and names and titles inside
// tracks do, too: opening a file on a server tells the server who the user is, and opening a device may
// never end. A server's share is trusted when one of the album's own tracks is there, the host's folder for
// covers, or a search pattern that the user has written.
class CoverPlaces {
public:
    CoverPlaces() = default;
    // Patterns are separated by TABs; what stands in front of the first token counts.
    CoverPlaces(std::string_view hostFolder, std::string_view patterns);

    bool mayOpen(std::string_view path, const Album& album) const;

private:
    void trust(std::string_view path);

    std::vector<std::string> m_shares; // "\\SERVER\SHARE"
};

} // namespace tessera
