#pragma once

#include "ports/Host.h"
#include "system/ComPtr.h"
#include "system/Threads.h"

#include <memory>
#include <oaidl.h>
#include <string>
#include <vector>

namespace tessera {

class HostCalls;

// What PlayFiles is asked to do.
struct PlayRequest {
    std::vector<std::string> files; // full path names
    bool append = false;
    std::int32_t start = 0; // which of the files to start with
    bool playNow = false;
    std::int32_t place = -1; // handed to the host with each file; -1: behind the others
};

// The host, reached through its automation objects by dispatch id. Usable from any thread that has
// initialised COM; made, released and destroyed on the user-interface thread, where the file
// objects are let go, too, whichever thread has let go of them.
class HostBridge final : public Host {
public:
    HostBridge();
    ~HostBridge() override;
    HostBridge(const HostBridge&) = delete;
    HostBridge& operator=(const HostBridge&) = delete;

    // Keeps the object's host interface. Without one, every call throws HostError(E_POINTER).
    // Answers what the query answered.
    HRESULT attach(IDispatch* object);
    // Lets go of the host and of the file objects that wait for it.
    void release();
    // Lets go of the file objects that other threads have dropped. User-interface thread only.
    void releaseDropped();
    // True while the user-interface thread is inside a call of the host.
    bool inCall() const;
    // Held while files are played and while a list is filled from the host.
    CriticalSection& hostLock() { return m_hostLock; }

    std::unique_ptr<HostPlayback> playback() override;
    std::unique_ptr<HostFiles> search(const std::string& criteria) override;
    std::unique_ptr<HostPlaylist> playlist() override;
    HostFilePtr file(const std::string& fileName) override;
    void drawSkin(std::int32_t on) override;
    std::int32_t skin(std::int32_t window, std::int32_t mode) override;
    std::int32_t colour(std::string_view section, std::string_view key) override;

    void playFiles(const PlayRequest& request);
    // Goes on with an entry that the playlist has already.
    void playEntry(std::int32_t entry);

private:
    std::unique_ptr<HostPlaylist> neededPlaylist();
    std::unique_ptr<HostPlayback> neededPlayback();

    CriticalSection m_hostLock;
    std::shared_ptr<HostCalls> m_calls;
    ComPtr<IDispatch> m_host;
};

} // namespace tessera
