#include "jukebox/ControlSite.h"

#include "system/Border.h"

#include <olectl.h>

namespace tessera::jukebox {

STDMETHODIMP ControlFrame::QueryInterface(REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    const bool known = id == IID_IUnknown || id == IID_IOleWindow || id == IID_IOleInPlaceUIWindow ||
                       id == IID_IOleInPlaceFrame;
    *object = known ? static_cast<IOleInPlaceFrame*>(this) : nullptr;
    if (!known) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ControlFrame::Release()
{
    const ULONG left = --m_references;
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP ControlFrame::GetWindow(HWND* window)
{
    if (!window) {
        return E_POINTER;
    }
    *window = m_frame;
    return S_OK;
}

STDMETHODIMP ControlFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR)
{
    if (m_active) {
        m_active->object = ComPtr<IOleInPlaceActiveObject>(object);
    }
    return S_OK;
}

ControlSite::ControlSite(SiteWindows windows, ActiveObject& active) : m_windows(windows), m_active(&active)
{
    m_frame.attach(new ControlFrame(windows.frame, active));
}

void ControlSite::disconnect()
{
    m_active = nullptr;
    m_frame->disconnect();
}

STDMETHODIMP ControlSite::QueryInterface(REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IOleClientSite) {
        *object = static_cast<IOleClientSite*>(this);
    } else if (id == IID_IOleWindow || id == IID_IOleInPlaceSite) {
        *object = static_cast<IOleInPlaceSite*>(this);
    } else if (id == IID_IOleControlSite) {
        *object = static_cast<IOleControlSite*>(this);
    } else if (id == IID_IDispatch) {
        *object = static_cast<IDispatch*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ControlSite::Release()
{
    const ULONG left = --m_references;
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP ControlSite::GetContainer(IOleContainer** container)
{
    if (container) {
        *container = nullptr;
    }
    return E_NOINTERFACE;
}

STDMETHODIMP ControlSite::GetWindow(HWND* window)
{
    if (!window) {
        return E_POINTER;
    }
    *window = m_windows.area;
    return S_OK;
}

STDMETHODIMP ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                           RECT* place, RECT* clip, OLEINPLACEFRAMEINFO* info)
{
    if (!frame || !document || !place || !clip || !info) {
        return E_POINTER;
    }
    *frame = ComPtr<ControlFrame>(m_frame).detach();
    *document = nullptr;
    GetClientRect(m_windows.area, place);
    *clip = *place;
    info->fMDIApp = FALSE;
    info->hwndFrame = m_windows.frame;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

STDMETHODIMP ControlSite::TranslateAccelerator(MSG* message, DWORD)
{
    return comBorder([&] {
        const bool used = message && m_active && m_active->keyLeftOver && m_active->keyLeftOver(*message);
        return used ? S_OK : S_FALSE;
    });
}

STDMETHODIMP ControlSite::GetTypeInfoCount(UINT* count)
{
    if (!count) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

STDMETHODIMP ControlSite::Invoke(DISPID id, REFIID, LCID, WORD kinds, DISPPARAMS*, VARIANT* result,
                                 EXCEPINFO*, UINT*)
{
    const bool known = id == DISPID_AMBIENT_USERMODE || id == DISPID_AMBIENT_UIDEAD ||
                       id == DISPID_AMBIENT_SUPPORTSMNEMONICS;
    if (!known || (kinds & DISPATCH_PROPERTYGET) == 0) {
        return DISP_E_MEMBERNOTFOUND;
    }
    if (!result) {
        return E_POINTER;
    }
    result->vt = VT_BOOL;
    result->boolVal = id == DISPID_AMBIENT_USERMODE ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

} // namespace tessera::jukebox
