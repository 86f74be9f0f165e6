#pragma once

#include <string>
#include <windows.h>

namespace tessera {

class Commands;

// The bar above a pane's content: its name, and what it shows at the moment.
struct PaneCaption {
    std::string title;
    std::string status;

    // In pixels.
    int height(const Commands& commands) const;
    void draw(HDC dc, const RECT& bar, Commands& commands) const;
};

} // namespace tessera
