#include "Plugin.h"

#include "shell/Identifiers.h"
#include "system/Invoke.h"
#include "system/Registry.h"

#include <algorithm>

namespace tessera {

std::string pluginPath()
{
    std::string path = TESSERA_DLL;
    std::ranges::replace(path, '/', '\\');
    return path.starts_with('\\') ? "Z:" + path : path;
}

HRESULT PluginModule::call(const char* name) const
{
    using Export = HRESULT(STDAPICALLTYPE*)();
    const auto function =
        reinterpret_cast<Export>(reinterpret_cast<void*>(GetProcAddress(m_module.get(), name)));
    return function ? function() : E_NOINTERFACE;
}

ComPtr<IDispatch> PluginModule::makeControl() const
{
    using GetClass = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto getClass = reinterpret_cast<GetClass>(
        reinterpret_cast<void*>(GetProcAddress(m_module.get(), "DllGetClassObject")));
    ComPtr<IClassFactory> factory;
    checkResult(getClass(kInterfaceClass, IID_IClassFactory, factory.putVoid()));
    ComPtr<IDispatch> control;
    checkResult(factory->CreateInstance(nullptr, IID_IDispatch, control.putVoid()));
    return control;
}

bool pluginLoaded()
{
    return GetModuleHandleA("tessera2.dll") != nullptr;
}

HRESULT init(const ComPtr<IDispatch>& control, IDispatch* host)
{
    callMethod(control.get(), 1, Variant(host));
    return S_OK;
}

HRESULT terminate(const ComPtr<IDispatch>& control)
{
    callMethod(control.get(), 2);
    return S_OK;
}

void forgetSettings()
{
    RegistryKey::removeTree(HKEY_CURRENT_USER, "Software\\Brackenfold");
    RegistryKey::removeTree(HKEY_CURRENT_USER, "Software\\J. River");
}

} // namespace tessera
