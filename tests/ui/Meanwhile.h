#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <windows.h>

namespace tessera {

// What a user does with a pop-up menu or a dialog while its loop runs.
class Meanwhile {
public:
    explicit Meanwhile(std::function<bool()> action)
    {
        s_action = std::move(action);
        m_timer = SetTimer(nullptr, 0, 20, &tick);
    }
    ~Meanwhile()
    {
        KillTimer(nullptr, m_timer);
        EXPECT_FALSE(std::exchange(s_action, nullptr)) << "nothing opened";
    }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD)
    {
        if (s_action && s_action())
            s_action = nullptr;
    }
    inline static std::function<bool()> s_action;
    UINT_PTR m_timer;
};

// Null: none is open.
inline HMENU openMenu()
{
    const HWND window = FindWindowA("#32768", nullptr);
    return window && IsWindowVisible(window)
               ? reinterpret_cast<HMENU>(SendMessageA(window, MN_GETHMENU, 0, 0))
               : nullptr;
}

// "id text" of every entry, "-" for a separator, "(text)" when it is greyed; a sub-menu's in brackets.
inline std::string outline(HMENU menu)
{
    std::string text;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        char name[200] = "";
        GetMenuStringA(menu, static_cast<UINT>(i), name, sizeof name, MF_BYPOSITION);
        const HMENU below = GetSubMenu(menu, i);
        const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
        text += i > 0 ? "|" : "";
        if (below)
            text += std::string(name) + " [" + outline(below) + "]";
        else if ((state & MF_SEPARATOR) != 0)
            text += "-";
        else if ((state & MF_GRAYED) != 0)
            text += "(" + std::string(name) + ")";
        else
            text += std::to_string(GetMenuItemID(menu, i)) + " " + name;
    }
    return text;
}

} // namespace tessera
