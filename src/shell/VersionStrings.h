#pragma once

#include <span>
#include <string>
#include <vector>

namespace tessera {

// Appends the text of each name in the module's version resource, "" for a missing one; answers
// how many were appended.
std::size_t getVersionStrings(std::span<const std::string> names, std::vector<std::string>& texts);

} // namespace tessera
