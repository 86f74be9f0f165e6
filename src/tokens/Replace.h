#pragma once

#include <string>
#include <string_view>

namespace tessera {

// Expanded texts stay below this length: a step that would exceed it leaves its token in place.
inline constexpr std::size_t kLongestExpansion = 1024 * 1024;

// True when the text holds the token, ignoring case. Tokens begin with "<".
bool containsToken(std::string_view text, std::string_view token);
// Replaces every occurrence, ignoring case. A value is not searched for the token that it replaces.
void replaceToken(std::string_view token, std::string_view value, std::string& text);

} // namespace tessera
