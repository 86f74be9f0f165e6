#include "system/Invoke.h"

#include <vector>

namespace tessera {
namespace {

// What the called object says about its failure; the texts are not used.
class ExceptionInfo {
public:
    ExceptionInfo() = default;
    ~ExceptionInfo()
    {
        SysFreeString(m_info.bstrSource);
        SysFreeString(m_info.bstrDescription);
        SysFreeString(m_info.bstrHelpFile);
    }
    ExceptionInfo(const ExceptionInfo&) = delete;
    ExceptionInfo& operator=(const ExceptionInfo&) = delete;

    EXCEPINFO* get() { return &m_info; }
    HRESULT code()
    {
        if (m_info.pfnDeferredFillIn) {
            m_info.pfnDeferredFillIn(&m_info);
        }
        return FAILED(m_info.scode) ? m_info.scode : DISP_E_EXCEPTION;
    }

private:
    EXCEPINFO m_info{};
};

} // namespace

Variant invokeWith(IDispatch* object, DISPID id, WORD kind, std::span<const Variant> arguments)
{
    if (!object) {
        throw HostError(E_POINTER);
    }
    // The system wants them from the last to the first; the callee does not change them.
    std::array<VARIANTARG, 4> few;
    std::vector<VARIANTARG> many(arguments.size() > few.size() ? arguments.size() : 0);
    VARIANTARG* const reversed = many.empty() ? few.data() : many.data();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        reversed[arguments.size() - 1 - i] = arguments[i].get();
    }
    DISPID putId = DISPID_PROPERTYPUT;
    const bool isPut = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{reversed, isPut ? &putId : nullptr, static_cast<UINT>(arguments.size()),
                          isPut ? 1U : 0U};
    Variant result;
    ExceptionInfo exception;
    UINT badArgument = 0;
    const HRESULT code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                        isPut ? nullptr : result.put(), exception.get(), &badArgument);
    if (code == DISP_E_EXCEPTION) {
        throw HostError(exception.code());
    }
    checkResult(code);
    return result;
}

} // namespace tessera
