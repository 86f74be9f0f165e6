#pragma once

#include "ports/Host.h"

#include <array>
#include <windows.h>

namespace tessera {

// Colours of the host's skin, or the system's where the host has none or is not to be asked.
class SkinColours {
public:
    explicit SkinColours(Host& host) : m_host(host) {}

    void setUseHost(bool use) { m_useHost = use; }
    bool usesHost() const { return m_useHost; }
    // True when the system's colours are others than at the last call; none of them is kept then.
    bool followSystem();

    COLORREF treeBackground();
    COLORREF treeText();
    COLORREF listSelectedText();
    COLORREF listSelectedBackground();
    COLORREF frameFace();

private:
    static constexpr std::int32_t kNone = -1;
    std::int32_t ask(const char* section, const char* key);
    // The first answer of the host stands; as long as there is none the system's colour does.
    COLORREF cached(std::int32_t& value, const char* section, const char* key, int fallback);

    using SystemColours = std::array<COLORREF, COLOR_MENUBAR + 1>;
    static SystemColours systemColours();

    Host& m_host;
    SystemColours m_system = systemColours();
    bool m_backgroundIsSystems = false;
    bool m_useHost = false;
    std::int32_t m_treeBackground = kNone;
    std::int32_t m_treeText = kNone;
    std::int32_t m_listSelectedText = kNone;
    std::int32_t m_listSelectedBackground = kNone;
};

} // namespace tessera
