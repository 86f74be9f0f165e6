#pragma once

#include <set>
#include <string>
#include <string_view>

namespace tessera {

// The first names of a file with one name a line, in upper case. Empty lines and lines that begin
// with ";" or "#" are skipped.
std::set<std::string> parseFirstNames(std::string_view bytes);

} // namespace tessera
