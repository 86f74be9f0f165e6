#include "jukebox/PluginEntry.h"

#include "system/Registry.h"

#include <gtest/gtest.h>

namespace tessera::jukebox {
namespace {

TEST(PluginEntries, ThePreferredEntryElseTheFirstWithAClass)
{
    const std::string path = "Software\\Tessera jukebox test";
    const auto add = [&](const char* name, const char* classId) {
        RegistryKey::create(HKEY_CURRENT_USER, path + "\\" + name).setText("CLSID", classId);
    };
    EXPECT_FALSE(findPlugin("Mine", path));
    add("Broken", "no class");
    EXPECT_FALSE(findPlugin("Mine", path));
    add("Other", "{00000000-0000-0000-0000-000000000001}");
    ASSERT_TRUE(findPlugin("Mine", path));
    EXPECT_EQ(findPlugin("Mine", path)->name, "Other");
    add("Mine", "{00000000-0000-0000-0000-000000000002}");
    EXPECT_EQ(findPlugin("Mine", path)->classId.Data4[7], 2);
    RegistryKey::removeTree(HKEY_CURRENT_USER, path);
}

} // namespace
} // namespace tessera::jukebox
