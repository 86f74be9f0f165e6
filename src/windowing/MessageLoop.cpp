#include "windowing/MessageLoop.h"

#include <algorithm>

namespace tessera {

bool pumpWaiting()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            return false;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return true;
}

bool pumpUntil(const std::function<bool()>& condition, DWORD milliseconds)
{
    constexpr DWORD kLook = 10; // the condition may come true without a message
    const DWORD start = GetTickCount();
    for (;;) {
        pumpWaiting();
        if (condition()) {
            return true;
        }
        const DWORD passed = GetTickCount() - start;
        if (passed >= milliseconds) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, std::min(kLook, milliseconds - passed), QS_ALLINPUT);
    }
}

} // namespace tessera
