#pragma once

#include "base/Errors.h"

#include <string>
#include <utility>
#include <windows.h>

namespace tessera {

// The guards of every border at which the system calls us: nothing may be thrown across it.
// Each is one line round the work.

// The code of whatever is being caught; call it inside a catch-all.
HRESULT caughtResult() noexcept;
// What to tell the user about it; "" when there is nothing to tell (cancelled).
std::string caughtMessage() noexcept;
// A sentence for the code of a host call: the system's text where it has one, and the number.
std::string resultMessage(HRESULT result);

// COM methods and exports: work answers an HRESULT.
template <class Work>
HRESULT comBorder(Work&& work) noexcept
{
    try {
        return std::forward<Work>(work)();
    } catch (...) {
        return caughtResult();
    }
}

// What runs by itself (timers, painting, display information, callbacks): stays silent and goes
// on with the fallback.
template <class Result, class Work>
Result quietBorder(Result fallback, Work&& work) noexcept
{
    try {
        return std::forward<Work>(work)();
    } catch (...) {
        return fallback;
    }
}

// Shows the message of whatever is being caught, in a box owned by the window.
void reportCaught(HWND owner) noexcept;

// What the user started: an error becomes the message box, then the fallback is answered.
template <class Result, class Work>
Result userBorder(HWND owner, Result fallback, Work&& work) noexcept
{
    try {
        return std::forward<Work>(work)();
    } catch (...) {
        reportCaught(owner);
        return fallback;
    }
}

// The start of a thread: ends in silence; the work itself tells what the user must know.
template <class Work>
void threadBorder(Work&& work) noexcept
{
    try {
        std::forward<Work>(work)();
    } catch (...) {
        (void)caughtResult();
    }
}

} // namespace tessera
