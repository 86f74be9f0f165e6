#pragma once

#include "windowing/Window.h"

namespace tessera {

// Counts what a window is told to paint.
class PaintCounter final : public Mapped<PaintCounter, Subclass> {
public:
    static std::span<const MapEntry<PaintCounter>> messageMap() { return {}; }
    Handled route(const Message& message) override
    {
        if (message.id == WM_PAINT) {
            ++paints;
            GetUpdateRect(message.window, &area, FALSE);
        }
        if (message.id == WM_ERASEBKGND)
            ++erases;
        return kDefault;
    }
    int paints = 0;
    int erases = 0;
    RECT area{}; // of the last paint
};

} // namespace tessera
