#include "system/DispatchServer.h"

#include "base/Text.h"

namespace tessera {

Variant DispatchCall::argument(std::size_t index) const
{
    if (index >= count()) {
        throw HostError(DISP_E_BADPARAMCOUNT);
    }
    return Variant::copyOf(m_parameters.rgvarg[count() - 1 - index]);
}

bool equalName(const wchar_t* left, std::u16string_view right)
{
    return compareWideNoCase(wideView(left), right) == 0;
}

STDMETHODIMP DispatchBase::QueryInterface(REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    if (id != IID_IUnknown && id != IID_IDispatch) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) DispatchBase::Release()
{
    const ULONG left = --m_references;
    if (left == 0) {
        quietBorder(0, [this] { return delete this, 0; });
    }
    return left;
}

STDMETHODIMP DispatchBase::GetTypeInfoCount(UINT* count)
{
    if (!count) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

STDMETHODIMP DispatchBase::GetTypeInfo(UINT, LCID, ITypeInfo** info)
{
    if (info) {
        *info = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP DispatchBase::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    if (!names || !ids) {
        return E_POINTER;
    }
    return comBorder([&] {
        for (UINT i = 0; i < count; ++i) {
            ids[i] = i == 0 ? idOfName(wideView(names[i])) : DISPID_UNKNOWN; // parameters have no names
        }
        return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
    });
}

namespace {

HRESULT raise(EXCEPINFO* exception) noexcept
{
    const HRESULT code = caughtResult();
    if (code == DISP_E_BADPARAMCOUNT || code == DISP_E_TYPEMISMATCH || !exception) {
        return code; // the caller's mistake, or a caller that wants no details
    }
    *exception = {};
    exception->scode = code;
    exception->bstrDescription =
        quietBorder(BSTR{nullptr}, [] { return Bstr(std::string_view(caughtMessage())).release(); });
    return DISP_E_EXCEPTION;
}

} // namespace

STDMETHODIMP DispatchBase::Invoke(DISPID id, REFIID, LCID, WORD kinds, DISPPARAMS* parameters,
                                  VARIANT* result, EXCEPINFO* exception, UINT*)
{
    if (!parameters) {
        return E_POINTER;
    }
    try {
        Variant value;
        if (!dispatch(DispatchCall(id, kinds, *parameters), kinds, value)) {
            return DISP_E_MEMBERNOTFOUND;
        }
        if (result) {
            *result = value.release();
        }
        return S_OK;
    } catch (...) {
        return raise(exception);
    }
}

} // namespace tessera
