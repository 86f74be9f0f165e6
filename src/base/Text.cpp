#include "base/Text.h"

#include "base/CodePage.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace tessera {

namespace {

unsigned char byteAt(std::string_view text, std::size_t position)
{
    return static_cast<unsigned char>(text[position]);
}

std::size_t lengthAt(const CodePage& page, std::string_view text, std::size_t position)
{
    return page.lead[byteAt(text, position)] && position + 1 < text.size() && text[position + 1] != 0 ? 2 : 1;
}

std::uint16_t pairAt(std::string_view text, std::size_t position)
{
    return static_cast<std::uint16_t>(byteAt(text, position) << 8 | byteAt(text, position + 1));
}

// Single bytes and pairs as one number that orders single bytes first.
struct Folded {
    std::uint16_t character;
    std::size_t length;
};

Folded upperAt(const CodePage& page, std::string_view text, std::size_t position)
{
    if (page.doubleByte && lengthAt(page, text, position) == 2)
        return {foldPair(pairAt(text, position), true), 2};
    return {page.upper[byteAt(text, position)], 1};
}

std::string fold(std::string_view text, bool upper)
{
    const CodePage& page = codePage();
    const auto& table = upper ? page.upper : page.lower;
    std::string result(text);
    for (std::size_t i = 0; i < result.size();) {
        if (page.doubleByte && lengthAt(page, result, i) == 2) {
            const std::uint16_t pair = foldPair(pairAt(result, i), upper);
            result[i] = static_cast<char>(pair >> 8);
            result[i + 1] = static_cast<char>(pair & 0xFF);
            i += 2;
        } else {
            result[i] = static_cast<char>(table[byteAt(result, i)]);
            ++i;
        }
    }
    return result;
}

char16_t lowerUnit(char16_t unit)
{
    if (unit < 0x80)
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    return foldWideUnit(unit);
}

} // namespace

std::string toUpper(std::string_view text)
{
    return fold(text, true);
}

std::string toLower(std::string_view text)
{
    return fold(text, false);
}

bool equalNoCase(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && compareNoCase(left, right) == 0;
}

int compareNoCase(std::string_view left, std::string_view right)
{
    const CodePage& page = codePage();
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < left.size() && j < right.size()) {
        const Folded a = upperAt(page, left, i);
        const Folded b = upperAt(page, right, j);
        if (a.character != b.character)
            return a.character < b.character ? -1 : 1;
        i += a.length;
        j += b.length;
    }
    if (i < left.size())
        return 1;
    return j < right.size() ? -1 : 0;
}

int compareWideNoCase(std::u16string_view left, std::u16string_view right)
{
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (left[i] == right[i])
            continue;
        const char16_t a = lowerUnit(left[i]);
        const char16_t b = lowerUnit(right[i]);
        if (a != b)
            return a < b ? -1 : 1;
    }
    if (left.size() == right.size())
        return 0;
    return left.size() < right.size() ? -1 : 1;
}

std::u16string foldWide(std::u16string_view text)
{
    std::u16string result(text);
    std::ranges::transform(result, result.begin(), lowerUnit);
    return result;
}

std::optional<std::string> toCodePageExactly(std::u16string_view wide)
{
    std::string text = toCodePage(wide);
    // Every code page gives ASCII back unchanged.
    const bool ascii = std::ranges::all_of(wide, [](char16_t unit) { return unit < 0x80; });
    return ascii || toWide(text) == wide ? std::optional(std::move(text)) : std::nullopt;
}

