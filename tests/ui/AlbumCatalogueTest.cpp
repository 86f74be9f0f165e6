#include "ui/AlbumCatalogue.h"
#include "AlbumFixture.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

class AlbumCatalogueTest : public testing::Test {
protected:
    AlbumPlaces search(const char* criteria, SearchFields fields = {})
    {
        m_catalogue.fill(m_library);
        AlbumPlaces found;
        m_catalogue.search(criteria, fields, found);
        return found;
    }
    AlbumPlaces sorted(int column, bool ascending)
    {
        AlbumPlaces places = search("");
        m_catalogue.sort(places, column, ascending);
        return places;
    }

    Library m_library;
    AlbumCatalogue m_catalogue;
};

TEST_F(AlbumCatalogueTest, AnyEnabledFieldMayHoldTheCriteria)
{
    Artist& quartet = addArtist(m_library, "The Harbour Quartet");
    Artist& lumen = addArtist(m_library, "LUMEN");
    addAlbum(m_library, "Early", lumen).genre = "Jazz";
    addAlbum(m_library, "Yearling", quartet).genre = "Rock";
    addAlbum(m_library, "Quartets", lumen).genre = "Chamber jazz";
    const AlbumPlaces all{0, 1, 2};
    const struct {
        const char* criteria;
        SearchFields fields;
        AlbumPlaces found;
    } cases[] = {
        {"", {false, false, false}, all},
        {"ear", {}, {0, 1}},
        {"QUARTET", {}, {1, 2}},
        {"QUARTET", {true, false, false}, {1}},
        {"quartet", {false, true, false}, {2}},
        {"jAzZ", {}, {0, 2}},
        {"jazz", {true, true, false}, {}},
        {"early", {false, false, false}, {}},
        {"harbour quartet", {}, {1}},
        {"harbour  quartet", {}, {}},
        {"early jazz", {}, {}},
        {"*", {}, {}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(search(each.criteria, each.fields), each.found) << each.criteria;
}

TEST_F(AlbumCatalogueTest, AlbumWithoutArtistAndLettersWithAccents)
{
    Artist& artist = addArtist(m_library, "Bj\xD6rk");
    addAlbum(m_library, "one", artist);
    addAlbum(m_library, "two", artist).artist = nullptr;
    EXPECT_EQ(search("bj\xF6rk"), AlbumPlaces{0});
    EXPECT_EQ(search("two"), AlbumPlaces{1});
}

TEST_F(AlbumCatalogueTest, NumbersCompareAsNumbersDatesAsDatesTextsCaseBlind)
{
    Artist& artist = addArtist(m_library, "a");
    Album& first = addAlbum(m_library, "beta", artist, 0);
    Album& second = addAlbum(m_library, "Alpha", artist, -1);
    Album& third = addAlbum(m_library, "ALPHA", artist, 1975);
    first.duration = 59 * 3600;
    second.duration = 100 * 3600;
    third.duration = 3;
    first.rank = 10;
    second.rank = 9;
    first.minBitrate = 96;
    second.minBitrate = 1000;
    third.minBitrate = 128;
    first.newDate = 20250101; // no longer New: its column shows nothing
    second.newDate = 20021003;
    third.newDate = 20020930;
    second.set(kAlbumNew, true);
    third.set(kAlbumNew, true);
    const struct {
        int column;
        AlbumPlaces up;
        AlbumPlaces down;
    } cases[] = {
        {0, {1, 2, 0}, {0, 1, 2}},                              // a tie keeps its order either way
        {1, {0, 1, 2}, {0, 1, 2}},                              // nothing but ties
        {3, {2, 0, 1}, {1, 0, 2}},                              // durations, not their texts
        {4, {0, 2, 1}, {1, 2, 0}},  {8, {1, 0, 2}, {2, 0, 1}},  // -1, none, 1975
        {10, {2, 1, 0}, {0, 1, 2}}, {12, {0, 2, 1}, {1, 2, 0}}, // September before October
        {14, {1, 2, 0}, {0, 1, 2}},                             // paths
    };
    for (const auto& each : cases) {
        EXPECT_EQ(sorted(each.column, true), each.up) << each.column;
        EXPECT_EQ(sorted(each.column, false), each.down) << each.column;
    }
}

TEST_F(AlbumCatalogueTest, TiesKeepTheOrderOfTheSortBefore)
{
    Artist& b = addArtist(m_library, "b");
    Artist& a = addArtist(m_library, "a");
    addAlbum(m_library, "1", b, 2000);
    addAlbum(m_library, "2", a, 2000);
    addAlbum(m_library, "3", b, 1990);
    AlbumPlaces places = search("");
    m_catalogue.sort(places, 1, true);
    m_catalogue.sort(places, 8, true);
    EXPECT_EQ(places, (AlbumPlaces{2, 1, 0}));
}

TEST_F(AlbumCatalogueTest, IdsWithGapsAreFound)
{
    Artist& artist = addArtist(m_library, "a");
    for (const std::int32_t id : {3, 70, 2000000000}) {
        auto album = std::make_unique<Album>();
        album->id = id;
        album->artist = &artist;
        m_library.albums[id] = std::move(album);
    }
    m_catalogue.fill(m_library);
    EXPECT_EQ(m_catalogue.find(70), 1u);
    EXPECT_EQ(m_catalogue.find(2000000000), 2u);
    for (const std::int32_t id : {-5, 0, 4, 2000000001})
        EXPECT_EQ(m_catalogue.find(id), m_catalogue.size());
}

} // namespace
} // namespace tessera
