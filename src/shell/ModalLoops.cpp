#include "shell/ModalLoops.h"

#include "windowing/FileDrag.h"

#include <algorithm>
#include <string_view>

namespace tessera {

namespace {

BOOL CALLBACK collectDialog(HWND window, LPARAM list) noexcept
{
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    if (std::string_view(name) == "#32770" && IsWindowVisible(window)) {
        try {
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        } catch (...) { // memory is short: the dialog stays open
        }
    }
    return TRUE;
}

// From the top of the screen down.
std::vector<HWND> openDialogs()
{
    std::vector<HWND> dialogs;
    EnumThreadWindows(GetCurrentThreadId(), collectDialog, reinterpret_cast<LPARAM>(&dialogs));
    return dialogs;
}

// A box that asks Yes or No is closed by no cancel on Windows; it ends with No.
int endOf(HWND dialog)
{
    return !GetDlgItem(dialog, IDCANCEL) && GetDlgItem(dialog, IDNO) ? IDNO : IDCANCEL;
}

void cancelDialog(HWND dialog)
{
    const HWND owner = ::GetWindow(dialog, GW_OWNER);
    SendMessageA(dialog, WM_COMMAND, endOf(dialog), 0);
    ShowWindow(dialog, SW_HIDE);
    if (owner) {
        EnableWindow(owner, TRUE);
    }
}

} // namespace

ModalLoops::Scope::Scope(ModalLoops& loops) : m_loops(loops)
{
    if (m_loops.m_depth == 0) {
        m_loops.m_before = openDialogs();
    }
    ++m_loops.m_depth;
}

ModalLoops::Scope::~Scope()
{
    --m_loops.m_depth;
}

void ModalLoops::closeAll()
{
    EndMenu();
    endDrag();
    if (!running()) {
        return;
    }
    for (const HWND dialog : openDialogs()) {
        if (std::ranges::find(m_before, dialog) == m_before.end() && IsWindow(dialog)) {
            cancelDialog(dialog);
        }
    }
}

int CountedBoxes::show(HWND owner, UINT flags, const std::string& text, const std::string& caption)
{
    const std::shared_ptr<ModalLoops> loops = m_loops;
    const ModalLoops::Scope scope(*loops);
    return MessageBoxes::show(owner, flags, text, caption);
}

} // namespace tessera
