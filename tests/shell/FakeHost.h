#pragma once

#include "system/Com.h"
#include "system/Threads.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tessera {

struct FakeTrack {
    std::string fileName;
    std::string artist;
    std::string album;
    std::int32_t number = 1;
};

// What the fake host does and has seen; shared by all its objects, safe on any thread.
struct HostScript {
    std::vector<FakeTrack> tracks;
    int failAt = 0;                              // the call with this number is refused; 0: none
    int nullAt = 0;                              // the call with this number answers nothing
    std::function<void(int)> onCall;             // on the caller's thread, before the call is answered
    std::function<void()> onQuery;               // the host object is asked for an interface
    std::int32_t skinned = 0;                    // answer to the skin query
    std::function<void(HWND)> onSkin;            // a window is to be skinned
    std::map<std::string, std::int32_t> colours; // "Section/Key"
    std::string embeddedImage;                   // every track holds a copy of this file
    bool knowsFiles = true;
    bool givesPlayback = true;
    bool givesPlaylist = true;
    std::atomic<int> calls{0};
    std::atomic<int> member{0};        // of the call that came last
    std::atomic<int> live{0};          // objects that are still held by somebody
    std::atomic<int> strayReleases{0}; // file objects that died on another thread than their maker's
    DWORD uiThread = GetCurrentThreadId();

    void note(const std::string& what);
    std::vector<std::string> journal(); // calls of the host, the playlist and the playback

private:
    CriticalSection m_lock;
    std::vector<std::string> m_journal;
};

std::shared_ptr<HostScript> smallLibrary(int tracks = 30);
ComPtr<IDispatch> makeFakeHost(const std::shared_ptr<HostScript>& script);

} // namespace tessera
