#pragma once

#include "library/Database.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessera {

// "*" any run, "?" any one character; both texts already upper case. False when it takes more than
// a million steps, as only texts made for that do.
bool matchesWildcard(std::string_view text, std::string_view pattern);

struct Exclusions {
    std::vector<std::string> artists; // upper-case pattern lists; entry i belongs to albums[i]
    std::vector<std::string> albums;
};
Exclusions parseExclusions(std::string_view bytes); // of a file

struct FilterSettings {
    std::string excludedTypes;
    std::string exclusionList; // path; empty: none
    bool excludeUnassigned = false;
    std::int32_t minTracksPerAlbum = 1;
};
// Removes the rejected albums with their tracks, and artists left without albums.
void applyFilters(Library& library, const FilterSettings& settings, JobContext& context);

} // namespace tessera
