#pragma once

#include <string>
#include <windows.h>

namespace tessera {

class Commands;

// The bar above a pane's content: its name, with a mark where it opens a menu, what it offers to do,
// and what it shows at the moment.
struct PaneCaption {
    std::string title;
    std::string status;
    std::string offer;
    bool hasMenu = false;

    // In pixels.
    int height(const Commands& commands) const;
    // The bar, with the title where that opens no menu. What stands on it has controls of its own.
    void draw(HDC dc, const RECT& bar, Commands& commands) const;
    void drawTitle(HDC dc, const RECT& place, Commands& commands) const;
    void drawOffer(HDC dc, const RECT& place, Commands& commands) const;
    void drawStatus(HDC dc, const RECT& place, Commands& commands) const;
    static void drawFocus(HDC dc, const RECT& place, Commands& commands);
    // Where the title with its mark stands, the offer and the status; empty when it does not.
    RECT titlePlace(HDC dc, const RECT& bar, const Commands& commands) const;
    RECT offerPlace(HDC dc, const RECT& bar, const Commands& commands) const;
    RECT statusPlace(HDC dc, const RECT& bar, const Commands& commands) const;
};

} // namespace tessera
