#pragma once

#include "jukebox/Report.h"
#include "system/Threads.h"

#include <atomic>
#include <string>
#include <vector>
#include <windows.h>

namespace tessera::jukebox {

// Looks out for message boxes with a caption on a thread of its own: prints each and answers it,
// No where there is a No button (an assertion's "go on"), else OK.
class MessageWatch {
public:
    MessageWatch(Report& report, std::wstring caption);
    ~MessageWatch();
    MessageWatch(const MessageWatch&) = delete;
    MessageWatch& operator=(const MessageWatch&) = delete;

    unsigned count() const { return m_count; } // boxes seen so far

private:
    void look();
    void answer(HWND box);

    Report& m_report;
    std::wstring m_caption;
    std::vector<HWND> m_seen; // boxes that are printed and still open
    std::atomic<unsigned> m_count = 0;
    Event m_end;
    Thread m_thread;
};

// The text of a message box; none when the window is another kind of dialog.
bool isMessageBox(HWND window, const std::wstring& caption);

} // namespace tessera::jukebox
