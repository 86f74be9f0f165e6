#include "support/Plugin.h"

#include "base/Text.h"
#include "shell/Identifiers.h"
#include "system/Registry.h"
#include "system/Variant.h"

#include <gtest/gtest.h>
#include <ocidl.h>

namespace tessera {
namespace {

constexpr const char* kPluginKey =
    "Software\\J. River\\Music Exchange\\1.0\\Media Jukebox\\Plugins\\Interface\\Tessera 2.0";

std::string guidText(const GUID& guid)
{
    wchar_t text[40] = L"";
    StringFromGUID2(guid, text, 40);
    return toCodePage(wideView(text));
}

std::string classKey(const std::string& below = "")
{
    return "CLSID\\" + guidText(kInterfaceClass) + below;
}

std::string classText(const std::string& key, const std::string& name = "")
{
    return RegistryKey::open(HKEY_CLASSES_ROOT, key).text(name).value_or("(missing)");
}

bool keyExists(HKEY root, const std::string& key)
{
    return static_cast<bool>(RegistryKey::open(root, key));
}

void expectClassKeys()
{
    const std::string clsid = guidText(kInterfaceClass);
    const std::string libid = guidText(kTypeLibrary);
    const struct {
        std::string key;
        std::string text;
    } expected[] = {
        {"Tessera2.Interface.1", "Interface Class"},
        {"Tessera2.Interface.1\\CLSID", clsid},
        {"Tessera2.Interface", "Interface Class"},
        {"Tessera2.Interface\\CLSID", clsid},
        {"Tessera2.Interface\\CurVer", "Tessera2.Interface.1"},
        {classKey(), "Interface Class"},
        {classKey("\\ProgID"), "Tessera2.Interface.1"},
        {classKey("\\VersionIndependentProgID"), "Tessera2.Interface"},
        {classKey("\\ToolboxBitmap32"), pluginPath() + ", 102"},
        {classKey("\\InprocServer32"), pluginPath()},
        {classKey("\\MiscStatus"), "0"},
        {classKey("\\MiscStatus\\1"), "131473"},
        {classKey("\\TypeLib"), libid},
        {classKey("\\Version"), "1.0"},
    };
    for (const auto& entry : expected) {
        EXPECT_EQ(classText(entry.key), entry.text) << entry.key;
    }
    for (const char* marker : {"\\Programmable", "\\Control", "\\Insertable"}) {
        EXPECT_TRUE(keyExists(HKEY_CLASSES_ROOT, classKey(marker))) << marker;
    }
    EXPECT_EQ(classText(classKey("\\InprocServer32"), "ThreadingModel"), "Apartment");
    EXPECT_TRUE(keyExists(HKEY_CLASSES_ROOT, "TypeLib\\" + libid + "\\1.0"));
}

void expectPluginEntry()
{
    const RegistryKey key = RegistryKey::open(HKEY_CURRENT_USER, kPluginKey);
    EXPECT_EQ(key.text("CLSID"), guidText(kInterfaceClass));
    EXPECT_EQ(key.number("IVersion"), 1U);
    EXPECT_EQ(key.text("Version"), "2.00.00");
    EXPECT_EQ(key.number("PluginMode"), 1U);
    for (const char* name : {"Company", "URL", "Copyright"}) {
        EXPECT_FALSE(key.text(name).value_or("").empty()) << name;
    }
}

TEST(Registration, TwiceWritesTheSameAndUnregisteringLeavesTheHostsEntry)
{
    forgetSettings();
    const PluginModule module;
    ASSERT_TRUE(module);
    for (int round = 0; round < 2; ++round) {
        // What an older version left below the class goes.
        RegistryKey::create(HKEY_CLASSES_ROOT, classKey("\\Leftover"));
        ASSERT_EQ(module.call("DllRegisterServer"), S_OK);
        expectClassKeys();
        expectPluginEntry();
        EXPECT_FALSE(keyExists(HKEY_CLASSES_ROOT, classKey("\\Leftover")));
    }
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(module.call("DllUnregisterServer"), S_OK);
        for (const std::string& gone :
             {std::string("Tessera2.Interface.1"), std::string("Tessera2.Interface"), classKey(),
              "TypeLib\\" + guidText(kTypeLibrary)}) {
            EXPECT_FALSE(keyExists(HKEY_CLASSES_ROOT, gone)) << gone;
        }
    }
    expectPluginEntry();
}

TEST(Registration, ClassIsMadeByItsNameAndOnlyWhereItIsAsked)
{
    const PluginModule module;
    ASSERT_EQ(module.call("DllRegisterServer"), S_OK);
    CLSID id{};
    ASSERT_EQ(CLSIDFromProgID(L"Tessera2.Interface", &id), S_OK);
    ComPtr<IDispatch> control;
    ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, control.putVoid()), S_OK);
    EXPECT_FALSE(module.canUnload());

    DISPID member = 0;
    wchar_t name[] = L"terminate";
    LPOLESTR names[] = {name};
    EXPECT_EQ(control->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &member), S_OK);
    EXPECT_EQ(member, 2);
    DISPPARAMS nothing{};
    EXPECT_EQ(control->Invoke(3, IID_NULL, 0, DISPATCH_METHOD, &nothing, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    const auto classInfo = control.query<IProvideClassInfo>();
    ComPtr<ITypeInfo> info;
    ASSERT_TRUE(classInfo);
    EXPECT_EQ(classInfo->GetClassInfo(info.put()), S_OK);

    ComPtr<IUnknown> aggregated;
    EXPECT_EQ(CoCreateInstance(id, control.get(), CLSCTX_INPROC_SERVER, IID_IUnknown, aggregated.putVoid()),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(module.call("DllUnregisterServer"), S_OK);
}

} // namespace
} // namespace tessera
