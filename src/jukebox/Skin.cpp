#include "jukebox/Skin.h"

#include "jukebox/WideText.h"

#include <algorithm>
#include <array>

namespace tessera::jukebox {

namespace {

constexpr COLORREF kNight = RGB(0x1E, 0x22, 0x2A);
constexpr COLORREF kPanel = RGB(0x2A, 0x30, 0x3A);
constexpr COLORREF kChalk = RGB(0xD8, 0xDE, 0xE6);
constexpr COLORREF kAsh = RGB(0x9A, 0xA5, 0xB4);
constexpr COLORREF kAmber = RGB(0xE8, 0xA3, 0x3D);
constexpr COLORREF kSlate = RGB(0x3B, 0x55, 0x78);

struct SkinColour {
    std::wstring_view section;
    std::wstring_view key;
    COLORREF colour;
};

constexpr std::array kSkin = {
    SkinColour{L"tree", L"backcolor", kNight},         SkinColour{L"tree", L"text", kChalk},
    SkinColour{L"list", L"backcolor", kNight},         SkinColour{L"list", L"text", kChalk},
    SkinColour{L"list", L"selectedtextcolor", kChalk}, SkinColour{L"list", L"selectedbackcolor", kSlate},
    SkinColour{L"frame", L"face3dcolor", kPanel},
};

} // namespace

std::optional<COLORREF> skinColour(std::wstring_view section, std::wstring_view key)
{
    const auto found = std::find_if(kSkin.begin(), kSkin.end(),
                                    [section = folded(section), key = folded(key)](const SkinColour& entry) {
                                        return entry.section == section && entry.key == key;
                                    });
    if (found == kSkin.end()) {
        return std::nullopt;
    }
    return found->colour;
}

Palette palette(bool skinned)
{
    if (skinned) {
        return {kPanel, kChalk, kAsh, kAmber, kNight, kChalk, kAmber};
    }
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    const COLORREF text = GetSysColor(COLOR_BTNTEXT);
    const COLORREF accent = GetSysColor(COLOR_HIGHLIGHT);
    return {
        face,  text, mixed(face, text, 60), accent, GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT),
        accent};
}

COLORREF mixed(COLORREF first, COLORREF second, int percent)
{
    const auto mix = [percent](int a, int b) { return a + (b - a) * percent / 100; };
    return RGB(mix(GetRValue(first), GetRValue(second)), mix(GetGValue(first), GetGValue(second)),
               mix(GetBValue(first), GetBValue(second)));
}

} // namespace tessera::jukebox
