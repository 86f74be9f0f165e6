#pragma once

#include "settings/Settings.h"

namespace tessera {

// The seven groups together.
struct AllSettings {
    GeneralSettings general;
    DatabaseSettings database;
    ArtworkSettings artwork;
    BalloonSettings balloon;
    HookSettings hooks;
    OverviewSettings overview;
    AlbumDetailsSettings albumDetails;
};

AllSettings loadAllSettings(SettingsStore& store);
void saveAllSettings(SettingsStore& store, const AllSettings& settings);

} // namespace tessera
