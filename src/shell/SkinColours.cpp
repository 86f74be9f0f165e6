#include "shell/SkinColours.h"

#include "base/Errors.h"

#include <utility>

namespace tessera {

namespace {

// In the order of the accessors. The fallbacks of the selection are crossed: its text is the
// highlight, its background the highlight's text.
constexpr struct {
    const char* section;
    const char* key;
    int fallback;
    bool keepsFirst;
} kColours[] = {{"Tree", "BackColor", COLOR_WINDOW, true},
                {"Tree", "Text", COLOR_WINDOWTEXT, true},
                {"List", "SelectedTextColor", COLOR_HIGHLIGHT, true},
                {"List", "SelectedBackColor", COLOR_HIGHLIGHTTEXT, true},
                {"Frame", "Face3DColor", COLOR_BTNFACE, false}};

} // namespace

std::int32_t SkinColours::ask(std::size_t index)
try {
    return m_host.colour(kColours[index].section, kColours[index].key);
} catch (const HostError&) {
    return kNone;
}

bool SkinColours::read()
{
    bool changed = false;
    for (std::size_t i = 0; i < kCount && m_useHost; ++i) {
        if (!kColours[i].keepsFirst || m_values[i] == kNone) {
            const std::int32_t answer = ask(i);
            changed = std::exchange(m_values[i], answer) != answer || changed;
        }
    }
    return changed;
}

SkinColours::SystemColours SkinColours::systemColours()
{
    SystemColours colours{};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        colours[i] = GetSysColor(static_cast<int>(i));
    }
    return colours;
}

bool SkinColours::followSystem()
{
    const SystemColours before = std::exchange(m_system, systemColours());
    return m_system != before;
}

COLORREF SkinColours::colour(std::size_t index) const
{
    const std::int32_t value = m_useHost ? m_values[index] : kNone;
    return value == kNone ? GetSysColor(kColours[index].fallback) : static_cast<COLORREF>(value);
}

} // namespace tessera
