#include "shell/ClassFactory.h"

#include "shell/InterfaceControl.h"
#include "system/Border.h"
#include "system/ComPtr.h"

namespace tessera {

STDMETHODIMP ClassFactory::QueryInterface(REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) {
        return E_NOINTERFACE;
    }
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::Release()
{
    const ULONG left = --m_references;
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    if (outer) {
        return CLASS_E_NOAGGREGATION;
    }
    return comBorder([&] {
        ComPtr<InterfaceControl> control;
        control.attach(new InterfaceControl);
        return control->QueryInterface(id, object);
    });
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock)
{
    lock ? ModuleUse::add() : ModuleUse::remove();
    return S_OK;
}

} // namespace tessera
