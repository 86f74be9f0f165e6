#include "ui/CommandKeys.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr WORD kFromAccelerator = 1;

} // namespace

std::span<const MapEntry<CommandKeys>> CommandKeys::messageMap()
{
    static constexpr std::array<MapEntry<CommandKeys>, 3> kMap{{
        {WM_GETDLGCODE, &CommandKeys::onDialogCode},
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

unsigned CommandKeys::held()
{
    const auto bit = [](int key, unsigned modifier) { return GetKeyState(key) < 0 ? modifier : 0U; };
    return bit(VK_CONTROL, kControl) | bit(VK_SHIFT, kShift) | bit(VK_MENU, kAlt);
}

const CommandKeys::Key* CommandKeys::find(WPARAM key) const
{
    const auto found = std::ranges::find_if(m_keys, [key, modifiers = held()](const Key& each) {
        return each.key == key && each.modifiers == modifiers;
    });
    return found == m_keys.end() ? nullptr : &*found;
}

Handled CommandKeys::onDialogCode(const Message& message)
{
    const auto* const key = reinterpret_cast<const MSG*>(message.lParam);
    const bool isKey = key && (key->message == WM_KEYDOWN || key->message == WM_KEYUP);
    return isKey && find(key->wParam) ? Handled(DLGC_WANTMESSAGE) : kDefault;
}

Handled CommandKeys::onKeyDown(const Message& message)
{
    const Key* const found = find(message.wParam);
    m_taken = found != nullptr;
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
