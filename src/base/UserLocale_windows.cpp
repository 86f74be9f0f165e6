#include "base/UserLocale_windows.h"

#include "base/Text.h"

#include <array>

namespace tessera {

namespace {

using Buffer = std::array<wchar_t, 128>;
constexpr int kSize = static_cast<int>(Buffer().size());

// The length counts the terminator; 0 is a refusal.
std::string textOf(const Buffer& buffer, int length)
{
    if (length <= 0)
        return {};
    return toCodePage(
        {reinterpret_cast<const char16_t*>(buffer.data()), static_cast<std::size_t>(length - 1)});
}

} // namespace

std::string userLocaleText(LCTYPE type)
{
    Buffer buffer{};
    return textOf(buffer, GetLocaleInfoW(LOCALE_USER_DEFAULT, type, buffer.data(), kSize));
}

std::string userDateText(DWORD flags, const SYSTEMTIME& day)
{
    Buffer buffer{};
    return textOf(buffer, GetDateFormatW(LOCALE_USER_DEFAULT, flags, &day, nullptr, buffer.data(), kSize));
}

} // namespace tessera
