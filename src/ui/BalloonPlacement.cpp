#include "ui/BalloonPlacement.h"

#include <algorithm>
#include <array>

namespace tessera {

namespace {

constexpr std::array kSides{BalloonSide::Above, BalloonSide::Below, BalloonSide::Right, BalloonSide::Left};

SIZE sizeOf(const RECT& rect)
{
    return {rect.right - rect.left, rect.bottom - rect.top};
}

// What a body may take on that side of the item.
SIZE roomAt(BalloonSide side, const RECT& item, const RECT& work, int stem)
{
    const SIZE whole = sizeOf(work);
    switch (side) {
    case BalloonSide::Above:
        return {whole.cx, item.top - work.top - stem};
    case BalloonSide::Below:
        return {whole.cx, work.bottom - item.bottom - stem};
    case BalloonSide::Right:
        return {work.right - item.right - stem, whole.cy};
    default:
        return {item.left - work.left - stem, whole.cy};
    }
}

// A side without room for this is no place to be.
bool isUsable(SIZE room, int stem)
{
    return room.cx >= 4 * stem && room.cy >= 4 * stem;
}

LONG areaOf(SIZE size)
{
    return std::max(size.cx, 0L) * std::max(size.cy, 0L);
}

LONG within(LONG value, LONG low, LONG high)
{
    return std::max(low, std::min(value, high));
}

RECT intersection(const RECT& a, const RECT& b)
{
    RECT both{};
    return IntersectRect(&both, &a, &b) ? both : a;
}

BalloonSide chooseSide(SIZE body, const RECT& item, const RECT& work, int stem)
{
    for (const BalloonSide side : kSides) {
        const SIZE room = roomAt(side, item, work, stem);
        if (room.cx >= body.cx && room.cy >= body.cy)
            return side;
    }
    // The one that shows most of it.
    return *std::max_element(kSides.begin(), kSides.end(), [&](BalloonSide a, BalloonSide b) {
        const auto shown = [&](BalloonSide side) {
            const SIZE room = roomAt(side, item, work, stem);
            return areaOf({std::min(room.cx, body.cx), std::min(room.cy, body.cy)});
        };
        return shown(a) < shown(b);
    });
}

// Along the item's border a balloon starts a little before the anchor, as far as the screen lets it.
LONG along(LONG anchor, LONG length, LONG low, LONG high, int stem)
{
    return within(anchor - 2 * stem, low, std::max(low, high - length));
}

RECT bodyOnScreen(BalloonSide side, SIZE body, const RECT& item, POINT anchor, const RECT& work, int stem)
{
    LONG left = along(anchor.x, body.cx, work.left, work.right, stem);
    LONG top = along(anchor.y, body.cy, work.top, work.bottom, stem);
    switch (side) {
    case BalloonSide::Above:
        top = item.top - stem - body.cy;
        break;
    case BalloonSide::Below:
        top = item.bottom + stem;
        break;
    case BalloonSide::Right:
        left = item.right + stem;
        break;
    default:
        left = item.left - stem - body.cx;
        break;
    }
    return {left, top, left + body.cx, top + body.cy};
}

// The stem leaves the corners round.
POINT tipOnScreen(BalloonSide side, const RECT& body, POINT anchor, int stem)
{
    const POINT tip{within(anchor.x, body.left + stem, body.right - 1 - stem),
                    within(anchor.y, body.top + stem, body.bottom - 1 - stem)};
    switch (side) {
    case BalloonSide::Above:
        return {tip.x, body.bottom + stem - 1};
    case BalloonSide::Below:
        return {tip.x, body.top - stem};
    case BalloonSide::Right:
        return {body.left - stem, tip.y};
    default:
        return {body.right + stem - 1, tip.y};
    }
}

BalloonPlace withStem(const RECT& body, POINT tip, BalloonSide side)
{
    BalloonPlace place{body, body, tip, side, true};
    place.window.left = std::min(body.left, tip.x);
    place.window.top = std::min(body.top, tip.y);
    place.window.right = std::max(body.right, tip.x + 1);
    place.window.bottom = std::max(body.bottom, tip.y + 1);
    OffsetRect(&place.body, -place.window.left, -place.window.top);
    place.tip.x -= place.window.left;
    place.tip.y -= place.window.top;
    return place;
}

// In the corner farthest from the anchor.
BalloonPlace placeOver(SIZE body, POINT anchor, const RECT& work)
{
    const SIZE whole = sizeOf(work);
    const SIZE size{std::min(body.cx, whole.cx), std::min(body.cy, whole.cy)};
    const LONG left = anchor.x - work.left > whole.cx / 2 ? work.left : work.right - size.cx;
    const LONG top = anchor.y - work.top > whole.cy / 2 ? work.top : work.bottom - size.cy;
    return {
        {left, top, left + size.cx, top + size.cy}, {0, 0, size.cx, size.cy}, {}, BalloonSide::Above, false};
}

} // namespace

SIZE balloonRoom(const RECT& item, const RECT& work, int stem, int width)
{
    const RECT seen = intersection(item, work);
    SIZE best{};
    for (const BalloonSide side : kSides) {
        const SIZE room = roomAt(side, seen, work, stem);
        if (!isUsable(room, stem))
            continue;
        const bool wider = best.cx < width && room.cx > best.cx;
        const bool wideEnough = room.cx >= width || room.cx >= best.cx;
        if (wider || (wideEnough && room.cy > best.cy))
            best = room;
    }
    return best.cy > 0 ? SIZE{std::min<LONG>(best.cx, width), best.cy} : sizeOf(work);
}

BalloonPlace placeBalloon(SIZE body, const RECT& item, POINT anchor, const RECT& work, int stem)
{
    const RECT seen = intersection(item, work);
    const BalloonSide side = chooseSide(body, seen, work, stem);
    const SIZE room = roomAt(side, seen, work, stem);
    if (!isUsable(room, stem) && (room.cx < body.cx || room.cy < body.cy))
        return placeOver(body, anchor, work);
    const SIZE size{std::min(body.cx, room.cx), std::min(body.cy, room.cy)};
    const POINT at{within(anchor.x, seen.left, seen.right - 1), within(anchor.y, seen.top, seen.bottom - 1)};
    const RECT onScreen = bodyOnScreen(side, size, seen, at, work, stem);
    return withStem(onScreen, tipOnScreen(side, onScreen, at, stem), side);
}

} // namespace tessera
