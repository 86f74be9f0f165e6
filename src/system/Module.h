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

// Where the system keeps its own libraries and programs; "" when it does not say.
std::string systemFolder();
// A library of the system by its whole path: never one of the same name in the program's folder or the
// current one. Null when it is missing; whoever loads it frees it.
HMODULE loadSystemLibrary(const char* name);

// A text of the module's version block (English, Unicode: 040904b0), such as "FileVersion"; "" when it is
// missing.
std::string versionString(std::string_view name);

} // namespace tessera
