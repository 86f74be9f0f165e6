#pragma once

#include <windows.h>

namespace tessera {

// Wheels that turn smoothly send small parts of a notch.
class WheelNotches {
public:
    // Takes a WM_MOUSEWHEEL; answers the whole notches since the last one was answered, positive when
    // the wheel turns away from the user. A turn the other way begins anew.
    int add(WPARAM wheel)
    {
        const int delta = static_cast<short>(HIWORD(wheel));
        if ((delta > 0) != (m_rest > 0))
            m_rest = 0;
        m_rest += delta;
        const int notches = m_rest / WHEEL_DELTA;
        m_rest %= WHEEL_DELTA;
        return notches;
    }

private:
    int m_rest = 0;
};

} // namespace tessera