namespace {

// The character at the front, which is taken off; U+FFFD for what is none.
char32_t takeUtf8(std::string_view& text)
{
    constexpr char32_t kNone = 0xFFFD;
    const auto lead = byteAt(text, 0);
    const std::size_t more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    text.remove_prefix(1);
    if (more == 0)
        return lead;
    if (lead < 0xC0 || lead > 0xF4)
        return kNone;
    char32_t character = lead & (0x3FU >> more);
    for (std::size_t i = 0; i < more; ++i) {
        if (text.empty() || (byteAt(text, 0) & 0xC0U) != 0x80)
            return kNone;
        character = character << 6U | (byteAt(text, 0) & 0x3FU);
        text.remove_prefix(1);
    }
    return character;
}

std::u16string fromUtf8(std::string_view text)
{
    std::u16string wide;
    while (!text.empty()) {
        const char32_t character = takeUtf8(text);
        if (character < 0x10000) {
            wide += static_cast<char16_t>(character);
        } else {
            wide += static_cast<char16_t>(0xD7C0 + (character >> 10U));
            wide += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
        }
    }
    return wide;
}

std::u16string fromUtf16(std::string_view text, std::size_t lowByte)
{
    std::u16string wide;
    for (; text.size() >= 2; text.remove_prefix(2))
        wide += static_cast<char16_t>(byteAt(text, lowByte) | byteAt(text, 1 - lowByte) << 8);
    return wide;
}

} // namespace

std::string textOfFile(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return toCodePage(fromUtf8(bytes.substr(3)));
    if (bytes.starts_with("\xFF\xFE"))
        return toCodePage(fromUtf16(bytes.substr(2), 0));
    if (bytes.starts_with("\xFE\xFF"))
        return toCodePage(fromUtf16(bytes.substr(2), 1));
    return std::string(bytes);
}

std::size_t characterLength(std::string_view text, std::size_t position)
{
    return lengthAt(codePage(), text, position);
}

bool hasControlCharacter(std::string_view text)
{
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string onOneLine(std::string text)
{
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
    return text;
}

std::size_t findLastBackslash(std::string_view text)
{
    const CodePage& page = codePage();
    if (!page.doubleByte)
        return text.rfind('\\');
    std::size_t last = std::string_view::npos;
    for (std::size_t i = 0; i < text.size(); i += lengthAt(page, text, i)) {
        if (text[i] == '\\')
            last = i;
    }
    return last;
}

std::vector<std::string> split(std::string_view text, std::string_view delimiters)
{
    const CodePage& page = codePage();
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size();) {
        const bool atEnd = i == text.size();
        const std::size_t length = atEnd ? 1 : lengthAt(page, text, i);
        if (atEnd || (length == 1 && delimiters.find(text[i]) != std::string_view::npos)) {
            if (i > start)
                pieces.emplace_back(text.substr(start, i - start));
            start = i + 1;
        }
        i += length;
    }
    return pieces;
}

std::string join(const std::vector<std::string>& pieces, std::string_view separator)
{
    std::string result;
    for (const std::string& piece : pieces) {
        if (&piece != pieces.data())
            result += separator;
        result += piece;
    }
    return result;
}

std::string_view trimRight(std::string_view text)
{
    const std::size_t last = text.find_last_not_of(" \t\r\n\v\f");
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

std::string shownName(std::string_view name)
{
    constexpr std::size_t kMost = 260;
    std::string shown;
    for (std::size_t at = 0, length = 0; at < name.size(); at += length) {
        length = characterLength(name, at);
        if (at + length > kMost)
            return onOneLine(std::move(shown)) + "...";
        shown += name.substr(at, length);
    }
    return onOneLine(std::move(shown));
}

std::string format(const char* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    std::string result = formatList(pattern, arguments);
    va_end(arguments);
    return result;
}

std::string formatList(const char* pattern, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    char shortText[256];
    const int length = std::vsnprintf(shortText, sizeof shortText, pattern, arguments);
    std::string result;
    if (length > 0 && static_cast<std::size_t>(length) < sizeof shortText) {
        result.assign(shortText, static_cast<std::size_t>(length));
    } else if (length > 0) {
        result.resize(static_cast<std::size_t>(length));
        std::vsnprintf(result.data(), result.size() + 1, pattern, again);
    }
    va_end(again);
    return result;
}

} // namespace tessera
