#include "shell/PaneTable.h"

#include "windowing/Drawing.h"

#include <array>

namespace tessera {

void PaneTable::add(std::unique_ptr<Pane> pane)
{
    const int id = pane->id();
    m_panes[id] = std::move(pane);
}

Pane* PaneTable::find(int id) const
{
    const auto found = m_panes.find(id);
    return found == m_panes.end() ? nullptr : found->second.get();
}

int PaneTable::currentId() const
{
    return m_current ? m_current->id() : paneId::kLog;
}

// The focus that it hands on waits with the control.
void PaneTable::hideCurrent()
{
    if (Pane* const old = std::exchange(m_current, nullptr)) {
        SendMessageA(old->window(), kActivateMessage, 0, 0);
    }
}

void PaneTable::show(int id)
{
    forEach([&](Pane& pane) {
        if (pane.id() == paneId::kMain) {
            return;
        }
        if (pane.id() == id) {
            m_current = &pane;
        }
        SendMessageA(pane.window(), kActivateMessage, pane.id() == id ? 1 : 0, 0);
    });
}

void PaneTable::layout(HWND control, SIZE size, int bandHeight)
{
    if (!complete() || size.cx <= 0 || size.cy <= 0) {
        return;
    }
    const HWND mainPane = m_panes.at(paneId::kMain)->window();
    RECT band{};
    GetClientRect(mainPane, &band);
    MoveWindow(mainPane, 0, 0, band.right, bandHeight, TRUE);
    const RedrawOff off(control);
    forEach([&](const Pane& pane) {
        const bool isMain = pane.id() == paneId::kMain;
        const int top = isMain ? 0 : bandHeight;
        const int height = isMain ? bandHeight : static_cast<int>(size.cy) - bandHeight;
        SetWindowPos(pane.window(), nullptr, 0, top, size.cx, height, SWP_NOZORDER | SWP_NOACTIVATE);
    });
}

void PaneTable::destroyWindows()
{
    constexpr std::array kOrder{paneId::kOverview, paneId::kLog, paneId::kAlbumDetails, paneId::kMain};
    m_current = nullptr;
    auto panes = std::exchange(m_panes, {});
    for (const int id : kOrder) {
        const auto found = panes.find(id);
        if (found == panes.end()) {
            continue;
        }
        DestroyWindow(found->second->window());
        m_leaving.push_back(std::move(found->second));
    }
}

} // namespace tessera
