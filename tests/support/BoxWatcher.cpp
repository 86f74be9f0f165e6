#include "BoxWatcher.h"

#include "windowing/Control.h"

#include <prsht.h>

namespace tessera {

namespace {

BoxWatcher* g_watcher = nullptr;
constexpr int kBoxText = 0xFFFF; // control id of a message box's text

bool isDialog(HWND window)
{
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    return std::string(name) == "#32770" && IsWindowVisible(window);
}

} // namespace

BoxWatcher::BoxWatcher() : m_timer(SetTimer(nullptr, 0, 20, tick))
{
    g_watcher = this;
}

BoxWatcher::~BoxWatcher()
{
    KillTimer(nullptr, m_timer);
    g_watcher = nullptr;
}

void CALLBACK BoxWatcher::tick(HWND, UINT, UINT_PTR, DWORD)
{
    BoxWatcher* const watcher = g_watcher;
    if (watcher && !watcher->m_busy) {
        watcher->m_busy = true;
        EnumThreadWindows(GetCurrentThreadId(), visit, reinterpret_cast<LPARAM>(watcher));
        if (g_watcher == watcher) {
            watcher->m_busy = false;
        }
    }
}

BOOL CALLBACK BoxWatcher::visit(HWND window, LPARAM watcher)
{
    if (isDialog(window)) {
        reinterpret_cast<BoxWatcher*>(watcher)->look(window);
    }
    return TRUE;
}

void BoxWatcher::look(HWND window)
{
    if (windowText(window) != "Tessera 2.0") {
        if (onDialog) {
            onDialog(window);
        }
        return;
    }
    if (onBox) {
        onBox(window);
        return;
    }
    texts.push_back(windowText(GetDlgItem(window, kBoxText)));
    const bool isQuestion = GetDlgItem(window, IDNO) != nullptr;
    SendMessageA(window, WM_COMMAND, isQuestion ? IDNO : IDOK, 0);
}

void walkWizard(HWND dialog)
{
    for (std::string title = windowText(dialog); title.starts_with("Step "); title = windowText(dialog)) {
        const bool last = title.starts_with("Step 6");
        PropSheet_PressButton(dialog, last ? PSBTN_FINISH : PSBTN_NEXT);
        if (last || windowText(dialog) == title) {
            return;
        }
    }
}

} // namespace tessera
