#include "tokens/Replace.h"

#include "base/Text.h"

#include <cstdint>

namespace tessera {

namespace {

// As deep as tokens inside tokens can be in the working buffer of a template.
constexpr int kDeepestNesting = 4096;

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

bool fits(std::string_view token, std::string_view value, std::string_view text)
{
    const std::uint64_t growth = std::uint64_t{countTokens(text, token)} * value.size();
    return text.size() + growth <= kLongestExpansion;
}

} // namespace

bool containsToken(std::string_view text, std::string_view token)
{
    return findToken(text, token, 0) != std::string_view::npos;
}

void replaceToken(std::string_view token, std::string_view value, std::string& text)
{
    const bool holdsItself = containsToken(value, token);
    for (int pass = 0; pass < kDeepestNesting && fits(token, value, text); ++pass) {
        replaceNoCase(token, value, text);
        if (holdsItself || !containsToken(text, token))
            return;
    }
}

} // namespace tessera
