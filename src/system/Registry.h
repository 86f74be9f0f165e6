#pragma once

#include "ports/SettingsStore.h"
#include "system/Handle.h"

#include <optional>
#include <string>
#include <vector>

namespace tessera {

// A key of the registry, closed with the object. An object without a key reads nothing and
// refuses to write.
class RegistryKey {
public:
    RegistryKey() = default;
    static RegistryKey open(HKEY root, const std::string& path, REGSAM access = KEY_READ);
    static RegistryKey create(HKEY root, const std::string& path, REGSAM access = KEY_ALL_ACCESS);
    // With everything below it; false when the system refused or there is none.
    static bool removeTree(HKEY root, const std::string& path);

    explicit operator bool() const { return static_cast<bool>(m_key); }
    HKEY get() const { return m_key.get(); }

    // An empty name is the key's default value.
    std::optional<StoredValue> read(const std::string& name) const;
    // A text gets its terminator if it has none.
    bool write(const std::string& name, const StoredValue& value);
    bool removeValue(const std::string& name);

    // None when the value is missing or of another kind. A text ends at its first terminator.
    std::optional<std::string> text(const std::string& name) const;
    std::optional<std::uint32_t> number(const std::string& name) const;
    bool setText(const std::string& name, const std::string& text);
    bool setNumber(const std::string& name, std::uint32_t number);

    std::vector<std::string> subKeys() const;

private:
    explicit RegistryKey(KeyHandle key) : m_key(std::move(key)) {}
    KeyHandle m_key;
};

inline constexpr const char* kSettingsPath = "Software\\Brackenfold\\Tessera\\2.0\\";

// The settings of the current user: one key per group below the base path.
class RegistryStore : public SettingsStore {
public:
    // The base path ends with a backslash.
    explicit RegistryStore(std::string basePath = kSettingsPath);

    std::optional<StoredValue> read(const std::string& group, const std::string& name) override;
    bool write(const std::string& group, const std::string& name, const StoredValue& value) override;

private:
    std::string m_basePath;
};

} // namespace tessera
