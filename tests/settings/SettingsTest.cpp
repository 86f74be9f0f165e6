#include "settings/Settings.h"

#include "base/Text.h"
#include "support/MemorySettingsStore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using namespace tessera;
using namespace std::string_view_literals;

namespace {

constexpr std::string_view kOne = "\1\0\0\0"sv;

std::string_view bytesOf(const double& value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

// A value as people write it down: "number 3000", "flag 1", "double 50", "text C:\\a|" with "|" for the
// terminator.
std::string described(const StoredValue& value)
{
    std::int32_t number = 0;
    double real = 0;
    switch (value.type) {
    case StorageType::Text:
        return "text " + std::string(value.bytes.begin(), value.bytes.end() - 1) +
               (value.bytes.back() == 0 ? "|" : " without an end");
    case StorageType::Binary:
        if (value.bytes.size() == sizeof real) {
            std::memcpy(&real, value.bytes.data(), sizeof real);
            return format("double %g", real);
        }
        [[fallthrough]];
    case StorageType::Number:
        if (value.bytes.size() != sizeof number)
            return "of another size";
        std::memcpy(&number, value.bytes.data(), sizeof number);
        return format(value.type == StorageType::Number ? "number %d" : "flag %d", number);
    default:
        return "of another type";
    }
}

template <class... Group>
void saveAll(SettingsStore& store, SettingsStore* source)
{
    (saveSettings(store, source ? loadSettings<Group>(*source) : Group{}), ...);
}

// Every group with its defaults, or as it is read from a source.
void saveAllGroups(SettingsStore& store, SettingsStore* source = nullptr)
{
    saveAll<GeneralSettings, DatabaseSettings, ArtworkSettings, BalloonSettings, OverviewSettings,
            AlbumDetailsSettings, HookSettings>(store, source);
}

std::vector<std::string> lines(const MemorySettingsStore& store)
{
    std::vector<std::string> lines;
    for (const auto& [place, value] : store.values())
        lines.push_back(place.first + "\\" + place.second + ": " + described(value));
    return lines;
}

} // namespace

// Other programs and earlier versions know these names, forms and defaults.
TEST(Settings, AFirstSessionLeavesTheDefaults)
{
    MemorySettingsStore store;
    saveAllGroups(store);
    EXPECT_EQ(join(lines(store), "\n"),
              "Artwork\\BackgroundLoading: flag 1\n"
              "Artwork\\CustomHeight: number 110\n"
              "Artwork\\CustomWidth: number 110\n"
              "Artwork\\DefaultImage: text |\n"
              "Artwork\\ImageSizeIndex: number 0\n"
              "Balloon\\Delay: number 2000\n"
              "Balloon\\Enabled: flag 1\n"
              "Balloon\\HeadingTokens: text <Artist> - <Album> - <Year>\r\n<Bitrate> kbps <Type>|\n"
              "Balloon\\Height: number 64\n"
              "Balloon\\ShowArtwork: flag 1\n"
              "Balloon\\TrackTokens: text <NumberEx>.  <Name>   (<Duration>)|\n"
              "Balloon\\Width: number 64\n"
              "Database\\ArtworkDirectories: text <MJArtworkDir>\\<Artist> - <Album>.jpg\t"
              "<AlbumPath>\\folder.jpg\t<AlbumPath>\\*front*.jpg|\n"
              "Database\\ExcludeUnassigned: flag 0\n"
              "Database\\ExcludedTypes: text |\n"
              "Database\\ExclusionList: text |\n"
              "Database\\LastSearchCriteria: text |\n"
              "Database\\LastUsed: text |\n"
              "Database\\LoadLastAtStartup: flag 1\n"
              "Database\\MinTracksPerAlbum: number 1\n"
              "General\\ArtistFirstNames: text |\n"
              "General\\DisableNotes: flag 1\n"
              "General\\FirstTime: flag 1\n"
              "General\\IconCaptionCentred: flag 0\n"
              "General\\IconCaptionHeight: number 50\n"
              "General\\IconViewTokens: text <Album> - <Year>\r\n<Artist>\r\n(<Bitrate> kbps <Type>)|\n"
              "General\\LastPane: number 3000\n"
              "General\\MoveThe: flag 1\n"
              "General\\SortTracksByLocation: flag 1\n"
              "General\\SupportSkinning: flag 1\n"
              "General\\TileViewTokens: text <Artist> - <Album> - <Year>\r\n"
              "  <Bitrate> kbps <Type>, <RankEx>, <New>, <Favourite>\r\n  <NumTracksEx>, <Duration>\r\n"
              "  <AlbumPath>|\n"
              "General\\TileWidth: number 364\n"
              "Hooks\\EnableHK: flag 0\n"
              "Hooks\\EnableMM: flag 0\n"
              "Hooks\\HotKey1Tokens: text /me is playing: <Name> - <Album>  "
              "[Time: <Duration> | <Bitrate> kbps <Type> | <FileSize>]|\n"
              "Hooks\\HotKey2Tokens: text [move]Listening To: [color=Blue]<Name>[/color] from "
              "[color=Blue]<Album>[/color] by [color=Blue]<Artist>[/color] "
              "([color=Red]<Bitrate> kbps <Type>[/color])[/move])|\n"
              "PaneAlbumDetails\\ListviewStyle: number 1\n"
              "PaneAlbumDetails\\SplitDetails: double 50\n"
              "PaneAlbumDetails\\SplitMain: double 50\n"
              "PaneAlbumDetails\\SplitTracks: double 50\n"
              "PaneAlbumDetails\\TrackDetailsCombo: number 0\n"
              "PaneOverview\\ListviewStyle: number 3\n"
              "PaneOverview\\SearchAlbum: flag 1\n"
              "PaneOverview\\SearchArtist: flag 1\n"
              "PaneOverview\\SearchBoxTop: flag 1\n"
              "PaneOverview\\SearchCriteria: text |\n"
              "PaneOverview\\SearchGenre: flag 1\n"
              "PaneOverview\\ShowSearch: flag 1");
}

// Each value is another than every other and than its default.
TEST(Settings, EveryValueComesBackAsTheMemberOfItsName)
{
    MemorySettingsStore defaults;
    saveAllGroups(defaults);
    MemorySettingsStore store;
    std::int32_t count = 4000;
    for (const auto& [place, value] : defaults.values()) {
        const std::string text = format("value %d", ++count);
        StoredValue other{value.type, {text.begin(), text.end()}};
        if (described(value).starts_with("double")) {
            const double real = count;
            const std::string_view bytes = bytesOf(real);
            other.bytes.assign(bytes.begin(), bytes.end());
        } else if (value.type == StorageType::Binary) {
            other.bytes = {static_cast<std::uint8_t>(1 - value.bytes[0]), 0, 0, 0};
        } else if (value.type == StorageType::Number) {
            other.bytes = {static_cast<std::uint8_t>(count), static_cast<std::uint8_t>(count >> 8), 0, 0};
        } else {
            other.bytes.push_back(0);
        }
        store.write(place.first, place.second, other);
    }
    MemorySettingsStore again;
    saveAllGroups(again, &store);
    EXPECT_EQ(lines(again), lines(store));

    // Members of one kind with the same default.
    const auto asText = [&](const char* group, const char* name) {
        return described(*store.read(group, name)).substr(5);
    };
    const auto database = loadSettings<DatabaseSettings>(store);
    EXPECT_EQ(database.lastUsed + "|", asText("Database", "LastUsed"));
    EXPECT_EQ(database.lastSearchCriteria + "|", asText("Database", "LastSearchCriteria"));
    EXPECT_EQ(database.excludedTypes + "|", asText("Database", "ExcludedTypes"));
    EXPECT_EQ(database.exclusionList + "|", asText("Database", "ExclusionList"));
    const auto details = loadSettings<AlbumDetailsSettings>(store);
    EXPECT_LT(details.splitDetails, details.splitMain); // in the order of their names
    EXPECT_LT(details.splitMain, details.splitTracks);
    const auto artwork = loadSettings<ArtworkSettings>(store);
    EXPECT_LT(artwork.customHeight, artwork.customWidth);
    const auto balloon = loadSettings<BalloonSettings>(store);
    EXPECT_LT(balloon.height, balloon.width);
}

template <class Group>
Group withFlagOff(const char* group, const char* name)
{
    MemorySettingsStore store;
    store.put(group, name, StorageType::Binary, "\0\0\0\0"sv);
    return loadSettings<Group>(store);
}

TEST(Settings, AFlagIsFoundByItsName)
{
    const auto general = [](const char* name) { return withFlagOff<GeneralSettings>("General", name); };
    EXPECT_FALSE(general("SupportSkinning").supportSkinning);
    EXPECT_FALSE(general("MoveThe").moveThe);
    EXPECT_FALSE(general("SortTracksByLocation").sortTracksByLocation);
    EXPECT_FALSE(general("DisableNotes").disableNotes);
    EXPECT_FALSE(general("FirstTime").firstTime);
    const auto overview = [](const char* name) {
        return withFlagOff<OverviewSettings>("PaneOverview", name);
    };
    EXPECT_FALSE(overview("ShowSearch").showSearch);
    EXPECT_FALSE(overview("SearchBoxTop").searchBoxTop);
    EXPECT_FALSE(overview("SearchArtist").searchArtist);
    EXPECT_FALSE(overview("SearchAlbum").searchAlbum);
    EXPECT_FALSE(overview("SearchGenre").searchGenre);
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
