#pragma once

#include <functional>
#include <windows.h>

namespace tessera {

// Handles the messages that wait in this thread's queue; false when one of them was WM_QUIT.
bool pumpWaiting();
// Handles messages until the condition holds or the time is over; answers whether it holds.
bool pumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 5000);

} // namespace tessera
