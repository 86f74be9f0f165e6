#include "system/Registry.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

constexpr const char* kScratch = "Software\\TesseraTest";

class Registry : public testing::Test {
protected:
    void SetUp() override { RegistryKey::removeTree(HKEY_CURRENT_USER, kScratch); }
    void TearDown() override { EXPECT_TRUE(RegistryKey::removeTree(HKEY_CURRENT_USER, kScratch)); }

    void setRaw(const char* name, DWORD type, std::string_view bytes)
    {
        const RegistryKey key = RegistryKey::create(HKEY_CURRENT_USER, kScratch);
        RegSetValueExA(key.get(), name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                       static_cast<DWORD>(bytes.size()));
    }
};

std::vector<std::uint8_t> bytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

} // namespace

TEST_F(Registry, ValuesOfAllKindsComeBackByteForByte)
{
    const StoredValue values[] = {
        {StorageType::Text, bytesOf(std::string_view("tab\t line\r\n \"quoted\" \xE9\xFF\0", 24))},
        {StorageType::Text, bytesOf(std::string_view("\0", 1))},
        {StorageType::Text, bytesOf(std::string(70000, 'x') + '\0')},
        {StorageType::Binary, bytesOf(std::string_view("\1\0\0\0", 4))},
        {StorageType::Binary, {}},
        {StorageType::Binary, std::vector<std::uint8_t>(100000, 0xA5)},
        {StorageType::Number, bytesOf("\xFF\xFF\xFF\xFF")},
    };
    RegistryStore store(std::string(kScratch) + "\\");
    for (const StoredValue& value : values) {
        ASSERT_TRUE(store.write("Group", "Name", value));
        const std::optional<StoredValue> back = store.read("Group", "Name");
        ASSERT_TRUE(back);
        EXPECT_EQ(back->type, value.type);
        EXPECT_EQ(back->bytes, value.bytes);
    }
    ASSERT_TRUE(store.write("Group", "Name", {StorageType::Text, bytesOf("abc")}));
    EXPECT_EQ(store.read("Group", "Name")->bytes, bytesOf(std::string_view("abc\0", 4)));
}

TEST_F(Registry, WhatIsMissingIsNoneAndWhatCannotBeOpenedRefuses)
{
    setRaw("present", REG_SZ, "x");
    RegistryStore store(std::string(kScratch) + "\\");
    EXPECT_FALSE(store.read("NoSuchGroup", "Name"));
    EXPECT_FALSE(RegistryKey::open(HKEY_CURRENT_USER, kScratch).read("absent"));
    RegistryKey none;
    EXPECT_FALSE(none.read("present"));
    EXPECT_FALSE(none.setNumber("present", 1));
    EXPECT_TRUE(none.subKeys().empty());
}

TEST_F(Registry, TypedReadsTakeOnlyTheirKind)
{
    setRaw("unterminated", REG_SZ, "abc");
    setRaw("two", REG_SZ, std::string_view("ab\0cd\0", 6));
    setRaw("number", REG_DWORD, std::string_view("\x01\x02\0\0", 4));
    setRaw("short", REG_DWORD, std::string_view("\x01", 1));
    setRaw("large", REG_QWORD, std::string_view("12345678", 8));
    const RegistryKey key = RegistryKey::open(HKEY_CURRENT_USER, kScratch);
    EXPECT_EQ(key.text("unterminated"), "abc");
    EXPECT_EQ(key.text("two"), "ab");
    EXPECT_EQ(key.text("number"), std::nullopt);
    EXPECT_EQ(key.number("number"), 0x0201u);
    EXPECT_EQ(key.number("short"), std::nullopt);
    EXPECT_EQ(key.number("unterminated"), std::nullopt);
    EXPECT_EQ(key.read("large")->type, StorageType::Other);
}
