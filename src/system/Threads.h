#pragma once

#include "system/Handle.h"

#include <functional>
#include <memory>
#include <string>
#include <windows.h>

namespace tessera {

// Its own thread may enter again.
class CriticalSection {
public:
    CriticalSection() { InitializeCriticalSection(&m_section); }
    ~CriticalSection() { DeleteCriticalSection(&m_section); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock() { EnterCriticalSection(&m_section); }
    bool try_lock() { return TryEnterCriticalSection(&m_section) != FALSE; }
    void unlock() { LeaveCriticalSection(&m_section); }

private:
    CRITICAL_SECTION m_section;
};

class ScopedLock {
public:
    explicit ScopedLock(CriticalSection& section) : m_section(section) { m_section.lock(); }
    ~ScopedLock() { m_section.unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    CriticalSection& m_section;
};

// Stays set until it is reset.
class Event {
public:
    Event();
    void set() { SetEvent(m_handle.get()); }
    void reset() { ResetEvent(m_handle.get()); }
    // INFINITE: for ever. False after the time.
    bool wait(DWORD milliseconds = INFINITE) const;
    bool isSet() const { return wait(0); }
    HANDLE handle() const { return m_handle.get(); }

private:
    KernelHandle m_handle;
};

// Waits for a handle while messages that other threads send to this thread's windows, and their
// COM calls, are answered; posted messages stay in the queue. False after the time.
bool waitAnsweringSentMessages(HANDLE handle, DWORD milliseconds = INFINITE);

// One thread of work, behind a border; joined with the object.
class Thread {
public:
    Thread() = default;
    // The name is for debuggers. Throws std::bad_alloc when no thread can be had.
    Thread(const std::string& name, std::function<void()> work);
    ~Thread() { join(); }
    Thread(Thread&&) noexcept = default;
    Thread& operator=(Thread&& other) noexcept;

    bool started() const { return static_cast<bool>(m_handle); }
    bool running() const;
    // False when it still runs after the time.
    bool waitAnsweringSentMessages(DWORD milliseconds = INFINITE) const;
    // Waits, answering sent messages, and lets the thread go.
    void join();
    // Lets the thread go, ended or not: what it works with must be its own.
    void letGo() { m_handle.reset(); }
    HANDLE handle() const { return m_handle.get(); }
    DWORD id() const { return m_id; }

private:
    KernelHandle m_handle;
    DWORD m_id = 0;
};

} // namespace tessera
