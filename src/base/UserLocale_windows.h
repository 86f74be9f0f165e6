#pragma once

#include <string>
#include <windows.h>

namespace tessera {

// What the system says in the user's language. It is asked for wide text: 8-bit text would come in the
// code page of that language, which need not be the system's.

std::string userLocaleText(LCTYPE type); // empty for what the system does not know
// The flags are DATE_LONGDATE or DATE_YEARMONTH; empty for a day that the system does not format.
std::string userDateText(DWORD flags, const SYSTEMTIME& day);

} // namespace tessera
