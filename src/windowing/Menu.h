#pragma once

#include "system/Handle.h"
#include "windowing/Messages.h"

#include <string>

namespace tessera {

// Owns a pop-up menu. A sub-menu that was added belongs to the menu that took it.
class Menu {
public:
    static Menu popup(); // empty-handed when the system refused
    explicit operator bool() const { return static_cast<bool>(m_menu); }
    HMENU get() const { return m_menu.get(); }

    Menu& add(UINT id, const std::string& text, UINT flags = MF_ENABLED); // MF_CHECKED, MF_GRAYED, ...
    Menu& addSeparator();
    Menu& addSubMenu(Menu menu, const std::string& text);
    void check(UINT id, bool checked) const;
    void checkRadio(IdRange ids, UINT checked) const;
    void enable(UINT id, bool enabled) const;
    int count() const { return GetMenuItemCount(m_menu.get()); }
    std::string itemText(UINT id) const;

    // Shows it at a point of the screen; answers the command chosen, 0 for none. The owner gets no
    // WM_COMMAND.
    UINT track(HWND owner, POINT place, UINT flags = TPM_LEFTALIGN | TPM_TOPALIGN) const;

private:
    MenuHandle m_menu;
};

} // namespace tessera
