#include "windowing/Menu.h"

namespace tessera {

Menu Menu::popup()
{
    Menu menu;
    menu.m_menu.reset(CreatePopupMenu());
    return menu;
}

Menu& Menu::add(UINT id, const std::string& text, UINT flags)
{
    AppendMenuA(m_menu.get(), flags | MF_STRING, id, text.c_str());
    return *this;
}

Menu& Menu::addSeparator()
{
    AppendMenuA(m_menu.get(), MF_SEPARATOR, 0, nullptr);
    return *this;
}

Menu& Menu::addSubMenu(Menu menu, const std::string& text)
{
    if (AppendMenuA(m_menu.get(), MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(menu.get()),
                    text.c_str())) {
        (void)menu.m_menu.release();
    }
    return *this;
}

void Menu::check(UINT id, bool checked) const
{
    CheckMenuItem(m_menu.get(), id, MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED));
}

void Menu::checkRadio(IdRange ids, UINT checked) const
{
    CheckMenuRadioItem(m_menu.get(), ids.first, ids.last, checked, MF_BYCOMMAND);
}

void Menu::enable(UINT id, bool enabled) const
{
    EnableMenuItem(m_menu.get(), id, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
}

std::string Menu::itemText(UINT id) const
{
    std::string text(static_cast<std::size_t>(GetMenuStringA(m_menu.get(), id, nullptr, 0, MF_BYCOMMAND)) + 1,
                     '\0');
    text.resize(static_cast<std::size_t>(
        GetMenuStringA(m_menu.get(), id, text.data(), static_cast<int>(text.size()), MF_BYCOMMAND)));
    return text;
}

UINT Menu::track(HWND owner, POINT place, UINT flags) const
{
    return static_cast<UINT>(
        TrackPopupMenuEx(m_menu.get(), flags | TPM_RETURNCMD, place.x, place.y, owner, nullptr));
}

} // namespace tessera
