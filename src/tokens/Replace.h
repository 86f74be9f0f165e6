#pragma once

#include <string>
#include <string_view>

namespace tessera {

// Bytes of all values that one expansion takes in, values inside values included. It bounds the length
// of the text and the time, whatever tags and databases hold.
inline constexpr std::size_t kRoomForValues = std::size_t{64} * 1024;

// True when the text holds the token, ignoring case. Tokens are ASCII: "<", a name, ">".
bool containsToken(std::string_view text, std::string_view token);
// Replaces the first occurrence, ignoring case, again and again until there is none, also those that a
// value completes with what stands around it. A value that holds the token itself is not searched.
// Each value takes its bytes of the room; the first that does not fit ends it, its token stays.
void replaceToken(std::string_view token, std::string_view value, std::string& text, std::size_t& room);

} // namespace tessera
