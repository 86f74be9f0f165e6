#include "base/Text.h"
#include "tokens/TokenParser.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace tessera {

namespace {

constexpr std::size_t kWorkingBuffer = 8192; // with the terminator

// What fits the working buffer, up to a NUL; a character is never cut in two.
std::string workingCopy(std::string_view text)
{
    text = text.substr(0, text.find('\0'));
    if (text.size() < kWorkingBuffer)
        return std::string(text);
    std::size_t length = 0;
    for (std::size_t next = 0; next < kWorkingBuffer; next += characterLength(text, next))
        length = next;
    return std::string(text.substr(0, length));
}

// The number at the position, with the blanks and the sign that strtol allows; moves behind it.
char takeNumber(const std::string& text, std::size_t& position, int base)
{
    const char* const start = text.c_str() + position;
    char* end = nullptr;
    const long long number = std::strtoll(start, &end, base);
    position += static_cast<std::size_t>(end - start);
    return static_cast<char>(std::clamp<long long>(number, INT32_MIN, INT32_MAX) & 0xFF);
}

// What the character behind a backslash stands for.
char escaped(const std::string& text, std::size_t& position)
{
    const char selector = text[position++];
    switch (selector) {
    case 'a':
        return '\a';
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'v':
        return '\v';
    case '0':
        return takeNumber(text, position, 8);
    case 'x':
        return takeNumber(text, position, 16);
    default:
        return selector;
    }
}

} // namespace

std::string processTemplateEscapes(std::string_view text)
{
    const std::string source = workingCopy(text);
    std::string result;
    for (std::size_t i = 0; i < source.size();) {
        const bool isEscape = source[i] == '\\';
        if (isEscape && ++i == source.size())
            break; // nothing behind the last backslash
        const std::size_t length = characterLength(source, i);
        if (!isEscape || length > 1) {
            result.append(source, i, length);
            i += length;
            continue;
        }
        const char character = escaped(source, i);
        if (character == 0)
            break; // a NUL ends the text
        result += character;
    }
    return result;
}

} // namespace tessera
