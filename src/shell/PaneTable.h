#pragma once

#include "ui/Pane.h"

#include <map>
#include <memory>
#include <vector>

namespace tessera {

// The panes by their ids, and which of them is shown. Owns the panes; their windows go earlier.
class PaneTable {
public:
    static constexpr std::size_t kPaneCount = 4;

    void add(std::unique_ptr<Pane> pane);
    bool complete() const { return m_panes.size() == kPaneCount; }
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

    template <class Work>
    void forEach(Work work) const
    {
        for (const auto& [id, pane] : m_panes) {
            work(*pane);
        }
    }

private:
    std::map<int, std::unique_ptr<Pane>> m_panes;
    std::vector<std::unique_ptr<Pane>> m_leaving; // without windows; a call may still be inside one
    Pane* m_current = nullptr;
};

} // namespace tessera
