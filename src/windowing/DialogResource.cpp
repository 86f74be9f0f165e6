#include "windowing/DialogTemplate.h"

#include "system/Module.h"

#include <cstring>

namespace tessera {

DialogTemplate DialogTemplate::fromResource(UINT resource)
{
    DialogTemplate copy("", 0, 0);
    const HINSTANCE module = moduleInstance();
    const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(resource), MAKEINTRESOURCEA(5)); // a dialog
    const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    if (const void* const bytes = loaded ? LockResource(loaded) : nullptr) {
        const DWORD size = SizeofResource(module, found);
        copy.m_data.assign((size + 1) / sizeof(std::uint16_t), 0);
        std::memcpy(copy.m_data.data(), bytes, size);
    }
    return copy;
}

} // namespace tessera
