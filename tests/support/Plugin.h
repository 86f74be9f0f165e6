#pragma once

#include "system/ComPtr.h"
#include "system/Handle.h"

#include <oleauto.h>
#include <string>
#include <windows.h>

namespace tessera {

// Full path of the plug-in under test.
std::string pluginPath();

// The plug-in's module, loaded as long as the object lives.
class PluginModule {
public:
    PluginModule() : m_module(LoadLibraryA(pluginPath().c_str())) {}
    explicit operator bool() const { return static_cast<bool>(m_module); }

    // DllRegisterServer and the like; E_NOINTERFACE when there is no such export.
    HRESULT call(const char* name) const;
    ComPtr<IDispatch> makeControl() const;
    bool canUnload() const { return call("DllCanUnloadNow") == S_OK; }

private:
    ModuleHandle m_module;
};

bool pluginLoaded();

HRESULT init(const ComPtr<IDispatch>& control, IDispatch* host);
HRESULT terminate(const ComPtr<IDispatch>& control);

// The plug-in's settings of earlier tests are gone.
void forgetSettings();

} // namespace tessera
