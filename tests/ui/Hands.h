#pragma once

#include "FakeCommands.h"

namespace tessera::hands {

// Pointer and keys as the system brings them to the window under the pointer or with the focus; what
// comes of it is done when a call returns. A pointer that enters a window makes some systems let go of
// keys that only programs hold: point first.

inline void pointAt(POINT screen)
{
    SetCursorPos(static_cast<int>(screen.x), static_cast<int>(screen.y));
    mouse_event(MOUSEEVENTF_MOVE, 0, 0, 0, 0);
    pumpMessages(30);
}

inline void click(POINT screen, int times = 1)
{
    pointAt(screen);
    for (int i = 0; i < times; ++i) {
        mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
        mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    }
    pumpMessages(80);
}

// The next one must be elsewhere, or come later: a third click is no double click.
inline void doubleClick(POINT screen)
{
    click(screen, 2);
}

inline void turnWheel(int delta)
{
    mouse_event(MOUSEEVENTF_WHEEL, 0, 0, static_cast<DWORD>(delta), 0);
    pumpMessages(30);
}

inline void hold(BYTE key)
{
    keybd_event(key, 0, 0, 0);
    pumpMessages(20);
}

inline void letGo(BYTE key)
{
    keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
    pumpMessages(20);
}

inline void press(BYTE key)
{
    hold(key);
    letGo(key);
}

inline void pressWith(BYTE modifier, BYTE key)
{
    hold(modifier);
    press(key);
    letGo(modifier);
}

} // namespace tessera::hands
