#include "library/SampleRig.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tessera::test {
namespace {

class Update : public testing::Test {
protected:
    SampleRig rig;
    Album* first = nullptr;
    Album* second = nullptr;

    void SetUp() override
    {
        ASSERT_TRUE(rig.read(sampleDatabase()));
        first = rig.database.library().albums.at(1).get();
        second = rig.database.library().albums.at(3).get();
        first->rank = 9;
        first->set(kAlbumFavourite, true);
        second->newDate = 20250101;
        second->set(kAlbumNew, true);
    }
    bool update(const std::vector<Album*>& albums)
    {
        return rig.database.update(SampleRig::kName, albums, rig.files, rig.prompt);
    }
    bool update() { return update({second, first, second}); }
    bool saveUnsaved() { return rig.database.saveUnsaved(SampleRig::kName, rig.files, rig.prompt); }
    Bytes& file() { return rig.files.files[SampleRig::kName]; }
};

TEST_F(Update, WritesTheSettingsAndNothingElse)
{
    update();
    EXPECT_EQ(rig.prompt.text(), "");
    EXPECT_EQ(file(), rig.written());
    EXPECT_NE(file(), sampleDatabase());
    EXPECT_TRUE(first->columnTextsValid);
    EXPECT_EQ(columnTexts(*first)[10], "9");
    EXPECT_EQ(columnTexts(*first)[11], "Yes");
}

TEST_F(Update, AnotherRecordStopsEverything)
{
    SamplePlaces at;
    const Bytes whole = sampleDatabase(&at);
    const std::size_t end = at.secondAlbum;
    const std::size_t rank = at.firstAlbum + 4 * 10 + 5 + 3 + 4;
    for (std::size_t position = at.firstAlbum; position < end; ++position) {
        if (position == at.firstAlbum || (position >= rank && position < rank + 8))
            continue; // settings may differ
        file() = whole;
        file()[position] ^= 0x40;
        const Bytes before = file();
        rig.prompt.boxes.clear();
        update();
        ASSERT_EQ(file(), before) << position;
        ASSERT_EQ(rig.prompt.boxes.size(), 1u);
        ASSERT_NE(rig.prompt.text().find("'C:\\db\\sample.ts2' has been changed"), std::string::npos);
    }
}

// A shorter or longer file of the same records, cut anywhere, and another database of the same length.
TEST_F(Update, AnotherFileStopsEverything)
{
    SamplePlaces at;
    const Bytes whole = sampleDatabase(&at);
    std::vector<Bytes> others = {{}, whole, sampleDatabase(nullptr, "OTHER JPEG"), whole};
    others[1].push_back(0);
    std::ranges::rotate(others[3], others[3].begin() + 16); // every record somewhere else
    for (const std::size_t cut : {at.firstAlbum, at.firstAlbum + 6, at.secondAlbum, at.secondAlbum + 20,
                                  at.firstArtist, whole.size() - 1})
        others.emplace_back(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
    for (const Bytes& other : others) {
        SCOPED_TRACE(other.size());
        file() = other;
        rig.prompt.boxes.clear();
        EXPECT_FALSE(update());
        EXPECT_EQ(file(), other);
        EXPECT_EQ(rig.prompt.boxes.size(), 1U);
        EXPECT_NE(rig.prompt.text().find("has been changed by another program"), std::string::npos);
        EXPECT_EQ(rig.database.unsavedAlbums(), 2U);
    }
    file() = whole;
    EXPECT_TRUE(update({}));
    EXPECT_EQ(file(), rig.written());
}

TEST_F(Update, EveryFailureIsToldAndLeavesWholeRecords)
{
    const Bytes whole = file();
    const Bytes updated = rig.written();
    bool reachedTheEnd = false;
    for (int call = 1; !reachedTheEnd; ++call) {
        SCOPED_TRACE(call);
        file() = whole;
        rig.prompt.boxes.clear();
        rig.files.calls = 0;
        rig.files.failingCall = call;
        const bool saved = update();
        reachedTheEnd = rig.files.calls < call;
        EXPECT_EQ(saved, reachedTheEnd);
        EXPECT_EQ(rig.prompt.boxes.size(), reachedTheEnd ? 0u : 1u);
        EXPECT_EQ(rig.database.unsavedAlbums(), reachedTheEnd ? 0U : 2U);
        EXPECT_EQ(file().size(), whole.size());
        if (reachedTheEnd) {
            EXPECT_EQ(file(), updated);
        }
    }
}

// However much of a record the failing write left, the next change writes all that is missing.
TEST_F(Update, TheNextChangeMendsAFileThatWasLeftHalfWay)
{
    const Bytes whole = file();
    const Bytes updated = rig.written();
    const int calls = [&] {
        rig.files.calls = 0;
        EXPECT_TRUE(update());
        return rig.files.calls;
    }();
    for (int call = 1; call <= calls; ++call) {
        for (std::size_t torn = 0; torn < 100; ++torn) {
            file() = whole;
            rig.files.calls = 0;
            rig.files.failingCall = call;
            rig.files.torn = torn;
            ASSERT_FALSE(update());
            ASSERT_TRUE(update({second})) << call << " torn at " << torn << ": " << rig.prompt.text();
            ASSERT_EQ(file(), updated);
            ASSERT_EQ(rig.database.unsavedAlbums(), 0U);
        }
    }
}

TEST_F(Update, BeforeTheLibraryGoesWhatIsUnsavedIsTriedOnceMore)
{
    EXPECT_TRUE(saveUnsaved()) << "nothing is unsaved";
    rig.files.readOnly.insert(SampleRig::kName);
    EXPECT_FALSE(update());
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the database 'C:\\db\\sample.ts2'!");
    rig.prompt.boxes.clear();
    EXPECT_FALSE(saveUnsaved());
    EXPECT_EQ(rig.prompt.text(), "exclamation: The changes of 2 albums could not be saved and are lost!");
    rig.files.readOnly.clear();
    rig.prompt.boxes.clear();
    EXPECT_TRUE(saveUnsaved());
    EXPECT_EQ(file(), rig.written());
    EXPECT_EQ(rig.prompt.text(), "");
    EXPECT_EQ(lostChangesText(1), "The changes of 1 album could not be saved and are lost!");
}

TEST_F(Update, AClearedLibraryHasNothingUnsaved)
{
    rig.files.readOnly.insert(SampleRig::kName);
    EXPECT_FALSE(update());
    rig.database.clear();
    EXPECT_EQ(rig.database.unsavedAlbums(), 0U);
    rig.prompt.boxes.clear();
    EXPECT_TRUE(saveUnsaved());
    EXPECT_EQ(rig.prompt.text(), "");
}

TEST_F(Update, AMissingFileAndAFolderInItsPlaceAreTold)
{
    rig.files.files.erase(SampleRig::kName);
    EXPECT_FALSE(update());
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the database 'C:\\db\\sample.ts2'!");
    rig.files.folders.insert(SampleRig::kName);
    EXPECT_FALSE(update());
    EXPECT_EQ(rig.prompt.boxes.size(), 2U);
}

} // namespace
} // namespace tessera::test
