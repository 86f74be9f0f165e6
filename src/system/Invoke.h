#pragma once

#include "system/Variant.h"

#include <array>
#include <span>

namespace tessera {

// Late-bound calls. A missing object throws HostError(E_POINTER), a refused call HostError with
// its code; the code inside a raised exception is taken where it means failure.

// Arguments in the callee's order; kind is one of DISPATCH_*.
Variant invokeWith(IDispatch* object, DISPID id, WORD kind, std::span<const Variant> arguments);

template <class... Arguments>
Variant invoke(IDispatch* object, DISPID id, WORD kind, const Arguments&... arguments)
{
    const std::array<Variant, sizeof...(Arguments)> list{Variant(arguments)...};
    return invokeWith(object, id, kind, list);
}

template <class... Arguments>
Variant callMethod(IDispatch* object, DISPID id, const Arguments&... arguments)
{
    return invoke(object, id, DISPATCH_METHOD, arguments...);
}

template <class... Arguments>
Variant getProperty(IDispatch* object, DISPID id, const Arguments&... arguments)
{
    return invoke(object, id, DISPATCH_PROPERTYGET, arguments...);
}

template <class Value>
void putProperty(IDispatch* object, DISPID id, const Value& value)
{
    invoke(object, id, DISPATCH_PROPERTYPUT, value);
}

} // namespace tessera
