#include "settings/Settings.h"

#include "support/MemorySettingsStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace tessera;
using namespace std::string_view_literals;

namespace {

constexpr std::string_view kOne = "\1\0\0\0"sv;

std::string_view bytesOf(const double& value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

// What is in the store, as "type:bytes".
std::string stored(SettingsStore& store, const char* group, const char* name)
{
    const std::optional<StoredValue> value = store.read(group, name);
    if (!value)
        return "none";
    static constexpr const char* kTypes[] = {"text:", "binary:", "number:", "other:"};
    return kTypes[static_cast<int>(value->type)] + std::string(value->bytes.begin(), value->bytes.end());
}

} // namespace

TEST(Settings, AnEmptyStoreGivesTheDefaults)
{
    MemorySettingsStore store;
    EXPECT_EQ(loadSettings<GeneralSettings>(store).lastPane, 3000);
    const auto database = loadSettings<DatabaseSettings>(store);
    EXPECT_TRUE(database.loadLastAtStartup);
    EXPECT_EQ(database.minTracksPerAlbum, 1);
    EXPECT_EQ(std::count(database.artworkDirectories.begin(), database.artworkDirectories.end(), '\t'), 2);
}

TEST(Settings, ValuesAreStoredInTheirForms)
{
    MemorySettingsStore store;
    GeneralSettings general;
    general.lastPane = 2000;
    general.iconViewTokens = "<Album>\r\n";
    AlbumDetailsSettings details;
    details.splitTracks = 12.5;
    saveSettings(store, general);
    saveSettings(store, details);

    EXPECT_EQ(store.size(), 12u + 5u);
    EXPECT_EQ(stored(store, "General", "LastPane"), "number:\xD0\x07\0\0"sv);
    EXPECT_EQ(stored(store, "General", "MoveThe"), "binary:\1\0\0\0"sv);
    EXPECT_EQ(stored(store, "General", "IconCaptionCentred"), "binary:\0\0\0\0"sv);
    EXPECT_EQ(stored(store, "General", "IconViewTokens"), "text:<Album>\r\n\0"sv);
    EXPECT_EQ(stored(store, "PaneAlbumDetails", "SplitTracks"),
              "binary:" + std::string(bytesOf(details.splitTracks)));
}

TEST(Settings, EveryGroupComesBackAsItWasSaved)
{
    MemorySettingsStore store;
    DatabaseSettings database;
    database.lastUsed = "C:\\Music\\all.ts2";
    database.excludeUnassigned = true;
    ArtworkSettings artwork;
    artwork.customHeight = -1;
    artwork.backgroundLoading = false;
    BalloonSettings balloon;
    balloon.delay = 0;
    balloon.trackTokens.clear();
    OverviewSettings overview;
    overview.searchGenre = false;
    HookSettings hooks;
    hooks.hotKey2Tokens = "<Name>";
    saveSettings(store, database);
    saveSettings(store, artwork);
    saveSettings(store, balloon);
    saveSettings(store, overview);
    saveSettings(store, hooks);

    EXPECT_EQ(loadSettings<DatabaseSettings>(store).lastUsed, "C:\\Music\\all.ts2");
    EXPECT_TRUE(loadSettings<DatabaseSettings>(store).excludeUnassigned);
    EXPECT_EQ(loadSettings<ArtworkSettings>(store).customHeight, -1);
    EXPECT_FALSE(loadSettings<ArtworkSettings>(store).backgroundLoading);
    EXPECT_EQ(loadSettings<BalloonSettings>(store).delay, 0);
    EXPECT_EQ(loadSettings<BalloonSettings>(store).trackTokens, "");
    EXPECT_FALSE(loadSettings<OverviewSettings>(store).searchGenre);
    EXPECT_TRUE(loadSettings<OverviewSettings>(store).searchAlbum);
    EXPECT_EQ(loadSettings<HookSettings>(store).hotKey2Tokens, "<Name>");
}

TEST(Settings, NumbersAndFlagsTakeAnyFourBytes)
{
    const struct {
        StorageType type;
        std::string_view bytes;
        std::int32_t width; // 364 by default
        bool centred;       // false by default
    } cases[] = {
        {StorageType::Number, kOne, 1, true},
        {StorageType::Binary, kOne, 1, true},
        {StorageType::Binary, "\xFF\xFF\xFF\xFF"sv, -1, true},
        {StorageType::Number, "\0\0\0\0"sv, 0, false},
        {StorageType::Number, "\1\0\0"sv, 364, false},
        {StorageType::Binary, "\1"sv, 364, false},
        {StorageType::Binary, "\1\0\0\0\0\0\0\0"sv, 364, false},
        {StorageType::Number, ""sv, 364, false},
        {StorageType::Text, kOne, 364, false},
        {StorageType::Other, kOne, 364, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        MemorySettingsStore store;
        store.put("General", "TileWidth", c.type, c.bytes);
        store.put("General", "IconCaptionCentred", c.type, c.bytes);
        const auto general = loadSettings<GeneralSettings>(store);
        EXPECT_EQ(general.tileWidth, c.width);
        EXPECT_EQ(general.iconCaptionCentred, c.centred);
    }
}

TEST(Settings, AFlagThatIsSetByDefaultOutlivesAnUnsoundValue)
{
    MemorySettingsStore store;
    store.put("General", "MoveThe", StorageType::Binary, "\0\0"sv);
    EXPECT_TRUE(loadSettings<GeneralSettings>(store).moveThe);
}

TEST(Settings, TextsNeedNoTerminatorAndEndAtOne)
{
    const struct {
        StorageType type;
        std::string_view bytes;
        std::string_view text;
    } cases[] = {
        {StorageType::Text, "path\0"sv, "path"},       {StorageType::Text, "path"sv, "path"},
        {StorageType::Text, "path\0more\0"sv, "path"}, {StorageType::Text, ""sv, ""},
        {StorageType::Binary, "path\0"sv, "default"},  {StorageType::Number, "path"sv, "default"},
        {StorageType::Other, "path\0"sv, "default"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        MemorySettingsStore store;
        store.put("Hooks", "HotKey1Tokens", c.type, c.bytes);
        const std::string expected = c.text == "default" ? HookSettings{}.hotKey1Tokens : std::string(c.text);
        EXPECT_EQ(loadSettings<HookSettings>(store).hotKey1Tokens, expected);
    }
}

TEST(Settings, DoublesNeedEightBytesAndAFiniteValue)
{
    const double small = 0.25;
    const double infinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    const struct {
        StorageType type;
        std::string_view bytes;
        double value;
    } cases[] = {
        {StorageType::Binary, bytesOf(small), 0.25}, {StorageType::Binary, bytesOf(infinite), 50.0},
        {StorageType::Binary, bytesOf(none), 50.0},  {StorageType::Binary, kOne, 50.0},
        {StorageType::Number, kOne, 50.0},           {StorageType::Text, bytesOf(small), 50.0},
    };
    for (const auto& c : cases) {
        MemorySettingsStore store;
        store.put("PaneAlbumDetails", "SplitMain", c.type, c.bytes);
        EXPECT_EQ(loadSettings<AlbumDetailsSettings>(store).splitMain, c.value);
    }
}
