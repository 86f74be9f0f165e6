#pragma once

#include "system/ComPtr.h"
#include "windowing/Window.h"

#include <functional>
#include <ocidl.h>
#include <oleidl.h>
#include <string>
#include <vector>

namespace tessera {

// A container written by hand: one top-level window, one control that fills it, and a message loop
// with accelerators of its own: Enter, Escape, Tab, F6, F10 and the arrows, every letter and digit with
// the Ctrl key, and what an album list does with that and other keys.
class TestContainer final : public IOleClientSite,
                            public IOleInPlaceSite,
                            public IOleInPlaceFrame,
                            public IOleControlSite,
                            private Window {
public:
    TestContainer();
    ~TestContainer() override;

    // In-place activates it; false when it refuses.
    bool host(const ComPtr<IDispatch>& control);
    // Closes the control and lets it go.
    void drop();
    // The control's window.
    HWND controlWindow() const;
    HWND frame() const { return handle(); }
    void resize(int width, int height);

    // Handles messages as the container's loop does, until the condition holds; false after the time.
    bool pump(const std::function<bool()>& condition, DWORD milliseconds = 10000);
    void pumpFor(DWORD milliseconds);

    // Presses keys as a user does, modifiers first, and lets them go again; the loop handles them.
    void press(std::initializer_list<BYTE> keys);

    std::vector<std::string> eaten; // keys that the container's accelerators took: "Ctrl+B"
    int tabsOffered = 0;            // Tab keys that the control gave back at its ends
    int uiActivations = 0;
    bool quit = false;                            // the loop has met the quit message
    bool quitsWithFrame = false;                  // its end posts the quit message
    std::function<void(const char*)> onCall = {}; // the control calls; its frame may go inside
    ComPtr<IOleInPlaceActiveObject> activeObject;

    // IUnknown; lives on the stack of a test
    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override { return --m_references; }
    ULONG references() const { return m_references; }

    // IOleClientSite
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer**) override { return E_NOINTERFACE; }
    STDMETHODIMP ShowObject() override { return called("ShowObject"); }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    // IOleInPlaceSite and IOleInPlaceFrame
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return called("CanInPlaceActivate"); }
    STDMETHODIMP OnInPlaceActivate() override { return called("OnInPlaceActivate"); }
    STDMETHODIMP OnUIActivate() override;
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT place,
                                  LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return called("OnUIDeactivate"); }
    STDMETHODIMP OnInPlaceDeactivate() override { return called("OnInPlaceDeactivate"); }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }
    STDMETHODIMP GetBorder(LPRECT) override { return E_NOTIMPL; }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return called("SetBorderSpace"); }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
    STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
    STDMETHODIMP GetExtendedControl(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
    STDMETHODIMP OnFocus(BOOL) override { return called("OnFocus"); }
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

private:
    WindowClass windowClass() const override { return {.name = "TestContainer"}; }
    Handled route(const Message& message) override;
    void handleOne(MSG& message);
    HRESULT called(const char* name) const
    {
        if (onCall) {
            onCall(name);
        }
        return S_OK;
    }

    std::vector<ACCEL> m_keys; // the command is the place
    HACCEL m_accelerators = nullptr;
    ULONG m_references = 1;
    ComPtr<IOleObject> m_object;
};

} // namespace tessera
