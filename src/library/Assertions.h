#pragma once

// Where assertions of this room say they come from: names and lines that users report, which stay
// the same when the code moves.
namespace tessera::assertions {

inline constexpr char kUnit[] = "Database";

inline constexpr unsigned long kMissingFile = 241;
inline constexpr unsigned long kShortRead = 649;
inline constexpr unsigned long kZeroTrackId = 712;
inline constexpr unsigned long kUnknownTrack = 715;
inline constexpr unsigned long kUnknownAlbum = 758;
inline constexpr unsigned long kUnknownImageAlbum = 793;
inline constexpr unsigned long kImageMemory = 801;

} // namespace tessera::assertions
