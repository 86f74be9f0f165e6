#include "system/Registry.h"

namespace tessera {
namespace {

StorageType storageOf(DWORD type)
{
    switch (type) {
    case REG_SZ:
        return StorageType::Text;
    case REG_BINARY:
        return StorageType::Binary;
    case REG_DWORD:
        return StorageType::Number;
    default:
        return StorageType::Other;
    }
}

DWORD systemType(StorageType type)
{
    switch (type) {
    case StorageType::Text:
        return REG_SZ;
    case StorageType::Number:
        return REG_DWORD;
    default:
        return REG_BINARY;
    }
}

} // namespace

RegistryKey RegistryKey::open(HKEY root, const std::string& path, REGSAM access)
{
    KeyHandle key;
    if (RegOpenKeyExA(root, path.c_str(), 0, access, key.put()) != ERROR_SUCCESS) {
        key.release();
    }
    return RegistryKey(std::move(key));
}

RegistryKey RegistryKey::create(HKEY root, const std::string& path, REGSAM access)
{
    KeyHandle key;
    if (RegCreateKeyExA(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, key.put(),
                        nullptr) != ERROR_SUCCESS) {
        key.release();
    }
    return RegistryKey(std::move(key));
}

bool RegistryKey::removeTree(HKEY root, const std::string& path)
{
    RegistryKey key = open(root, path, KEY_ALL_ACCESS);
    if (!key) {
        return false;
    }
    bool good = true;
    for (const std::string& child : key.subKeys()) {
        good = removeTree(key.get(), child) && good;
    }
    key = RegistryKey();
    return RegDeleteKeyA(root, path.c_str()) == ERROR_SUCCESS && good;
}

std::optional<StoredValue> RegistryKey::read(const std::string& name) const
{
    DWORD type = 0;
    DWORD size = 0;
    if (!m_key ||
        RegQueryValueExA(m_key.get(), name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    StoredValue value;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) { // somebody may write a longer one meanwhile
        value.bytes.resize(size + 1);   // never empty, so that there is always somewhere to write
        size = static_cast<DWORD>(value.bytes.size());
        status = RegQueryValueExA(m_key.get(), name.c_str(), nullptr, &type, value.bytes.data(), &size);
    }
    if (status != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.bytes.resize(size);
    value.type = storageOf(type);
    return value;
}

bool RegistryKey::write(const std::string& name, const StoredValue& value)
{
    return m_key && RegSetValueExA(m_key.get(), name.c_str(), 0, systemType(value.type), value.bytes.data(),
                                   static_cast<DWORD>(value.bytes.size())) == ERROR_SUCCESS;
}

bool RegistryKey::removeValue(const std::string& name)
{
    return m_key && RegDeleteValueA(m_key.get(), name.c_str()) == ERROR_SUCCESS;
}

std::optional<std::string> RegistryKey::text(const std::string& name) const
{
    const std::optional<StoredValue> value = read(name);
    if (!value || value->type != StorageType::Text) {
        return std::nullopt;
    }
    const std::string text(value->bytes.begin(), value->bytes.end());
    return text.substr(0, text.find('\0'));
}

std::optional<std::uint32_t> RegistryKey::number(const std::string& name) const
{
    const std::optional<StoredValue> value = read(name);
    std::uint32_t number = 0;
    if (!value || value->type != StorageType::Number || !ByteReader(value->bytes).take(number)) {
        return std::nullopt;
    }
    return number;
}

bool RegistryKey::setText(const std::string& name, const std::string& text)
{
    StoredValue value{StorageType::Text, {text.begin(), text.end()}};
    value.bytes.push_back(0);
    return write(name, value);
}

bool RegistryKey::setNumber(const std::string& name, std::uint32_t number)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&number);
    return write(name, {StorageType::Number, {bytes, bytes + sizeof number}});
}

std::vector<std::string> RegistryKey::subKeys() const
{
    std::vector<std::string> names;
    char name[256]; // the longest name of a key has 255 characters
    for (DWORD index = 0; m_key; ++index) {
        DWORD length = sizeof name;
        if (RegEnumKeyExA(m_key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        names.emplace_back(name, length);
    }
    return names;
}

RegistryStore::RegistryStore(std::string basePath) : m_basePath(std::move(basePath)) {}

std::optional<StoredValue> RegistryStore::read(const std::string& group, const std::string& name)
{
    return RegistryKey::open(HKEY_CURRENT_USER, m_basePath + group).read(name);
}

bool RegistryStore::write(const std::string& group, const std::string& name, const StoredValue& value)
{
    return RegistryKey::create(HKEY_CURRENT_USER, m_basePath + group).write(name, value);
}

} // namespace tessera
