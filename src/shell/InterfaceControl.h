#pragma once

#include "shell/ControlWindow.h"
#include "shell/IInterface.h"
#include "system/ComPtr.h"
#include "system/ModuleUse.h"

#include <atomic>
#include <memory>
#include <ocidl.h>
#include <oleidl.h>

namespace tessera {

class TesseraMain;

// The ActiveX control: a place in the container's window, and the two methods that start and stop
// the plug-in there. Apartment-threaded. It only translates; the work is TesseraMain's.
class InterfaceControl final : public IInterface,
                               public IOleObject,
                               public IOleInPlaceObject,
                               public IOleInPlaceActiveObject,
                               public IOleControl,
                               public IPersistStreamInit,
                               public IViewObject2,
                               public IProvideClassInfo,
                               public ISupportErrorInfo,
                               private ControlEvents {
public:
    InterfaceControl();

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override;

    // IDispatch and IInterface
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD kinds, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* argument) override;
    STDMETHODIMP Init(IDispatch* pDisp) override;
    STDMETHODIMP Terminate() override;

    // IOleObject
    STDMETHODIMP SetClientSite(IOleClientSite* site) override;
    STDMETHODIMP GetClientSite(IOleClientSite** site) override;
    STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    STDMETHODIMP Close(DWORD option) override;
    STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetClipboardData(DWORD, IDataObject** data) override;
    STDMETHODIMP DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG index, HWND parent,
                        LPCRECT place) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID* id) override;
    STDMETHODIMP GetUserType(DWORD form, LPOLESTR* type) override;
    STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP Advise(IAdviseSink* sink, DWORD* connection) override;
    STDMETHODIMP Unadvise(DWORD connection) override;
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** advises) override;
    STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // IOleWindow, IOleInPlaceObject
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT place, LPCRECT clip) override;
    STDMETHODIMP ReactivateAndUndo() override { return INPLACE_E_NOTUNDOABLE; }

    // IOleInPlaceActiveObject
    STDMETHODIMP TranslateAccelerator(LPMSG message) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

    // IOleControl
    STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
    STDMETHODIMP OnMnemonic(MSG*) override { return S_OK; }
    STDMETHODIMP OnAmbientPropertyChange(DISPID) override { return S_OK; }
    STDMETHODIMP FreezeEvents(BOOL) override { return S_OK; }

    // IPersistStreamInit: there is nothing to keep
    STDMETHODIMP GetClassID(CLSID* id) override;
    STDMETHODIMP IsDirty() override { return S_FALSE; }
    STDMETHODIMP Load(IStream*) override { return S_OK; }
    STDMETHODIMP Save(IStream*, BOOL) override { return S_OK; }
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
    STDMETHODIMP InitNew() override { return S_OK; }

    // IViewObject2
    STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC targetDevice,
                      HDC dc, LPCRECTL bounds, LPCRECTL windowBounds, BOOL(CALLBACK* goOn)(ULONG_PTR),
                      ULONG_PTR goOnArgument) override;
    STDMETHODIMP GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colours) override;
    STDMETHODIMP Freeze(DWORD, LONG, void*, DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP Unfreeze(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
    STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
    STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;

    // IProvideClassInfo, ISupportErrorInfo
    STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID id) override;

private:
    ~InterfaceControl() override;

    // ControlEvents
    void focusChanged(bool inside) override;
    void windowGoing() override;

    HRESULT activateInPlace();
    HRESULT createWindow();
    void activateUi();
    void deactivateUi(bool telling);
    HRESULT translateTab(MSG& message);
    HRESULT leaveByTab(MSG& message);
    void start(IDispatch* host);
    void stop();
    ComPtr<ITypeInfo> typeInfo(const GUID& id);

    std::atomic<ULONG> m_references{1};
    ModuleUse m_use;
    ComPtr<ITypeLib> m_typeLibrary;
    ComPtr<IOleClientSite> m_site;
    ComPtr<IOleInPlaceSite> m_inPlaceSite; // while in place
    ComPtr<IOleInPlaceFrame> m_frame;
    ComPtr<IOleInPlaceUIWindow> m_uiWindow;
    ComPtr<IOleAdviseHolder> m_advises;
    ComPtr<IAdviseSink> m_viewSink;
    DWORD m_viewAspects = 0;
    DWORD m_viewFlags = 0;
    SIZEL m_extent{8000, 6000}; // in hundredths of a millimetre
    ControlWindow m_window;
    bool m_uiActive = false;
    std::shared_ptr<TesseraMain> m_main;
};

} // namespace tessera
