#pragma once

#include "system/ComPtr.h"

#include <functional>
#include <ocidl.h>
#include <ole2.h>
#include <windows.h>

namespace tessera::jukebox {

// What a control's site tells of its surroundings.
struct SiteWindows {
    HWND area;  // parent of the control's window; the control fills it
    HWND frame; // top-level window of the program
};

// Where the object that wants the keyboard reports itself; shared by site and frame.
struct ActiveObject {
    ComPtr<IOleInPlaceActiveObject> object;
    // A control lets a key go that it does not use (Tab behind its last field); may be empty.
    std::function<bool(const MSG&)> keyLeftOver;
};

// The program's frame as a control sees it: no menus or tools to share.
class ControlFrame final : public IOleInPlaceFrame {
public:
    ControlFrame(HWND frame, ActiveObject& active) : m_frame(frame), m_active(&active) {}
    void disconnect() { m_active = nullptr; }
    ULONG references() const { return m_references; }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
    STDMETHODIMP RemoveMenus(HMENU) override { return S_OK; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
    STDMETHODIMP TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }

private:
    ULONG m_references = 1;
    HWND m_frame;
    ActiveObject* m_active;
};

// The place of one control: it fills its area and may be active in place.
class ControlSite final : public IOleClientSite,
                          public IOleInPlaceSite,
                          public IOleControlSite,
                          public IDispatch {
public:
    ControlSite(SiteWindows windows, ActiveObject& active);
    // The container is going: answers that need it are refused from now on.
    void disconnect();
    ULONG references() const { return m_references; }
    ULONG frameReferences() const { return m_frame->references(); }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer** container) override;
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* place,
                                  RECT* clip, OLEINPLACEFRAMEINFO* info) override;
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; } // the area decides

    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetExtendedControl(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
    STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

    // Ambient properties: the control is in use, not being designed.
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD kinds, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                        UINT*) override;

private:
    ULONG m_references = 1;
    SiteWindows m_windows;
    ActiveObject* m_active;
    ComPtr<ControlFrame> m_frame;
};

} // namespace tessera::jukebox
