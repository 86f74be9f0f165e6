#pragma once

#include "windowing/Control.h"

namespace tessera {

// The extended combo box: a drop-down list with images. Its list is as long as its items need, whatever the
// height of `place`. Parents get WM_COMMAND; only CBN_SELCHANGE means a choice.
class ComboBoxEx : public Control {
public:
    using Control::Control;
    bool create(HWND parent, UINT id, const RECT& place, DWORD style = CBS_DROPDOWNLIST);
    int add(const std::string& text, int image = -1, LPARAM data = 0,
            int indent = 0) const; // answers its index
    void setFont(HFONT font) const;
    void clear() const { send(CB_RESETCONTENT); }
    int count() const { return static_cast<int>(send(CB_GETCOUNT)); }
    int selection() const { return static_cast<int>(send(CB_GETCURSEL)); } // -1: none
    void select(int index) const { send(CB_SETCURSEL, static_cast<WPARAM>(index)); }
    LPARAM data(int index) const;
    std::string itemText(int index) const;
    void setImageList(HIMAGELIST list) const { send(CBEM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(list)); }
    // The inner combo box, whose drop-down list can be sized and asked.
    HWND combo() const { return reinterpret_cast<HWND>(send(CBEM_GETCOMBOCONTROL)); }

private:
    void makeRoomForList() const;
};

} // namespace tessera
