#pragma once

#include <string>
#include <string_view>

namespace tessera {

// Expanded texts stay below this length: a step that would exceed it leaves its token in place.
inline constexpr std::size_t kLongestExpansion = 1024 * 1024;

// True when the text holds the token, ignoring case. Tokens begin with "<".
bool containsToken(std::string_view text, std::string_view token);
// Replaces every occurrence, ignoring case, also those that a value completes with what stands around
// it. A value that holds the token itself is not searched.
void replaceToken(std::string_view token, std::string_view value, std::string& text);

} // namespace tessera
