#pragma once

#include "ports/SettingsStore.h"

#include <map>
#include <string_view>
#include <utility>

namespace tessera {

// Settings without a registry.
class MemorySettingsStore : public SettingsStore {
public:
    std::optional<StoredValue> read(const std::string& group, const std::string& name) override
    {
        const auto found = m_values.find({group, name});
        return found == m_values.end() ? std::nullopt : std::optional(found->second);
    }

    bool write(const std::string& group, const std::string& name, const StoredValue& value) override
    {
        m_values[{group, name}] = value;
        return true;
    }

    void put(const char* group, const char* name, StorageType type, std::string_view bytes)
    {
        m_values[{group, name}] = {type, {bytes.begin(), bytes.end()}};
    }

    // By group and name.
    using Values = std::map<std::pair<std::string, std::string>, StoredValue>;
    const Values& values() const { return m_values; }

private:
    Values m_values;
};

} // namespace tessera
