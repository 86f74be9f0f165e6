#include "settings/ViewState.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace tessera {

namespace {

constexpr const char* kGroup = "View";
constexpr std::size_t kMostSelected = 4096;

StoredValue stored(StorageType type, const void* bytes, std::size_t size)
{
    const auto* const first = static_cast<const std::uint8_t*>(bytes);
    return {type, {first, first + size}};
}

class Reader {
public:
    Reader(SettingsStore& store, const std::string& list) : m_store(store), m_list(list) {}

    std::int32_t number(const char* name, std::int32_t fallback) const
    {
        const auto value = m_store.read(kGroup, m_list + name);
        if (!value || value->type != StorageType::Number || value->bytes.size() != sizeof fallback)
            return fallback;
        std::memcpy(&fallback, value->bytes.data(), sizeof fallback);
        return fallback;
    }

    std::string text(const char* name) const
    {
        const auto value = m_store.read(kGroup, m_list + name);
        if (!value || value->type != StorageType::Text)
            return {};
        return {value->bytes.begin(), std::ranges::find(value->bytes, std::uint8_t{0})};
    }

    std::vector<std::int32_t> numbers(const char* name) const
    {
        const auto value = m_store.read(kGroup, m_list + name);
        if (!value || value->type != StorageType::Binary)
            return {};
        std::vector<std::int32_t> numbers(
            std::min(value->bytes.size() / sizeof(std::int32_t), kMostSelected));
        if (!numbers.empty()) // then there are bytes to copy from
            std::memcpy(numbers.data(), value->bytes.data(), numbers.size() * sizeof(std::int32_t));
        return numbers;
    }

private:
    SettingsStore& m_store;
    const std::string& m_list;
};

} // namespace

ViewState loadViewState(SettingsStore& store, const std::string& list)
{
    const Reader reader(store, list);
    ViewState state;
    state.database = reader.text("Database");
    state.sortColumn = reader.number("SortColumn", -1);
    state.ascending = reader.number("SortAscending", 1) != 0;
    state.topAlbum = reader.number("TopAlbum", 0);
    state.focusedAlbum = reader.number("FocusedAlbum", 0);
    state.selectedAlbums = reader.numbers("SelectedAlbums");
    return state;
}

void saveViewState(SettingsStore& store, const std::string& list, const ViewState& state)
{
    const auto put = [&](const char* name, const StoredValue& value) {
        store.write(kGroup, list + name, value);
    };
    const auto number = [](std::int32_t value) { return stored(StorageType::Number, &value, sizeof value); };
    const std::span selected =
        std::span(state.selectedAlbums).first(std::min(state.selectedAlbums.size(), kMostSelected));
    put("Database", stored(StorageType::Text, state.database.c_str(), state.database.size() + 1));
    put("SortColumn", number(state.sortColumn));
    put("SortAscending", number(state.ascending ? 1 : 0));
    put("TopAlbum", number(state.topAlbum));
    put("FocusedAlbum", number(state.focusedAlbum));
    put("SelectedAlbums", stored(StorageType::Binary, selected.data(), selected.size_bytes()));
}

std::int32_t loadViewNumber(SettingsStore& store, const char* name, std::int32_t fallback)
{
    const std::string anyList;
    return Reader(store, anyList).number(name, fallback);
}

void saveViewNumber(SettingsStore& store, const char* name, std::int32_t number)
{
    store.write(kGroup, name, stored(StorageType::Number, &number, sizeof number));
}

} // namespace tessera
