#pragma once

#include <windows.h>

namespace tessera {

// The versions of system libraries that the module asks for in its own manifest (resource 2), so
// that its controls wear the user's visual style in a host that has none. Without a manifest, or
// where the system knows none, everything below does nothing.
class ActivationContext {
public:
    // From the module's own manifest.
    static ActivationContext ofModule();
    // What is active on this thread now.
    static ActivationContext current();

    ActivationContext() = default;
    ~ActivationContext();
    ActivationContext(ActivationContext&& other) noexcept;
    ActivationContext& operator=(ActivationContext&& other) noexcept;
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;

    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

private:
    explicit ActivationContext(HANDLE handle) : m_handle(handle) {}
    HANDLE m_handle = INVALID_HANDLE_VALUE;
};

// Active on this thread from here to the end of the block.
class ActivationScope {
public:
    explicit ActivationScope(const ActivationContext& context);
    ~ActivationScope();
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;

private:
    ULONG_PTR m_cookie = 0;
    bool m_active = false;
};

} // namespace tessera
