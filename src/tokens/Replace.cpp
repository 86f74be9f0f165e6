#include "tokens/Replace.h"

#include "base/Text.h"

#include <cstdint>

namespace tessera {

namespace {

std::size_t findToken(std::string_view text, std::string_view token, std::size_t from)
{
    // "<" is no trail byte in any code page, so a match can only begin at a character.
    for (std::size_t i = text.find('<', from); i != std::string_view::npos; i = text.find('<', i + 1)) {
        if (equalNoCase(text.substr(i, token.size()), token))
            return i;
    }
    return std::string_view::npos;
}

std::size_t countTokens(std::string_view text, std::string_view token)
{
    std::size_t count = 0;
    for (std::size_t i = findToken(text, token, 0); i != std::string_view::npos;
         i = findToken(text, token, i + token.size()))
        ++count;
    return count;
}

} // namespace

bool containsToken(std::string_view text, std::string_view token)
{
    return findToken(text, token, 0) != std::string_view::npos;
}

void replaceToken(std::string_view token, std::string_view value, std::string& text)
{
    const std::uint64_t growth = std::uint64_t{countTokens(text, token)} * value.size();
    if (text.size() + growth <= kLongestExpansion)
        replaceNoCase(token, value, text);
}

} // namespace tessera
