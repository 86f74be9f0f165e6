#pragma once

#include <cstdint>

// The numbers of the .ts2 file, for reader and writer alike; docs/format.md has the layout.
namespace tessera::ts2 {

inline constexpr std::uint32_t kFirstMagic = 90125;
inline constexpr std::uint32_t kSecondMagic = 696969;
inline constexpr std::uint32_t kVersion = 2;

// Database flags; bits without a name are carried unchanged.
inline constexpr std::uint32_t kHasImages = 1;

// A track's album id when it belongs to none.
inline constexpr std::int32_t kNoAlbum = -1;

// Artist flags.
inline constexpr std::uint32_t kNameOnce = 1;

// A load needs the whole file in one block of memory, which no 32-bit program has larger.
inline constexpr std::uint64_t kLargestFile = 0x7FFFFFFF;

// Bytes of the shortest record of each kind: how many records a file can hold at most.
inline constexpr std::uint32_t kShortestTrack = 4 * 4;
inline constexpr std::uint32_t kShortestAlbum = 15 * 4;
inline constexpr std::uint32_t kShortestArtist = 5 * 4;

} // namespace tessera::ts2
