#pragma once

#include <windows.h>

namespace tessera {

// Where a balloon lies, seen from the item that it belongs to.
enum class BalloonSide { Above, Below, Right, Left };

struct BalloonPlace {
    RECT window{}; // on screen; the stem included
    RECT body{};   // the rest, in the window's coordinates
    POINT tip{};   // of the stem, the same
    BalloonSide side = BalloonSide::Above;
    bool hasStem = true;
};

// Room for a balloon's body of at most `width` beside the item, where it covers the item nowhere.
SIZE balloonRoom(const RECT& item, const RECT& work, int stem, int width);
// The body on the first side that has room (above, below, right, left), cut where none has. The
// stem is on the item's border, at the anchor where it can be. Only an item that leaves no room at
// all is covered.
BalloonPlace placeBalloon(SIZE body, const RECT& item, POINT anchor, const RECT& work, int stem);

} // namespace tessera
