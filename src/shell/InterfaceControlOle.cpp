// The control as an object that a container embeds: site, extent, advises, view, persistence.

#include "shell/Identifiers.h"
#include "shell/InterfaceControl.h"
#include "system/Border.h"
#include "windowing/Drawing.h"

namespace tessera {

STDMETHODIMP InterfaceControl::SetClientSite(IOleClientSite* site)
{
    m_site = ComPtr<IOleClientSite>(site);
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetClientSite(IOleClientSite** site)
{
    if (!site) {
        return E_POINTER;
    }
    *site = ComPtr<IOleClientSite>(m_site).detach();
    return S_OK;
}

STDMETHODIMP InterfaceControl::Close(DWORD)
{
    const ComPtr<InterfaceControl> alive(this);
    return comBorder([&] {
        const HRESULT result = InPlaceDeactivate();
        m_window.destroy();
        if (m_advises) {
            m_advises->SendOnClose();
        }
        return result;
    });
}

STDMETHODIMP InterfaceControl::GetMoniker(DWORD, DWORD, IMoniker** moniker)
{
    if (moniker) {
        *moniker = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP InterfaceControl::GetClipboardData(DWORD, IDataObject** data)
{
    if (data) {
        *data = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP InterfaceControl::EnumVerbs(IEnumOLEVERB** verbs)
{
    if (verbs) {
        *verbs = nullptr;
    }
    return OLE_S_USEREG;
}

STDMETHODIMP InterfaceControl::GetUserClassID(CLSID* id)
{
    return GetClassID(id);
}

STDMETHODIMP InterfaceControl::GetClassID(CLSID* id)
{
    if (!id) {
        return E_POINTER;
    }
    *id = kInterfaceClass;
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetUserType(DWORD, LPOLESTR* type)
{
    constexpr wchar_t kName[] = L"Interface Class";
    if (!type) {
        return E_POINTER;
    }
    *type = static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof kName));
    if (!*type) {
        return E_OUTOFMEMORY;
    }
    memcpy(*type, kName, sizeof kName);
    return S_OK;
}

STDMETHODIMP InterfaceControl::SetExtent(DWORD aspect, SIZEL* size)
{
    if (!size) {
        return E_POINTER;
    }
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    m_extent = *size;
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetExtent(DWORD aspect, SIZEL* size)
{
    if (!size) {
        return E_POINTER;
    }
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    *size = m_extent;
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size)
{
    return GetExtent(aspect, size);
}

STDMETHODIMP InterfaceControl::Advise(IAdviseSink* sink, DWORD* connection)
{
    if (!connection) {
        return E_POINTER;
    }
    *connection = 0;
    if (!m_advises) {
        if (const HRESULT made = CreateOleAdviseHolder(m_advises.put()); FAILED(made)) {
            return made;
        }
    }
    return m_advises->Advise(sink, connection);
}

STDMETHODIMP InterfaceControl::Unadvise(DWORD connection)
{
    return m_advises ? m_advises->Unadvise(connection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP InterfaceControl::EnumAdvise(IEnumSTATDATA** advises)
{
    if (!advises) {
        return E_POINTER;
    }
    *advises = nullptr;
    return m_advises ? m_advises->EnumAdvise(advises) : S_OK;
}

STDMETHODIMP InterfaceControl::GetMiscStatus(DWORD aspect, DWORD* status)
{
    if (!status) {
        return E_POINTER;
    }
    *status = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetControlInfo(CONTROLINFO* info)
{
    if (!info) {
        return E_POINTER;
    }
    info->hAccel = nullptr;
    info->cAccel = 0;
    info->dwFlags = CTRLINFO_EATS_RETURN | CTRLINFO_EATS_ESCAPE;
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetSizeMax(ULARGE_INTEGER* size)
{
    if (!size) {
        return E_POINTER;
    }
    size->QuadPart = 0;
    return S_OK;
}

// What a designer or a printout shows in place of a window.
STDMETHODIMP InterfaceControl::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds,
                                    LPCRECTL, BOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR)
{
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    if (!bounds || !dc) {
        return E_INVALIDARG;
    }
    return comBorder([&] {
        const RECT place{bounds->left, bounds->top, bounds->right, bounds->bottom};
        const DcScope state(dc);
        fillRect(dc, place, GetSysColor(COLOR_BTNFACE));
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
        drawLine(dc, "Tessera 2.0", place, DT_CENTER | DT_VCENTER);
        return S_OK;
    });
}

STDMETHODIMP InterfaceControl::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colours)
{
    if (colours) {
        *colours = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP InterfaceControl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink)
{
    m_viewAspects = aspects;
    m_viewFlags = flags;
    m_viewSink = ComPtr<IAdviseSink>(sink);
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink)
{
    if (aspects) {
        *aspects = m_viewAspects;
    }
    if (flags) {
        *flags = m_viewFlags;
    }
    if (sink) {
        *sink = ComPtr<IAdviseSink>(m_viewSink).detach();
    }
    return S_OK;
}

} // namespace tessera
