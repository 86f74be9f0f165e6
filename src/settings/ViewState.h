#pragma once

#include "ports/SettingsStore.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessera {

// How an album list was left: kept in the group "View", beside the seven groups of settings. The
// albums are meant only while the same database is in use.
struct ViewState {
    std::string database;         // its file name
    std::int32_t sortColumn = -1; // -1: as in the database
    bool ascending = true;
    std::int32_t topAlbum = 0;                // id of the album at the top of the view; 0: none
    std::int32_t focusedAlbum = 0;            // 0: none
    std::vector<std::int32_t> selectedAlbums; // ids in the order of the list
};

// `list` names the list; missing and unsound values are as in a new list.
ViewState loadViewState(SettingsStore& store, const std::string& list);
// Of a longer selection the first 4,096 albums are kept.
void saveViewState(SettingsStore& store, const std::string& list, const ViewState& state);

// A single number of the group.
std::int32_t loadViewNumber(SettingsStore& store, const char* name, std::int32_t fallback);
void saveViewNumber(SettingsStore& store, const char* name, std::int32_t number);

} // namespace tessera
