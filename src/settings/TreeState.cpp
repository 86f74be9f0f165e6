#include "settings/TreeState.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const char* kGroup = "View";
constexpr const char* kOpen = "Open";
constexpr const char* kTop = "Top";
constexpr std::size_t kMostOpen = 4096;

std::vector<std::uint8_t> readBytes(SettingsStore& store, const std::string& name, StorageType type)
{
    const auto value = store.read(kGroup, name);
    return value && value->type == type ? value->bytes : std::vector<std::uint8_t>();
}

} // namespace

TreeState loadTreeState(SettingsStore& store, const std::string& tree)
{
    TreeState state;
    const std::vector<std::uint8_t> top = readBytes(store, tree + kTop, StorageType::Text);
    state.top.assign(top.begin(), std::ranges::find(top, std::uint8_t{0}));
    const std::vector<std::uint8_t> open = readBytes(store, tree + kOpen, StorageType::Binary);
    auto begin = open.begin();
    for (auto end = begin; state.open.size() < kMostOpen; begin = end + 1) {
        end = std::find(begin, open.end(), std::uint8_t{0});
        if (end == open.end())
            break;
        state.open.emplace_back(begin, end);
    }
    return state;
}

// The open nodes one behind the other, each with a 0 at its end.
void saveTreeState(SettingsStore& store, const std::string& tree, const TreeState& state)
{
    StoredValue open{StorageType::Binary, {}};
    for (std::size_t i = 0; i < std::min(state.open.size(), kMostOpen); ++i) {
        open.bytes.insert(open.bytes.end(), state.open[i].begin(), state.open[i].end());
        open.bytes.push_back(0);
    }
    StoredValue top{StorageType::Text, {state.top.begin(), state.top.end()}};
    top.bytes.push_back(0);
    store.write(kGroup, tree + kOpen, open);
    store.write(kGroup, tree + kTop, top);
}

} // namespace tessera
