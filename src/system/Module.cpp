#include "system/Module.h"

extern "C" IMAGE_DOS_HEADER __ImageBase; // the linker's name for the start of this module

namespace tessera {

HINSTANCE moduleInstance()
{
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::string modulePath(HMODULE module)
{
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD length = GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::string programPath()
{
    return modulePath(nullptr);
}

bool systemIsWine()
{
    const HMODULE library = GetModuleHandleA("ntdll.dll");
    return library && GetProcAddress(library, "wine_get_version");
}

std::string systemFolder()
{
    char folder[MAX_PATH] = {};
    const UINT length = GetSystemDirectoryA(folder, sizeof folder);
    return length > 0 && length < sizeof folder ? std::string(folder) : std::string();
}

HMODULE loadSystemLibrary(const char* name)
{
    const std::string folder = systemFolder();
    return folder.empty() ? nullptr : LoadLibraryA((folder + "\\" + name).c_str());
}

} // namespace tessera
