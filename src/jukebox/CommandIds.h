#pragma once

#include <windows.h>

namespace tessera::jukebox {

// Commands of menu, buttons and keys.
inline constexpr UINT kPrevious = 101;
inline constexpr UINT kPlay = 102;
inline constexpr UINT kPause = 103;
inline constexpr UINT kStop = 104;
inline constexpr UINT kNext = 105;
inline constexpr UINT kPlayLibrary = 106;
inline constexpr UINT kClearPlaylist = 107;
inline constexpr UINT kExit = 110;
inline constexpr UINT kShowPlugin = 120;
inline constexpr UINT kShowPlaylist = 121;
inline constexpr UINT kSwitchFocus = 122;

// Child windows of the main window.
inline constexpr UINT kTransportId = 201;
inline constexpr UINT kPluginAreaId = 202;
inline constexpr UINT kPlaylistId = 203;
inline constexpr UINT kStatusId = 204;
inline constexpr UINT kPlaylistListId = 205;

} // namespace tessera::jukebox
