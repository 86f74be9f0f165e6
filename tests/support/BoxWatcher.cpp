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
    if (watcher) {
        std::erase_if(watcher->m_since, [](const auto& dialog) { return !IsWindowVisible(dialog.first); });
        EnumThreadWindows(GetCurrentThreadId(), visitOverdue, reinterpret_cast<LPARAM>(watcher));
    }
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

BOOL CALLBACK BoxWatcher::visitOverdue(HWND window, LPARAM watcher)
{
    if (isDialog(window)) {
        reinterpret_cast<BoxWatcher*>(watcher)->closeOverdue(window);
    }
    return TRUE;
}

void BoxWatcher::closeOverdue(HWND window)
{
    constexpr DWORD kLongest = 20000;
    const DWORD since = m_since.try_emplace(window, GetTickCount()).first->second;
    if (GetTickCount() - since > kLongest) {
        m_since.erase(window);
        texts.push_back("open for too long: " + windowText(window));
        PostMessageA(window, WM_COMMAND, GetDlgItem(window, IDNO) ? IDNO : IDCANCEL, 0);
    }
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
