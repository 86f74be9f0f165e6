#include "settings/Settings.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <variant>

namespace tessera {

namespace {

// A value's name and where the group keeps it; the member's type decides the storage.
template <class Group>
struct Setting {
    const char* name;
    std::variant<bool Group::*, std::int32_t Group::*, std::string Group::*, double Group::*> member;
};

template <class Group>
struct Table;

template <>
struct Table<GeneralSettings> {
    using G = GeneralSettings;
    static constexpr const char* kGroup = "General";
    static constexpr Setting<G> kSettings[] = {
        {"LastPane", &G::lastPane},
        {"SupportSkinning", &G::supportSkinning},
        {"MoveThe", &G::moveThe},
        {"SortTracksByLocation", &G::sortTracksByLocation},
        {"DisableNotes", &G::disableNotes},
        {"FirstTime", &G::firstTime},
        {"ArtistFirstNames", &G::artistFirstNames},
        {"TileViewTokens", &G::tileViewTokens},
        {"TileWidth", &G::tileWidth},
        {"IconViewTokens", &G::iconViewTokens},
        {"IconCaptionHeight", &G::iconCaptionHeight},
        {"IconCaptionCentred", &G::iconCaptionCentred},
    };
};

template <>
struct Table<DatabaseSettings> {
    using G = DatabaseSettings;
    static constexpr const char* kGroup = "Database";
    static constexpr Setting<G> kSettings[] = {
        {"LastUsed", &G::lastUsed},
        {"LastSearchCriteria", &G::lastSearchCriteria},
        {"ExcludedTypes", &G::excludedTypes},
        {"ExclusionList", &G::exclusionList},
        {"ExcludeUnassigned", &G::excludeUnassigned},
        {"MinTracksPerAlbum", &G::minTracksPerAlbum},
        {"ArtworkDirectories", &G::artworkDirectories},
        {"LoadLastAtStartup", &G::loadLastAtStartup},
    };
};

template <>
struct Table<ArtworkSettings> {
    using G = ArtworkSettings;
    static constexpr const char* kGroup = "Artwork";
    static constexpr Setting<G> kSettings[] = {
        {"ImageSizeIndex", &G::imageSizeIndex}, {"CustomWidth", &G::customWidth},
        {"CustomHeight", &G::customHeight},     {"BackgroundLoading", &G::backgroundLoading},
        {"DefaultImage", &G::defaultImage},
    };
};

template <>
struct Table<BalloonSettings> {
    using G = BalloonSettings;
    static constexpr const char* kGroup = "Balloon";
    static constexpr Setting<G> kSettings[] = {
        {"Enabled", &G::enabled},
        {"ShowArtwork", &G::showArtwork},
        {"Width", &G::width},
        {"Height", &G::height},
        {"Delay", &G::delay},
        {"HeadingTokens", &G::headingTokens},
        {"TrackTokens", &G::trackTokens},
    };
};

template <>
struct Table<OverviewSettings> {
    using G = OverviewSettings;
    static constexpr const char* kGroup = "PaneOverview";
    static constexpr Setting<G> kSettings[] = {
        {"ShowSearch", &G::showSearch},       {"SearchBoxTop", &G::searchBoxTop},
        {"SearchArtist", &G::searchArtist},   {"SearchAlbum", &G::searchAlbum},
        {"SearchGenre", &G::searchGenre},     {"SearchCriteria", &G::searchCriteria},
        {"ListviewStyle", &G::listviewStyle},
    };
};

template <>
struct Table<AlbumDetailsSettings> {
    using G = AlbumDetailsSettings;
    static constexpr const char* kGroup = "PaneAlbumDetails";
    static constexpr Setting<G> kSettings[] = {
        {"ListviewStyle", &G::listviewStyle}, {"TrackDetailsCombo", &G::trackDetailsCombo},
        {"SplitMain", &G::splitMain},         {"SplitDetails", &G::splitDetails},
        {"SplitTracks", &G::splitTracks},
    };
};

template <>
struct Table<HookSettings> {
    using G = HookSettings;
    static constexpr const char* kGroup = "Hooks";
    static constexpr Setting<G> kSettings[] = {
        {"EnableMM", &G::enableMM},
        {"EnableHK", &G::enableHK},
        {"HotKey1Tokens", &G::hotKey1Tokens},
        {"HotKey2Tokens", &G::hotKey2Tokens},
    };
};

bool isRaw(const StoredValue& stored, std::size_t size)
{
    return stored.bytes.size() == size &&
           (stored.type == StorageType::Binary || (stored.type == StorageType::Number && size == 4));
}

void decode(const StoredValue& stored, std::int32_t& value)
{
    if (isRaw(stored, sizeof value))
        std::memcpy(&value, stored.bytes.data(), sizeof value);
}

void decode(const StoredValue& stored, bool& value)
{
    std::int32_t number = value ? 1 : 0;
    decode(stored, number);
    value = number != 0;
}

void decode(const StoredValue& stored, double& value)
{
    double read = 0;
    if (!isRaw(stored, sizeof read))
        return;
    std::memcpy(&read, stored.bytes.data(), sizeof read);
    if (std::isfinite(read))
        value = read;
}

void decode(const StoredValue& stored, std::string& value)
{
    if (stored.type == StorageType::Text)
        value.assign(stored.bytes.begin(), std::ranges::find(stored.bytes, std::uint8_t{0}));
}

StoredValue rawValue(StorageType type, const void* bytes, std::size_t size)
{
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    return {type, {first, first + size}};
}

StoredValue encode(std::int32_t value)
{
    return rawValue(StorageType::Number, &value, sizeof value);
}

StoredValue encode(bool value)
{
    const std::int32_t number = value ? 1 : 0;
    return rawValue(StorageType::Binary, &number, sizeof number);
}

StoredValue encode(double value)
{
    return rawValue(StorageType::Binary, &value, sizeof value);
}

StoredValue encode(const std::string& value)
{
    return rawValue(StorageType::Text, value.c_str(), value.size() + 1);
}

} // namespace

template <class Group>
Group loadSettings(SettingsStore& store)
{
    Group group;
    for (const Setting<Group>& setting : Table<Group>::kSettings) {
        if (const std::optional<StoredValue> stored = store.read(Table<Group>::kGroup, setting.name))
            std::visit([&](auto member) { decode(*stored, group.*member); }, setting.member);
    }
    return group;
}

template <class Group>
void saveSettings(SettingsStore& store, const Group& group)
{
    for (const Setting<Group>& setting : Table<Group>::kSettings) {
        store.write(Table<Group>::kGroup, setting.name,
                    std::visit([&](auto member) { return encode(group.*member); }, setting.member));
    }
}

template GeneralSettings loadSettings(SettingsStore&);
template DatabaseSettings loadSettings(SettingsStore&);
template ArtworkSettings loadSettings(SettingsStore&);
template BalloonSettings loadSettings(SettingsStore&);
template OverviewSettings loadSettings(SettingsStore&);
template AlbumDetailsSettings loadSettings(SettingsStore&);
template HookSettings loadSettings(SettingsStore&);

template void saveSettings(SettingsStore&, const GeneralSettings&);
template void saveSettings(SettingsStore&, const DatabaseSettings&);
template void saveSettings(SettingsStore&, const ArtworkSettings&);
template void saveSettings(SettingsStore&, const BalloonSettings&);
template void saveSettings(SettingsStore&, const OverviewSettings&);
template void saveSettings(SettingsStore&, const AlbumDetailsSettings&);
template void saveSettings(SettingsStore&, const HookSettings&);

} // namespace tessera
