#pragma once

#include "base/Text.h"

namespace tessera {

// The system's code page, known by what it makes of some bytes.
inline bool isCodePage932()
{
    return toWide("\x83\x5C") == u"\u30BD";
}
inline bool isCodePage1252()
{
    return toWide("\x80\xD0") == u"\u20AC\u00D0";
}

} // namespace tessera
