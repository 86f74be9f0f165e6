#pragma once

#include "ui/Pane.h"

#include <array>
#include <map>
#include <memory>
#include <vector>

namespace tessera {

// The panes by their ids, and which of them is shown. Owns the panes; their windows go earlier.
class PaneTable {
public:
    void add(std::unique_ptr<Pane> pane);
    bool complete() const { return m_panes.size() == kIds.size(); }
    bool has(int id) const { return m_panes.contains(id); }
    Pane* find(int id) const; // null: no such pane
    Pane* current() const { return m_current; }
    int currentId() const;

    // None is current until the next `show`.
    void hideCurrent();
    // Exactly one content pane shows: the one with this id. The others are told so, too.
    void show(int id);
    // In the client area of the control's window.
    void layout(HWND control, SIZE size, int bandHeight);
    // No pane is found from here on; then their windows are destroyed, the main pane's last.
    void destroyWindows();

    // The work may call the host, and with it the end: the panes that are left out then have no
    // windows any more. The table outlives the call.
    template <class Work>
    void forEach(Work work) const
    {
        for (const int id : kIds) {
            if (Pane* const pane = find(id)) {
                work(*pane);
            }
        }
    }

private:
    static constexpr std::array kIds{paneId::kMain, paneId::kOverview, paneId::kAlbumDetails, paneId::kLog};

    std::map<int, std::unique_ptr<Pane>> m_panes;
    std::vector<std::unique_ptr<Pane>> m_leaving; // without windows; a call may still be inside one
    Pane* m_current = nullptr;
};

} // namespace tessera
