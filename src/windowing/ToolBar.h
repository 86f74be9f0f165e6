#pragma once

#include "windowing/Control.h"

#include <span>

namespace tessera {

// One button of a toolbar; id 0 is a separator.
struct ToolBarButton {
    UINT id = 0;
    int image = 0;
    BYTE style = BTNS_BUTTON;
    BYTE state = TBSTATE_ENABLED;
};

class ToolBar : public Control {
public:
    using Control::Control;
    static constexpr DWORD kFlat = TBSTYLE_FLAT | TBSTYLE_TRANSPARENT | TBSTYLE_TOOLTIPS | CCS_NORESIZE |
                                   CCS_NODIVIDER | CCS_NOPARENTALIGN;

    // Tool tips ask the parent by TTN_GETDISPINFOA.
    bool create(HWND parent, UINT id, std::span<const ToolBarButton> buttons, HIMAGELIST images,
                DWORD style = kFlat);
    int buttonCount() const { return static_cast<int>(send(TB_BUTTONCOUNT)); }
    void enableButton(UINT button, bool enabled) const
    {
        send(TB_ENABLEBUTTON, button, MAKELPARAM(enabled, 0));
    }
    bool buttonEnabled(UINT button) const { return send(TB_ISBUTTONENABLED, button) != 0; }
    void checkButton(UINT button, bool checked) const
    {
        send(TB_CHECKBUTTON, button, MAKELPARAM(checked, 0));
    }
    bool buttonChecked(UINT button) const { return send(TB_ISBUTTONCHECKED, button) != 0; }
    RECT buttonRect(UINT button) const; // in the toolbar's client coordinates
    SIZE size() const;                  // of all buttons
};

// One band of a rebar; sizes in pixels.
struct ReBarBand {
    HWND child = nullptr;
    std::string title;
    int width = 0;
    int minimumWidth = 0;
    int height = 0;
    UINT style = RBBS_CHILDEDGE | RBBS_GRIPPERALWAYS;
};

class ReBar : public Control {
public:
    using Control::Control;
    static constexpr DWORD kBands =
        RBS_VARHEIGHT | RBS_BANDBORDERS | CCS_NODIVIDER | CCS_NOPARENTALIGN | CCS_NORESIZE;

    bool create(HWND parent, UINT id, const RECT& place, DWORD style = kBands);
    bool addBand(const ReBarBand& band) const;
    int bandCount() const { return static_cast<int>(send(RB_GETBANDCOUNT)); }
    int height() const { return static_cast<int>(send(RB_GETBARHEIGHT)); }
};

} // namespace tessera
