#include "system/ComPtr.h"

#include <ole2.h>

namespace tessera {

void checkResult(HRESULT result)
{
    if (FAILED(result)) {
        throw HostError(result);
    }
}

ComInit::ComInit(DWORD model) : m_initialised(SUCCEEDED(CoInitializeEx(nullptr, model))) {}

ComInit::~ComInit()
{
    if (m_initialised) {
        CoUninitialize();
    }
}

OleInit::OleInit() : m_initialised(SUCCEEDED(OleInitialize(nullptr))) {}

OleInit::~OleInit()
{
    if (m_initialised) {
        OleUninitialize();
    }
}

} // namespace tessera
