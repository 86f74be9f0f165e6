#pragma once

#include "system/MessageBoxes.h"

#include <memory>
#include <vector>
#include <windows.h>

namespace tessera {

// Boxes, dialogs, menus and drags of ours that run message loops of their own below us on the stack. The
// plug-in may be told to stop inside one of them. User-interface thread only.
class ModalLoops {
public:
    class Scope {
    public:
        explicit Scope(ModalLoops& loops);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        ModalLoops& m_loops;
    };

    bool running() const { return m_depth > 0; }
    // Cancels menus, drags and every dialog that has come since the outermost scope began; their loops end
    // when the stack unwinds to them.
    void closeAll();

private:
    int m_depth = 0;
    std::vector<HWND> m_before; // dialogs that are not ours
};

// The system's boxes, counted as modal loops. A box may outlast the plug-in's end, so it keeps
// what it needs alive.
class CountedBoxes final : public MessageBoxes {
public:
    explicit CountedBoxes(std::shared_ptr<ModalLoops> loops) : m_loops(std::move(loops)) {}
    int show(HWND owner, UINT flags, const std::string& text, const std::string& caption) override;

private:
    std::shared_ptr<ModalLoops> m_loops;
};

} // namespace tessera
