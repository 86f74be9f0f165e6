#include "shell/SkinColours.h"

#include "base/Errors.h"

#include <utility>

namespace tessera {

// A host that refuses has no colour: colours are asked for while painting, where nobody is told.
std::int32_t SkinColours::ask(const char* section, const char* key)
try {
    return m_useHost ? m_host.colour(section, key) : kNone;
} catch (const HostError&) {
    return kNone;
}

COLORREF SkinColours::cached(std::int32_t& value, const char* section, const char* key, int fallback)
{
    if (value == kNone) {
        value = ask(section, key);
    }
    return value == kNone ? GetSysColor(fallback) : static_cast<COLORREF>(value);
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
    if (m_system == before) {
        return false;
    }
    if (std::exchange(m_backgroundIsSystems, false)) {
        m_treeBackground = kNone;
    }
    return true;
}

// The only one whose fallback is kept, too.
COLORREF SkinColours::treeBackground()
{
    const COLORREF colour = cached(m_treeBackground, "Tree", "BackColor", COLOR_WINDOW);
    m_backgroundIsSystems = m_backgroundIsSystems || m_treeBackground == kNone;
    m_treeBackground = static_cast<std::int32_t>(colour);
    return static_cast<COLORREF>(m_treeBackground);
}

COLORREF SkinColours::treeText()
{
    return cached(m_treeText, "Tree", "Text", COLOR_WINDOWTEXT);
}

// The fallbacks of the next two are crossed: text the highlight, background the highlight's text.
COLORREF SkinColours::listSelectedText()
{
    return cached(m_listSelectedText, "List", "SelectedTextColor", COLOR_HIGHLIGHT);
}

COLORREF SkinColours::listSelectedBackground()
{
    return cached(m_listSelectedBackground, "List", "SelectedBackColor", COLOR_HIGHLIGHTTEXT);
}

COLORREF SkinColours::frameFace()
{
    std::int32_t value = kNone;
    return cached(value, "Frame", "Face3DColor", COLOR_BTNFACE);
}

} // namespace tessera
