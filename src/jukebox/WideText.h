#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessera::jukebox {

// None when the bytes are not UTF-8.
std::optional<std::wstring> fromUtf8(std::string_view utf8);
std::string toUtf8(std::wstring_view wide);
// For windows: what has no place in the code page becomes '?'.
std::string codePageText(std::wstring_view wide);
std::wstring fromCodePage(const std::string& text);
bool isUtf8(std::string_view bytes);

// Every unit in lower case, for comparisons that ignore case.
std::wstring folded(std::wstring_view wide);

// Pieces between blanks, tabs and line breaks; empty ones are dropped.
std::vector<std::wstring> words(std::wstring_view text);

} // namespace tessera::jukebox
