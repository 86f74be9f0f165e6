#pragma once

#include "ports/SettingsStore.h"

#include <string>
#include <vector>

namespace tessera {

// How a tree was left: nodes by the keys on their way from the root.
struct TreeState {
    std::vector<std::string> open;
    std::string top; // the first line in view; empty: as it comes

    bool empty() const { return open.empty() && top.empty(); }
};

// In the group "View"; `tree` names the tree. What is missing or unsound is as in a new tree.
TreeState loadTreeState(SettingsStore& store, const std::string& tree);
// Of more open nodes the first 4,096 are kept.
void saveTreeState(SettingsStore& store, const std::string& tree, const TreeState& state);

} // namespace tessera
