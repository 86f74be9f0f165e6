#pragma once

#include "base/Bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessera {

enum class StorageType { Text, Binary, Number, Other }; // REG_SZ, REG_BINARY, REG_DWORD, anything else

struct StoredValue {
    StorageType type = StorageType::Other;
    std::vector<std::uint8_t> bytes; // as stored: texts may come without a terminator
};

// Named values in groups ("General", "Database", ...), as raw bytes.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual std::optional<StoredValue> read(const std::string& group, const std::string& name) = 0;
    // False when the store refused; the caller goes on.
    virtual bool write(const std::string& group, const std::string& name, const StoredValue& value) = 0;
};

} // namespace tessera
