#pragma once

#include "windowing/Window.h"

#include <span>

namespace tessera {

// Keys of a control that mean commands of its parent's: sent as accelerators are, with code 1. The control
// claims them when it is asked (WM_GETDLGCODE), so that no dialog or container takes them.
class CommandKeys final : public Mapped<CommandKeys, DirectSubclass> {
public:
    enum Modifiers : unsigned { kNone = 0, kControl = 1, kShift = 2, kAlt = 4 };
    struct Key {
        WPARAM key;
        unsigned modifiers;
        UINT command;
    };

    static std::span<const MapEntry<CommandKeys>> messageMap();
    // The modifiers that are held now.
    static unsigned held();

    // The table outlives the control.
    bool attachTo(HWND control, std::span<const Key> keys);

private:
    const Key* find(WPARAM key) const;
    Handled onDialogCode(const Message& message);
    Handled onKeyDown(const Message& message);
    Handled onCharacter(const Message& message);

    std::span<const Key> m_keys;
    bool m_taken = false; // the character of the last key belongs to a command
};

// What the Enter key types, with the Ctrl key, too. Lists and trees beep at it when they get it.
constexpr bool isEnter(WPARAM character)
{
    return character == '\r' || character == '\n';
}

} // namespace tessera
