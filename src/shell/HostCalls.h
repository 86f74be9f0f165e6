#pragma once

#include "ports/Host.h"
#include "system/Invoke.h"
#include "system/Threads.h"

#include <utility>
#include <vector>

namespace tessera {

// What all objects of the bridge share: who is inside a call, and what waits to be released.
class HostCalls {
public:
    HostCalls() : m_uiThread(GetCurrentThreadId()) {}
    ~HostCalls() { releaseDropped(); }
    HostCalls(const HostCalls&) = delete;
    HostCalls& operator=(const HostCalls&) = delete;

    bool inCall() const { return m_depth > 0; }
    // Releases at once on the user-interface thread, else leaves it to that thread.
    void drop(ComPtr<IDispatch> object) noexcept;
    void releaseDropped() noexcept;

    template <class... Arguments>
    Variant method(const ComPtr<IDispatch>& object, DISPID id, const Arguments&... arguments)
    {
        const Inside inside(*this);
        return callMethod(object.get(), id, arguments...);
    }
    Variant get(const ComPtr<IDispatch>& object, DISPID id)
    {
        const Inside inside(*this);
        return getProperty(object.get(), id);
    }
    void put(const ComPtr<IDispatch>& object, DISPID id, std::int32_t value)
    {
        const Inside inside(*this);
        putProperty(object.get(), id, value);
    }

private:
    // Counts calls of the user-interface thread: the host may run a message loop inside.
    class Inside {
    public:
        explicit Inside(HostCalls& calls) : m_depth(calls.onUiThread() ? &calls.m_depth : nullptr)
        {
            if (m_depth) {
                ++*m_depth;
            }
        }
        ~Inside()
        {
            if (m_depth) {
                --*m_depth;
            }
        }
        Inside(const Inside&) = delete;
        Inside& operator=(const Inside&) = delete;

    private:
        int* m_depth;
    };

    bool onUiThread() const { return GetCurrentThreadId() == m_uiThread; }

    DWORD m_uiThread;
    int m_depth = 0; // touched by the user-interface thread only
    CriticalSection m_droppedLock;
    std::vector<ComPtr<IDispatch>> m_dropped;
};

// Null when there is no object.
HostFilePtr wrapFile(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object);
std::unique_ptr<HostFiles> wrapFiles(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object);
std::unique_ptr<HostPlaylist> wrapPlaylist(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object);
std::unique_ptr<HostPlayback> wrapPlayback(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object);

} // namespace tessera
