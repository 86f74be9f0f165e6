#include "shell/ClassFactory.h"
#include "shell/Identifiers.h"
#include "shell/Registration.h"
#include "system/Border.h"
#include "system/ComPtr.h"
#include "system/ModuleUse.h"

using namespace tessera;

STDAPI DllCanUnloadNow()
{
    return ModuleUse::count() == 0 ? S_OK : S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object)
{
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    if (classId != kInterfaceClass) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return comBorder([&] {
        ComPtr<ClassFactory> factory;
        factory.attach(new ClassFactory);
        return factory->QueryInterface(id, object);
    });
}

STDAPI DllRegisterServer()
{
    return comBorder(registerServer);
}

STDAPI DllUnregisterServer()
{
    return comBorder(unregisterServer);
}
