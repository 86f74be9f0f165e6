#pragma once

#include "system/ModuleUse.h"

#include <atomic>
#include <unknwn.h>
#include <windows.h>

namespace tessera {

// Makes controls of the one class.
class ClassFactory final : public IClassFactory {
public:
    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

private:
    std::atomic<ULONG> m_references{1};
    ModuleUse m_use;
};

} // namespace tessera
