#include "shell/UnwindTimer.h"

namespace tessera {

namespace {

constexpr UINT kInterval = 20; // milliseconds

// Of this thread: the plug-in's user-interface thread.
constinit Unwinding* g_waiting = nullptr;

} // namespace

void Unwinding::releaseWhenUnwound(const std::shared_ptr<Unwinding>& object) noexcept
{
    if (object->m_self) {
        return;
    }
    object->m_self = object;
    object->m_timer = SetTimer(nullptr, 0, kInterval, look);
    object->m_next = g_waiting;
    g_waiting = object.get();
}

void CALLBACK Unwinding::look(HWND, UINT, UINT_PTR timer, DWORD) noexcept
{
    for (Unwinding** link = &g_waiting; *link; link = &(*link)->m_next) {
        if ((*link)->m_timer == timer && (*link)->unwound()) {
            const std::shared_ptr<Unwinding> released = std::move((*link)->m_self);
            *link = released->m_next;
            KillTimer(nullptr, timer);
            return;
        }
    }
}

} // namespace tessera
