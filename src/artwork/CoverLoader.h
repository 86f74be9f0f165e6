#pragma once

#include "artwork/CoverGrounds.h"
#include "artwork/CoverSource.h"
#include "system/Threads.h"

#include <memory>
#include <optional>

namespace tessera {

// What the loader works on; the album is a name only and never looked into.
struct CoverRequest {
    Album* album = nullptr;
    CoverSource source;
};

struct CoverResult {
    Album* album = nullptr;
    std::optional<FittedCover> cover; // none: the default cover
};

// A thread that decodes covers and fits them into all sizes. It knows neither records nor image
// lists, holds its lock only to pass things on, and tells the window by a posted message that
// there is something to take. All members are for the user-interface thread.
class CoverLoader {
public:
    // The window must outlive a loader that has not been stopped.
    CoverLoader(std::shared_ptr<const CoverGrounds> grounds, HWND window, UINT message);
    ~CoverLoader() { stop(0); }
    CoverLoader(const CoverLoader&) = delete;
    CoverLoader& operator=(const CoverLoader&) = delete;

    enum class Turn { Next, Last };
    void add(CoverRequest request, Turn turn);
    // Makes the album's request the next one, if it still waits.
    void hurry(const Album& album);
    // None: nothing at the moment; the window will be told.
    std::optional<CoverResult> take();
    // Ends the thread within one picture. False when it still lived after the time, in
    // milliseconds; what it works with is its own then.
    bool stop(DWORD patience);

private:
    struct State;
    static void run(const std::shared_ptr<State>& state);

    std::shared_ptr<State> m_state;
    Thread m_thread;
};

} // namespace tessera
