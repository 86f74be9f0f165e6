#pragma once

#include <oaidl.h>
#include <windows.h>

namespace tessera {

// The control's own interface, as in the type library. Both methods always answer S_OK.
struct IInterface : public IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Init(IDispatch* pDisp) = 0;
    virtual HRESULT STDMETHODCALLTYPE Terminate() = 0;
};

} // namespace tessera
