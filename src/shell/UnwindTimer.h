#pragma once

#include <memory>
#include <windows.h>

namespace tessera {

// What must not be freed while frames of its own are below on the stack.
class Unwinding {
public:
    virtual ~Unwinding() = default;
    virtual bool unwound() const = 0;

    // Keeps the object until it has unwound, which is looked at from time to time in the thread's message
    // loops. Takes no memory: this is part of the end. Without a timer the object stays for ever.
    static void releaseWhenUnwound(const std::shared_ptr<Unwinding>& object) noexcept;

private:
    static void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD) noexcept;

    std::shared_ptr<Unwinding> m_self; // while it waits
    Unwinding* m_next = nullptr;
    UINT_PTR m_timer = 0;
};

} // namespace tessera
