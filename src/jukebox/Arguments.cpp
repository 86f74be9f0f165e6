#include "jukebox/Arguments.h"

namespace tessera::jukebox {

Arguments::Arguments(const DispatchCall& call, std::size_t expected) : m_call(call)
{
    if (call.count() != expected) {
        throw HostError(DISP_E_BADPARAMCOUNT);
    }
}

std::int32_t Arguments::number(std::size_t index) const
{
    const Variant argument = m_call.argument(index);
    switch (argument.get().vt) {
    case VT_I4:
    case VT_INT:
    case VT_UI4:
    case VT_UINT:
    case VT_I2:
    case VT_UI2:
        return argument.number();
    default:
        throw HostError(DISP_E_TYPEMISMATCH);
    }
}

std::wstring Arguments::text(std::size_t index) const
{
    const Variant argument = m_call.argument(index);
    if (argument.get().vt != VT_BSTR) {
        throw HostError(DISP_E_TYPEMISMATCH);
    }
    const std::u16string wide = argument.wide();
    return {wide.begin(), wide.end()};
}

void expectNoArguments(const DispatchCall& call)
{
    Arguments(call, 0);
}

Variant textResult(const std::wstring& text)
{
    return Variant(wideView(text.data(), text.size()));
}

} // namespace tessera::jukebox
