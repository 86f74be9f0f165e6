#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

namespace tessera::jukebox {

// The colour of the dark skin for a section ("Tree", "List", "Frame") and a key, ignoring case; none
// when the skin has no such colour.
std::optional<COLORREF> skinColour(std::wstring_view section, std::wstring_view key);

// What the player itself is painted with.
struct Palette {
    COLORREF face;
    COLORREF faceText;
    COLORREF faceDim; // secondary text, and what is to be seen of a progress bar that is empty
    COLORREF accent;
    COLORREF list;
    COLORREF listText;
    COLORREF listCurrent; // the row that plays
};
Palette palette(bool skinned);

// The second colour laid over the first with that much weight.
COLORREF mixed(COLORREF first, COLORREF second, int percent);

} // namespace tessera::jukebox
