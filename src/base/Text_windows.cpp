#include "base/CodePage.h"
#include "base/Text.h"

#include <windows.h>

namespace tessera {

namespace {

unsigned char foldByte(unsigned char byte, bool upper)
{
    char folded = static_cast<char>(byte);
    if (upper)
        CharUpperBuffA(&folded, 1);
    else
        CharLowerBuffA(&folded, 1);
    // A letter whose other case is outside the code page has none there.
    return folded == '?' ? byte : static_cast<unsigned char>(folded);
}

CodePage makeCodePage()
{
    // In UTF-8 a single byte above ASCII is no character.
    const unsigned folded = GetACP() == CP_UTF8 ? 0x80 : 0x100;
    CodePage page;
    for (unsigned i = 0; i < 256; ++i) {
        const auto byte = static_cast<unsigned char>(i);
        page.lead[i] = IsDBCSLeadByte(byte) != FALSE;
        page.doubleByte = page.doubleByte || page.lead[i];
        const bool folds = i != 0 && i < folded && !page.lead[i];
        page.upper[i] = folds ? foldByte(byte, true) : byte;
        page.lower[i] = folds ? foldByte(byte, false) : byte;
    }
    return page;
}

} // namespace

const CodePage& codePage()
{
    static const CodePage page = makeCodePage();
    return page;
}

std::uint16_t foldPair(std::uint16_t pair, bool toUpper)
{
    char bytes[2] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
    if (toUpper)
        CharUpperBuffA(bytes, 2);
    else
        CharLowerBuffA(bytes, 2);
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[0]) << 8 |
                                      static_cast<unsigned char>(bytes[1]));
}

char16_t foldWideUnit(char16_t unit)
{
    auto folded = static_cast<wchar_t>(unit);
    CharLowerBuffW(&folded, 1);
    return static_cast<char16_t>(folded);
}

std::string toCodePage(std::u16string_view wide)
{
    if (wide.empty())
        return {};
    const auto* source = reinterpret_cast<const wchar_t*>(wide.data());
    const int units = static_cast<int>(wide.size());
    std::string text(wide.size() * 2, '\0');
    int length = WideCharToMultiByte(CP_ACP, 0, source, units, text.data(), static_cast<int>(text.size()),
                                     nullptr, nullptr);
    if (length == 0) {
        text.resize(static_cast<std::size_t>(
            WideCharToMultiByte(CP_ACP, 0, source, units, nullptr, 0, nullptr, nullptr)));
        length = WideCharToMultiByte(CP_ACP, 0, source, units, text.data(), static_cast<int>(text.size()),
                                     nullptr, nullptr);
    }
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::u16string toWide(std::string_view text)
{
    if (text.empty())
        return {};
    std::u16string wide(text.size(), u'\0');
    const int length =
        MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                            reinterpret_cast<wchar_t*>(wide.data()), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

} // namespace tessera
