#include "jukebox/WideText.h"

#include "base/Text.h"

#include <windows.h>

#include <algorithm>

namespace tessera::jukebox {

namespace {

int wideLength(std::string_view utf8)
{
    return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), static_cast<int>(utf8.size()),
                               nullptr, 0);
}

bool isAscii(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace

std::optional<std::wstring> fromUtf8(std::string_view utf8)
{
    if (isAscii(utf8)) {
        return std::wstring(utf8.begin(), utf8.end());
    }
    const int length = wideLength(utf8);
    if (length <= 0) {
        return std::nullopt;
    }
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), length);
    return wide;
}

std::string toUtf8(std::wstring_view wide)
{
    if (wide.empty()) {
        return {};
    }
    const int units = static_cast<int>(wide.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(std::max(length, 0)), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

std::wstring fromCodePage(const std::string& text)
{
    const std::u16string wide = toWide(text);
    return {wide.begin(), wide.end()};
}

std::string codePageText(std::wstring_view wide)
{
    return toCodePage({reinterpret_cast<const char16_t*>(wide.data()), wide.size()});
}

bool isUtf8(std::string_view bytes)
{
    return isAscii(bytes) || wideLength(bytes) > 0;
}

std::wstring folded(std::wstring_view wide)
{
    const auto* units = reinterpret_cast<const char16_t*>(wide.data());
    const std::u16string lower = foldWide({units, wide.size()});
    return {lower.begin(), lower.end()};
}

std::vector<std::wstring> words(std::wstring_view text)
{
    constexpr std::wstring_view kBlanks = L" \t\r\n";
    std::vector<std::wstring> pieces;
    std::size_t begin = text.find_first_not_of(kBlanks);
    while (begin != std::wstring_view::npos) {
        const std::size_t end = std::min(text.find_first_of(kBlanks, begin), text.size());
        pieces.emplace_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(kBlanks, end);
    }
    return pieces;
}

} // namespace tessera::jukebox
