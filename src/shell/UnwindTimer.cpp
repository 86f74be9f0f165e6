#include "shell/UnwindTimer.h"

#include <memory>
#include <windows.h>

namespace tessera {

namespace {

constexpr UINT kInterval = 20; // milliseconds

struct Waiting {
    UINT_PTR timer = 0;
    std::function<bool()> condition;
    Waiting* next = nullptr;
};

// Of this thread: the plug-in's user-interface thread.
constinit Waiting* g_waiting = nullptr;

std::unique_ptr<Waiting> takeOut(UINT_PTR timer)
{
    for (Waiting** link = &g_waiting; *link; link = &(*link)->next) {
        if ((*link)->timer == timer) {
            Waiting* const found = *link;
            *link = found->next;
            return std::unique_ptr<Waiting>(found);
        }
    }
    return nullptr;
}

void putBack(std::unique_ptr<Waiting> waiting)
{
    waiting->next = g_waiting;
    g_waiting = waiting.release();
}

void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD) noexcept
{
    std::unique_ptr<Waiting> waiting = takeOut(timer);
    if (!waiting) {
        return;
    }
    if (waiting->condition()) {
        KillTimer(nullptr, timer);
    } else {
        putBack(std::move(waiting));
    }
}

} // namespace

void releaseWhen(std::function<bool()> condition)
{
    auto waiting = std::make_unique<Waiting>();
    waiting->condition = std::move(condition);
    waiting->timer = SetTimer(nullptr, 0, kInterval, look);
    putBack(std::move(waiting));
}

} // namespace tessera
