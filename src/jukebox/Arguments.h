#pragma once

#include "system/Com.h"

#include <cstdint>
#include <string>

namespace tessera::jukebox {

// The arguments of a call, strictly as the member's table says: no conversions between texts and
// numbers, so that a caller's mistake shows.
class Arguments {
public:
    // Throws HostError(DISP_E_BADPARAMCOUNT) when there are more or fewer.
    Arguments(const DispatchCall& call, std::size_t expected);

    // Both throw HostError(DISP_E_TYPEMISMATCH) when the argument is of another type.
    std::int32_t number(std::size_t index) const;
    std::wstring text(std::size_t index) const;

private:
    const DispatchCall& m_call;
};

// For members that take nothing.
void expectNoArguments(const DispatchCall& call);

Variant textResult(const std::wstring& text);

} // namespace tessera::jukebox
