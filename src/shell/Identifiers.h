#pragma once

#include <windows.h>

namespace tessera {

// The plug-in's own identifiers; the type library's source names the same.
inline constexpr GUID kInterfaceClass = {
    0x672EDC8D, 0xCF8D, 0x4755, {0xB5, 0xA5, 0x8B, 0x10, 0xA6, 0xA8, 0x64, 0x7E}};
inline constexpr GUID kTypeLibrary = {
    0x10BE5D0F, 0x41B2, 0x4CDE, {0x80, 0xC8, 0xC8, 0x9F, 0xA9, 0xE1, 0x6F, 0x19}};
inline constexpr GUID kIInterface = {
    0x500C6A69, 0x0E3E, 0x4B23, {0xA9, 0xA8, 0xBE, 0x7D, 0x02, 0x97, 0x53, 0x37}};

inline constexpr WORD kTypeLibraryMajor = 1;
inline constexpr WORD kTypeLibraryMinor = 0;

// Recompose on resize, no links inside, inside out, activate when visible, client site first: what
// is registered and what IOleObject answers.
inline constexpr DWORD kMiscStatus = 131473;

} // namespace tessera
