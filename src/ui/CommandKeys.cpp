#include "ui/CommandKeys.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr WORD kFromAccelerator = 1;
constexpr unsigned kAlt = 4; // no command's: with the control key it types a character

unsigned heldModifiers()
{
    const auto held = [](int key, unsigned bit) { return GetKeyState(key) < 0 ? bit : 0U; };
    return held(VK_CONTROL, CommandKeys::kControl) | held(VK_SHIFT, CommandKeys::kShift) |
           held(VK_MENU, kAlt);
}

} // namespace

std::span<const MapEntry<CommandKeys>> CommandKeys::messageMap()
{
    static constexpr std::array<MapEntry<CommandKeys>, 2> kMap{{
        {WM_KEYDOWN, &CommandKeys::onKeyDown},
        {WM_CHAR, &CommandKeys::onCharacter},
    }};
    return kMap;
}

bool CommandKeys::attachTo(HWND control, std::span<const Key> keys)
{
    m_keys = keys;
    return attach(control);
}

Handled CommandKeys::onKeyDown(const Message& message)
{
    const unsigned modifiers = heldModifiers();
    const auto found = std::ranges::find_if(
        m_keys, [&](const Key& each) { return each.key == message.wParam && each.modifiers == modifiers; });
    m_taken = found != m_keys.end();
    if (!m_taken)
        return kDefault;
    SendMessageA(GetParent(handle()), WM_COMMAND, MAKEWPARAM(found->command, kFromAccelerator), 0);
    return 0;
}

// A control would beep at it, or search for it.
Handled CommandKeys::onCharacter(const Message&)
{
    return m_taken ? Handled(0) : kDefault;
}

} // namespace tessera
