#pragma once

#include "jukebox/Library.h"

namespace tessera::jukebox {

// What the player tells of a track's file where the library file says nothing. Texts are empty
// when the file is not there.

std::wstring fileSizeText(const std::wstring& path); // "22,714kb"
std::wstring fileDateText(const std::wstring& path); // the user's long date of the last change
std::wstring durationText(std::int32_t seconds);     // "m:ss", "h:mm:ss" from an hour on

// Copies a file to a new temporary one with the same extension and answers its name; empty when
// that fails. The caller deletes the file.
std::wstring copyToTemporaryFile(const std::wstring& path);

// The whole content; none when it cannot be read.
std::optional<std::string> readWholeFile(const std::wstring& path);
bool writeWholeFile(const std::wstring& path, std::string_view content);

} // namespace tessera::jukebox
