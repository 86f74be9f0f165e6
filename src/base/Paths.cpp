#include "base/Paths.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace tessera {
namespace {

std::size_t nextBackslash(std::string_view text, std::size_t from)
{
    std::size_t at = from;
    while (at < text.size() && text[at] != '\\') {
        at += characterLength(text, at);
    }
    return at;
}

// "\\.\", "\\?\" and "\??\" lead past the rules for names.
bool leadsPastTheRules(std::string_view path)
{
    const auto begins = [path](std::string_view start) { return path.starts_with(start); };
    return begins("\\\\.\\") || begins("\\\\?\\") || begins("\\??\\");
}

// Names that mean a device in every folder, whatever stands behind a dot or colon.
bool isDeviceName(std::string_view name)
{
    static constexpr std::array<std::string_view, 6> kNames = {"CON", "PRN",    "AUX",
                                                               "NUL", "CONIN$", "CONOUT$"};
    const std::string plain = toUpper(trimRight(name.substr(0, name.find_first_of(".:"))));
    // Raised digits count, too.
    const bool numbered = plain.size() == 4 && (plain.starts_with("COM") || plain.starts_with("LPT")) &&
                          std::string_view("0123456789\xB9\xB2\xB3").find(plain[3]) != std::string_view::npos;
    return numbered || std::ranges::find(kNames, plain) != kNames.end();
}

} // namespace

std::string withBackslashes(std::string_view path)
{
    std::string text(path);
    for (std::size_t at = 0; at < text.size(); at += characterLength(text, at)) {
        if (text[at] == '/') {
            text[at] = '\\';
        }
    }
    return text;
}

std::string networkShare(std::string_view path)
{
    const std::string text = withBackslashes(path);
    if (!text.starts_with("\\\\") || leadsPastTheRules(text)) {
        return {};
    }
    const std::size_t server = nextBackslash(text, 2);
    const std::size_t share = nextBackslash(text, std::min(text.size(), server + 1));
    return toUpper(std::string_view(text).substr(0, share));
}

bool isDevice(std::string_view path)
{
    const std::string text = withBackslashes(path);
    const std::size_t drive = text.size() > 1 && text[1] == ':' ? 1 : std::string::npos;
    const std::size_t last = findLastBackslash(text) == std::string::npos ? drive : findLastBackslash(text);
    return leadsPastTheRules(text) ||
           isDeviceName(std::string_view(text).substr(last == std::string::npos ? 0 : last + 1));
}

} // namespace tessera
