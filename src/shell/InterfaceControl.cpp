#include "shell/InterfaceControl.h"

#include "shell/Identifiers.h"
#include "shell/TesseraMain.h"
#include "system/Border.h"
#include "system/Module.h"
#include "system/Variant.h"

#include <array>

namespace tessera {

namespace {

// The interfaces that the control answers to, in one table.
struct InterfaceEntry {
    const IID* id;
    void* (*cast)(InterfaceControl*);
};

template <class Wanted>
void* castTo(InterfaceControl* control)
{
    return static_cast<Wanted*>(control);
}

template <class Wanted, class By>
void* castBy(InterfaceControl* control)
{
    return static_cast<Wanted*>(static_cast<By*>(control));
}

const std::array kInterfaces{
    InterfaceEntry{&IID_IUnknown, castBy<IUnknown, IInterface>},
    InterfaceEntry{&IID_IDispatch, castBy<IDispatch, IInterface>},
    InterfaceEntry{&kIInterface, castTo<IInterface>},
    InterfaceEntry{&IID_IOleObject, castTo<IOleObject>},
    InterfaceEntry{&IID_IOleWindow, castBy<IOleWindow, IOleInPlaceObject>},
    InterfaceEntry{&IID_IOleInPlaceObject, castTo<IOleInPlaceObject>},
    InterfaceEntry{&IID_IOleInPlaceActiveObject, castTo<IOleInPlaceActiveObject>},
    InterfaceEntry{&IID_IOleControl, castTo<IOleControl>},
    InterfaceEntry{&IID_IPersist, castBy<IPersist, IPersistStreamInit>},
    InterfaceEntry{&IID_IPersistStreamInit, castTo<IPersistStreamInit>},
    InterfaceEntry{&IID_IViewObject, castBy<IViewObject, IViewObject2>},
    InterfaceEntry{&IID_IViewObject2, castTo<IViewObject2>},
    InterfaceEntry{&IID_IProvideClassInfo, castTo<IProvideClassInfo>},
    InterfaceEntry{&IID_ISupportErrorInfo, castTo<ISupportErrorInfo>},
};

} // namespace

InterfaceControl::InterfaceControl() : m_window(*this)
{
    const std::wstring path(systemWide(toWide(modulePath(moduleInstance()))));
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, m_typeLibrary.put()))) {
        LoadRegTypeLib(kTypeLibrary, 1, 0, LOCALE_NEUTRAL, m_typeLibrary.put());
    }
}

InterfaceControl::~InterfaceControl()
{
    stop();
    m_window.destroy();
}

STDMETHODIMP InterfaceControl::QueryInterface(REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    for (const InterfaceEntry& entry : kInterfaces) {
        if (*entry.id == id) {
            *object = entry.cast(this);
            AddRef();
            return S_OK;
        }
    }
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) InterfaceControl::Release()
{
    const ULONG left = --m_references;
    if (left == 0) {
        m_references = 1; // calls that the end brings with it find a living object
        delete this;
    }
    return left;
}

ComPtr<ITypeInfo> InterfaceControl::typeInfo(const GUID& id)
{
    ComPtr<ITypeInfo> info;
    if (!m_typeLibrary) {
        throw HostError(TYPE_E_CANTLOADLIBRARY);
    }
    checkResult(m_typeLibrary->GetTypeInfoOfGuid(id, info.put()));
    return info;
}

STDMETHODIMP InterfaceControl::GetTypeInfoCount(UINT* count)
{
    if (!count) {
        return E_POINTER;
    }
    *count = 1;
    return S_OK;
}

STDMETHODIMP InterfaceControl::GetTypeInfo(UINT index, LCID, ITypeInfo** info)
{
    if (!info) {
        return E_POINTER;
    }
    *info = nullptr;
    if (index != 0) {
        return DISP_E_BADINDEX;
    }
    return comBorder([&] {
        *info = typeInfo(kIInterface).detach();
        return S_OK;
    });
}

STDMETHODIMP InterfaceControl::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    return comBorder([&] { return DispGetIDsOfNames(typeInfo(kIInterface).get(), names, count, ids); });
}

STDMETHODIMP InterfaceControl::Invoke(DISPID id, REFIID, LCID, WORD kinds, DISPPARAMS* parameters,
                                      VARIANT* result, EXCEPINFO* exception, UINT* argument)
{
    return comBorder([&] {
        return DispInvoke(static_cast<IInterface*>(this), typeInfo(kIInterface).get(), id, kinds, parameters,
                          result, exception, argument);
    });
}

STDMETHODIMP InterfaceControl::Init(IDispatch* pDisp)
{
    userBorder(m_window.handle(), 0, [&] {
        start(pDisp);
        return 0;
    });
    return S_OK;
}

STDMETHODIMP InterfaceControl::Terminate()
{
    quietBorder(0, [&] {
        stop();
        return 0;
    });
    return S_OK;
}

// A second start is answered and changes nothing where the plug-in runs here already, and leaves a
// plain area where it runs in another control.
void InterfaceControl::start(IDispatch* host)
{
    if (m_main) {
        return;
    }
    if (!m_window) {
        activateInPlace();
    }
    if (!m_window) {
        return;
    }
    if (TesseraMain::active()) {
        m_window.showNotice("Tessera is already running in another window.");
        return;
    }
    const ComPtr<InterfaceControl> alive(this);
    const std::shared_ptr<TesseraMain> main = TesseraMain::make(m_window);
    m_main = main;
    m_window.setMain(main.get());
    main->start(host);
    m_window.layout();
}

void InterfaceControl::stop()
{
    const std::shared_ptr<TesseraMain> main = m_main;
    if (!main) {
        return;
    }
    const ComPtr<InterfaceControl> alive(this);
    main->terminate();
    if (m_main == main) {
        m_main.reset();
        m_window.setMain(nullptr);
    }
    TesseraMain::letGo(main);
}

void InterfaceControl::windowGoing()
{
    stop();
}

STDMETHODIMP InterfaceControl::GetClassInfo(ITypeInfo** info)
{
    if (!info) {
        return E_POINTER;
    }
    *info = nullptr;
    return comBorder([&] {
        *info = typeInfo(kInterfaceClass).detach();
        return S_OK;
    });
}

STDMETHODIMP InterfaceControl::InterfaceSupportsErrorInfo(REFIID id)
{
    return id == kIInterface ? S_OK : S_FALSE;
}

} // namespace tessera
