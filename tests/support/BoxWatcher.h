#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>
#include <windows.h>

namespace tessera {

// Looks after the dialogs of this thread from a timer, so also inside their own message loops:
// keeps the text of each message box and answers OK, or No to an assertion. Other dialogs are left
// to `onDialog`. One that is open for 20 seconds is closed, and a text says so, that no test waits for ever.
class BoxWatcher {
public:
    BoxWatcher();
    ~BoxWatcher();
    BoxWatcher(const BoxWatcher&) = delete;
    BoxWatcher& operator=(const BoxWatcher&) = delete;

    std::vector<std::string> texts;
    std::function<void(HWND)> onDialog; // called again and again while it is open
    std::function<void(HWND)> onBox;    // instead of answering

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD);
    static BOOL CALLBACK visit(HWND window, LPARAM watcher);
    static BOOL CALLBACK visitOverdue(HWND window, LPARAM watcher);
    void look(HWND window);
    void closeOverdue(HWND window);

    UINT_PTR m_timer;
    bool m_busy = false;
    std::map<HWND, DWORD> m_since; // ticks at which dialogs were first seen
};

// Presses the wizard's buttons up to Finish.
void walkWizard(HWND dialog);

} // namespace tessera
