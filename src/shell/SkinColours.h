#pragma once

#include "ports/Host.h"

#include <array>
#include <windows.h>

namespace tessera {

// Colours of the host's skin, or the system's where the host has none or is not to be asked. What
// paints takes what was read last; the host is called by read() alone.
class SkinColours {
public:
    explicit SkinColours(Host& host) : m_host(host) { m_values.fill(kNone); }

    void setUseHost(bool use) { m_useHost = use; }
    bool usesHost() const { return m_useHost; }
    // True when the system's colours are others than at the last call.
    bool followSystem();
    // Asks for the frame's colour, and for the others that the host has not given yet: the first
    // answer stands. True when a colour is another one now. A host that refuses has no colour.
    bool read();

    COLORREF treeBackground() const { return colour(0); }
    COLORREF treeText() const { return colour(1); }
    COLORREF listSelectedText() const { return colour(2); }
    COLORREF listSelectedBackground() const { return colour(3); }
    COLORREF frameFace() const { return colour(4); }

private:
    static constexpr std::int32_t kNone = -1;
    static constexpr std::size_t kCount = 5;
    std::int32_t ask(std::size_t index);
    COLORREF colour(std::size_t index) const;

    using SystemColours = std::array<COLORREF, COLOR_MENUBAR + 1>;
    static SystemColours systemColours();

    Host& m_host;
    SystemColours m_system = systemColours();
    bool m_useHost = false;
    std::array<std::int32_t, kCount> m_values{};
};

} // namespace tessera
