#pragma once

#include "windowing/Control.h"

namespace tessera {

// A header strip of its own, such as the one above an editable list box.
class Header : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id, const RECT& place, DWORD style = 0);
    int add(const std::string& text, int width) const; // answers its index
    int count() const { return static_cast<int>(send(HDM_GETITEMCOUNT)); }
    std::string itemText(int index) const;
    void setItemWidth(int index, int width) const;
};

} // namespace tessera
