#include "shell/AllSettings.h"

namespace tessera {

AllSettings loadAllSettings(SettingsStore& store)
{
    AllSettings settings;
    settings.general = loadSettings<GeneralSettings>(store);
    settings.artwork = loadSettings<ArtworkSettings>(store);
    settings.database = loadSettings<DatabaseSettings>(store);
    settings.balloon = loadSettings<BalloonSettings>(store);
    settings.hooks = loadSettings<HookSettings>(store);
    settings.overview = loadSettings<OverviewSettings>(store);
    settings.albumDetails = loadSettings<AlbumDetailsSettings>(store);
    return settings;
}

void saveAllSettings(SettingsStore& store, const AllSettings& settings)
{
    saveSettings(store, settings.general);
    saveSettings(store, settings.artwork);
    saveSettings(store, settings.database);
    saveSettings(store, settings.balloon);
    saveSettings(store, settings.hooks);
    saveSettings(store, settings.overview);
    saveSettings(store, settings.albumDetails);
}

} // namespace tessera
