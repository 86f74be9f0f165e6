#include "system/Module.h"

#include <vector>
#include <winver.h>

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

std::string versionString(std::string_view name)
{
    const std::string path = modulePath(moduleInstance());
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
    std::vector<std::uint8_t> block(size);
    if (size == 0 || !GetFileVersionInfoA(path.c_str(), 0, size, block.data())) {
        return "";
    }
    const std::string place = "\\StringFileInfo\\040904b0\\" + std::string(name);
    void* text = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(block.data(), place.c_str(), &text, &length) || length == 0) {
        return "";
    }
    const std::string value(static_cast<const char*>(text), length);
    return value.c_str(); // the length counts the terminator on some systems
}

} // namespace tessera
