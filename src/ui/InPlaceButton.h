#pragma once

#include "ui/InPlaceEdit.h"

namespace tessera {

// The "..." button beside the edited row of an editable list; made hidden.
class CInPlaceButton : public InPlaceControl {
public:
    void create(HWND list);
    void show(const RECT& rect) const { place(rect); }
    // The list hands over the button's own notification.
    void clicked() const { report(InPlaceReport::Event::Click); }
};

} // namespace tessera
