#pragma once

#include <cstdarg>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessera {

// Text is 8-bit in the system code page. Wide text appears only where the host or a system
// interface hands it over. A trail byte is never folded, split at or taken for a backslash.

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);

// Case-blind comparison of whole characters in the code page.
bool equalNoCase(std::string_view left, std::string_view right);
int compareNoCase(std::string_view left, std::string_view right);

// Ordinal comparison of wide text with every unit folded to lower case; below, at or above 0.
int compareWideNoCase(std::u16string_view left, std::u16string_view right);
std::u16string foldWide(std::u16string_view text);

// What has no exact place in the code page becomes the system's look-alike, or '?' where it has none.
std::string toCodePage(std::u16string_view wide);
// None for what does not come back unchanged: a look-alike in a file's name would be another file.
std::optional<std::string> toCodePageExactly(std::u16string_view wide);
std::u16string toWide(std::string_view text);

// The content of a text file in the code page: what begins with the mark of UTF-8 or UTF-16 is converted, the
// mark left out; all else is taken as it is.
std::string textOfFile(std::string_view bytes);

// Bytes of the character at the position: 2 for a lead byte that has a trail byte, else 1.
std::size_t characterLength(std::string_view text, std::size_t position);
// Below the blank: no file and no folder of the system has one in its name.
bool hasControlCharacter(std::string_view text);
// With a blank for each of them, and for the delete character: one line, whatever a tag holds.
std::string onOneLine(std::string text);
// Position of the last backslash that is a character of its own, or npos.
std::size_t findLastBackslash(std::string_view text);

// Pieces between any of the delimiters (single-byte characters), in order; empty ones are dropped.
std::vector<std::string> split(std::string_view text, std::string_view delimiters);
std::string join(const std::vector<std::string>& pieces, std::string_view separator);
std::string_view trimRight(std::string_view text);

// A name as boxes and lists of files may show it, whoever wrote it: control characters are blanks, and after
// 260 bytes there is "...".
std::string shownName(std::string_view name);

[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...);
std::string formatList(const char* pattern, std::va_list arguments);

} // namespace tessera
