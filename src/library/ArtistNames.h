#pragma once

#include <set>
#include <string>

namespace tessera {

// An artist's name as it is filed: "The Lanterns" as "Lanterns, The" when that is wanted, and
// otherwise "Harlan Voss" as "Voss, Harlan" when the upper-case first names hold HARLAN.
std::string filedArtistName(const std::string& name, bool moveThe, const std::set<std::string>& firstNames);

} // namespace tessera
