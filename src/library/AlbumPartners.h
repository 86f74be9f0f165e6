#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tessera {

// By what an album is known again in another library.
struct AlbumIdentity {
    std::string_view title; // the host's
    std::string_view artist;
    std::string_view path;
    std::vector<std::string_view> files;
    bool counts = true; // false: only keeps its place among albums of the same name
};

inline constexpr std::uint32_t kNoPartner = 0xFFFFFFFF;

// For each of our albums the index of one of theirs that counts, or kNoPartner; no index twice. First
// come albums of the same title, artist and path, then those that share the most files; of equals the
// first. Texts are compared case-blind.
std::vector<std::uint32_t> findPartners(std::span<const AlbumIdentity> ours,
                                        std::span<const AlbumIdentity> theirs);

} // namespace tessera
