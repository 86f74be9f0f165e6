#pragma once

#include "system/ActivationContext.h"
#include "windowing/Window.h"

#include <functional>
#include <memory>

namespace tessera {

class TesseraMain;

// What the control's window tells the control.
class ControlEvents {
public:
    virtual ~ControlEvents() = default;
    // The focus is inside the window now, or has left it.
    virtual void focusChanged(bool inside) = 0;
    // Everything that hangs off the window must go.
    virtual void windowGoing() = 0;
};

// The control's own window: the place of the panes, and a plain area while there are none.
class ControlWindow final : public Mapped<ControlWindow> {
public:
    static std::span<const MapEntry<ControlWindow>> messageMap();

    explicit ControlWindow(ControlEvents& events) : m_events(events) {}
    ~ControlWindow() override { destroy(); }

    bool createAt(HWND parent, const RECT& place);
    // Whose panes are shown here; null: none.
    void setMain(TesseraMain* main);
    // Says why there is nothing to see.
    void showNotice(const std::string& notice);
    // Height of the strip for the main pane, in pixels.
    int bandHeight() const { return m_bandHeight; }
    bool themed() const { return m_themed; }
    bool holdsFocus() const;
    // Places the panes as after a change of size.
    void layout();

private:
    WindowClass windowClass() const override;
    Handled onCreate(const Message& message);
    Handled onDestroy(const Message& message);
    Handled onSize(const Message& message);
    Handled onSetCursor(const Message& message);
    Handled onShow(const Message& message);
    Handled onFocus(const Message& message);
    Handled onMouseActivate(const Message& message);
    Handled onFocusMoved(const Message& message);
    Handled onErase(const Message& message);
    Handled onPaint(const Message& message);
    void watchFocus();

    ControlEvents& m_events;
    TesseraMain* m_main = nullptr;
    std::string m_notice;
    bool m_themed = true;
    int m_bandHeight = 0;
    bool m_focusInside = false;
    HHOOK m_focusHook = nullptr;
};

} // namespace tessera
