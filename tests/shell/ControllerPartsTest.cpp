// Parts of the controller that can be looked at by themselves, and what the module carries.

#include "RunningPlugin.h"
#include "support/Plugin.h"

#include "shell/HostRegistry.h"
#include "system/Module.h"
#include "system/Registry.h"
#include "ui/ids.h"

#include <cstring>
#include <gtest/gtest.h>

namespace tessera {
namespace {

constexpr const char* kHostKey = "Software\\J. River\\Music Exchange\\1.0\\Media Jukebox";

TEST(ControllerParts, HostArtworkFolderLosesOneBackslash)
{
    forgetSettings();
    EXPECT_EQ(hostArtworkFolder(), "C:\\Program Files\\J River\\Media Jukebox\\Data\\Cover Art");
    RegistryKey key = RegistryKey::create(HKEY_CURRENT_USER, std::string(kHostKey) + "\\Properties");
    for (const auto& [stored, expected] : {std::pair{"D:\\Covers\\", "D:\\Covers"},
                                           {"D:\\Covers\\\\", "D:\\Covers\\"},
                                           {"D:\\Covers", "D:\\Covers"},
                                           {"", ""}}) {
        key.setText("ImageFileLocation", stored);
        EXPECT_EQ(hostArtworkFolder(), expected);
    }
}

TEST(ControllerParts, ListsWearTheHostsFont)
{
    forgetSettings();
    LOGFONTA font{};
    font.lfHeight = -17;
    std::strcpy(font.lfFaceName, "Courier New");
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&font);
    RegistryKey::create(HKEY_CURRENT_USER, kHostKey)
        .write("LastFont", {StorageType::Binary, {bytes, bytes + sizeof font}});
    RunningPlugin plugin;
    plugin.start();
    const HWND list = GetDlgItem(plugin.pane(paneId::kLog), controlId::kLogList);
    LOGFONTA used{};
    GetObjectA(reinterpret_cast<HFONT>(SendMessageA(list, WM_GETFONT, 0, 0)), sizeof used, &used);
    EXPECT_EQ(used.lfHeight, -17);
    EXPECT_STREQ(used.lfFaceName, "Courier New");
}

TEST(ControllerParts, ModuleCarriesItsResources)
{
    const PluginModule loaded;
    const HMODULE module = GetModuleHandleA("tessera2.dll");
    const struct {
        LPCSTR name;
        LPCSTR type;
    } resources[] = {{MAKEINTRESOURCEA(1), "TYPELIB"},   {MAKEINTRESOURCEA(2), RT_MANIFEST},
                     {MAKEINTRESOURCEA(102), RT_BITMAP}, {MAKEINTRESOURCEA(110), RT_BITMAP},
                     {MAKEINTRESOURCEA(111), RT_BITMAP}, {MAKEINTRESOURCEA(201), RT_GROUP_ICON},
                     {"LISTVIEW_BACKGROUND", "IMAGES"}};
    for (const auto& resource : resources) {
        EXPECT_TRUE(FindResourceA(module, resource.name, resource.type));
    }
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeA(pluginPath().c_str(), &ignored));
    ASSERT_TRUE(GetFileVersionInfoA(pluginPath().c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* text = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\StringFileInfo\\040904b0\\FileVersion", &text, &length));
    EXPECT_STREQ(static_cast<const char*>(text), "2.00.00");
}

} // namespace
} // namespace tessera
