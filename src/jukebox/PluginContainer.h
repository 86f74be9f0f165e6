#pragma once

#include "jukebox/ControlSite.h"
#include "system/Com.h"

#include <memory>
#include <string>

namespace tessera::jukebox {

// A place for one ActiveX control in a window of somebody else's. The control is in-place active
// and fills the window. Everything happens on the window's thread, which has initialised OLE.
class PluginContainer {
public:
    // The area becomes the parent of the control's window; the frame is its top-level window.
    explicit PluginContainer(SiteWindows windows) : m_windows(windows) {}
    ~PluginContainer() { close(); }
    PluginContainer(const PluginContainer&) = delete;
    PluginContainer& operator=(const PluginContainer&) = delete;

    // Creates the control and activates it. Throws HostError; nothing is left then.
    void create(const CLSID& classId);
    bool isCreated() const { return static_cast<bool>(m_control); }

    // By name, late-bound. Both throw HostError.
    void callInit(IDispatch* host);
    void callTerminate();

    // Fits the control to the area's present size.
    void resize();
    // Offers a message to the control first, as its container must; true when it was used up.
    bool translate(MSG& message);
    // Gives the control the keyboard.
    void focus();
    // What to do with keys that the control does not use, Tab behind its last field for one.
    void onKeyLeftOver(std::function<bool(const MSG&)> handler) { m_active.keyLeftOver = std::move(handler); }

    HWND controlWindow() const; // null when there is none
    IOleObject* control() const { return m_control.get(); }

    // Deactivates, closes and releases the control. Answers the references to its site that are
    // left behind, 0 when all is well.
    ULONG close() noexcept;

private:
    void attach();
    RECT place() const;
    Variant callByName(const wchar_t* name, std::span<const Variant> arguments);

    SiteWindows m_windows;
    ActiveObject m_active;
    ComPtr<ControlSite> m_site;
    ComPtr<IOleObject> m_control;
};

// Whether the module is still mapped after the system was asked to let unused servers go.
bool isStillLoaded(const std::string& modulePath);

} // namespace tessera::jukebox
