#include "ui/SearchKeys.h"

#include "ui/ids.h"
#include "windowing/Control.h"

#include <array>

namespace tessera {

namespace {

constexpr struct {
    WPARAM key;
    bool control;
    bool boxOnly;
    int command;
} kKeys[] = {
    {'F', true, false, albumCommand::kFind},
    {VK_ESCAPE, false, false, albumCommand::kClearSearch},
    {VK_DOWN, false, true, albumCommand::kEnterList},
    {VK_RETURN, false, true, albumCommand::kEnterList},
};

// What an edit would only beep at.
constexpr WPARAM kControlA = 1;
constexpr WPARAM kControlF = 6;

} // namespace

std::span<const MapEntry<SearchKeys>> SearchKeys::messageMap()
{
    static constexpr std::array<MapEntry<SearchKeys>, 2> kMap{{
        {WM_KEYDOWN, &SearchKeys::onKeyDown},
        {WM_CHAR, &SearchKeys::onCharacter},
    }};
    return kMap;
}

bool SearchKeys::attachTo(HWND control, bool isBox)
{
    m_isBox = isBox;
    return attach(control);
}

Handled SearchKeys::onKeyDown(const Message& message)
{
    const bool control = GetKeyState(VK_CONTROL) < 0;
    if (m_isBox && control && message.wParam == 'A') {
        Edit(handle()).select(0, -1);
        return 0;
    }
    for (const auto& each : kKeys) {
        if (each.key == message.wParam && each.control == control && (m_isBox || !each.boxOnly)) {
            SendMessageA(GetParent(handle()), WM_COMMAND, static_cast<WPARAM>(each.command), 0);
            return 0;
        }
    }
    return kDefault;
}

Handled SearchKeys::onCharacter(const Message& message)
{
    const WPARAM key = message.wParam;
    const bool taken =
        key == kControlF || key == VK_ESCAPE || (m_isBox && (key == kControlA || key == VK_RETURN));
    return taken ? Handled(0) : kDefault;
}

} // namespace tessera
