#pragma once

#include <string>
#include <string_view>
#include <windows.h>

namespace tessera {

// The module that this code is part of: the plug-in, the stand-in or a test program.
HINSTANCE moduleInstance();
// Full path of a module; null: the program of this process.
std::string modulePath(HMODULE module);
std::string programPath();

// The system is Wine, some of whose controls need help that those of Windows do not.
bool systemIsWine();

// A text of the module's version block (English, Unicode: 040904b0), such as "FileVersion"; "" when it is
// missing.
std::string versionString(std::string_view name);

} // namespace tessera
