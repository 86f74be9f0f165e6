#include "shell/OwnKeys.h"

#include <algorithm>
#include <string_view>

namespace tessera {

namespace {

bool isDown(int key)
{
    return GetKeyState(key) < 0;
}

// What the system's controls work with, by what they say of themselves, with and without the Ctrl key.
constexpr LRESULT kMoves = DLGC_WANTARROWS;
constexpr LRESULT kTypes = DLGC_WANTCHARS;
constexpr LRESULT kText = DLGC_HASSETSEL; // an edit control
constexpr LRESULT kPresses = DLGC_BUTTON | DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON | DLGC_RADIOBUTTON;

struct KnownKeys {
    LRESULT control;
    bool withControl;
    WPARAM first;
    WPARAM last;
};

constexpr KnownKeys kKnown[] = {
    {kMoves, false, VK_PRIOR, VK_DOWN}, // pages, ends and arrows
    {kMoves, true, VK_PRIOR, VK_DOWN},
    {kTypes, false, VK_BACK, VK_BACK},
    {kTypes, false, VK_RETURN, VK_RETURN},
    {kTypes, false, VK_ESCAPE, VK_ESCAPE},
    {kTypes, false, VK_SPACE, VK_SPACE},
    {kTypes, false, VK_APPS, VK_APPS},
    {kTypes, false, '0', 'Z'},
    {kTypes, false, VK_NUMPAD0, VK_DIVIDE},
    {kTypes, false, VK_OEM_1, VK_OEM_102},
    {kText, false, VK_INSERT, VK_DELETE},
    {kText, true, VK_INSERT, VK_DELETE},
    {kText, true, VK_BACK, VK_BACK},
    {kText, true, 'A', 'A'},
    {kText, true, 'C', 'C'},
    {kText, true, 'V', 'V'},
    {kText, true, 'X', 'X'},
    {kText, true, 'Z', 'Z'},
    {kPresses, false, VK_SPACE, VK_SPACE},
};

std::string_view className(HWND window, char (&buffer)[32])
{
    return {buffer, static_cast<std::size_t>(GetClassNameA(window, buffer, sizeof buffer))};
}

// Of what all controls that answer alike do not share: F4 drops a combo box; Ctrl with Space selects in
// a list, and lists and trees tell of Ctrl with Enter.
bool isKeyOfClass(HWND focus, WPARAM key, bool control)
{
    char buffer[32] = "";
    const std::string_view name = className(focus, buffer);
    if (name == "ComboBox") {
        return key == VK_F4 && !control;
    }
    const bool isList = name == "SysListView32";
    return control &&
           ((key == VK_RETURN && (isList || name == "SysTreeView32")) || (key == VK_SPACE && isList));
}

bool isKnown(HWND focus, LRESULT kind, WPARAM key, bool control)
{
    return isKeyOfClass(focus, key, control) || std::ranges::any_of(kKnown, [&](const KnownKeys& each) {
               return (kind & each.control) != 0 && control == each.withControl && key >= each.first &&
                      key <= each.last;
           });
}

} // namespace

DWORD keyModifiers()
{
    return (isDown(VK_SHIFT) ? kShiftKey : 0) | (isDown(VK_CONTROL) ? kControlKey : 0) |
           (isDown(VK_MENU) ? kAltKey : 0);
}

// Ctrl and Alt together type a character, which comes as one.
bool isOwnKey(HWND focus, const MSG& message)
{
    const bool alt = isDown(VK_MENU);
    if (message.message == WM_CHAR) {
        return message.wParam != VK_TAB && !alt;
    }
    const LRESULT kind =
        SendMessageA(focus, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
    if ((kind & DLGC_WANTMESSAGE) != 0) {
        return true;
    }
    const bool plain = message.message == WM_KEYDOWN || message.message == WM_KEYUP;
    return plain && !alt && isKnown(focus, kind, message.wParam, isDown(VK_CONTROL));
}

} // namespace tessera
