#include "library/DatabaseReader.h"
#include "library/Marks.h"
#include "library/SampleRig.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace tessera::test {
namespace {

constexpr std::int32_t kAlbums = 120;
constexpr const char* kName = "C:\\db\\walk.ts2";

Bytes generatedDatabase()
{
    Ts2Bytes file;
    file.header(0, kAlbums * 2, kAlbums, 1, 0);
    for (std::int32_t track = 0; track < kAlbums * 2; ++track)
        file.word(0)
            .word(track + 1)
            .text(format("D:\\m\\%d.mp3", static_cast<int>(track)))
            .word(track / 2 + 1);
    for (std::int32_t album = 1; album <= kAlbums; ++album) {
        file.word(1)
            .word(album)
            .text(format("Title %d", static_cast<int>(album * album)))
            .text("MP3")
            .word(1);
        file.text("Rock").words({60, 128, 128, 1999, 0, 0}).ids({album * 2 - 1, album * 2});
        file.text("D:\\m").text("");
    }
    file.word(1).word(1).text("Lumen").word(0).word(kAlbums);
    for (std::int32_t album = 1; album <= kAlbums; ++album)
        file.word(album);
    return file.bytes;
}

// Knows every file, so that a library is loaded quickly.
class EveryFile : public FakeHost {
public:
    EveryFile()
    {
        tracks.emplace_back().fileName = u"any";
        m_file = FakeHost::file("any");
    }
    HostFilePtr file(const std::string&) override { return m_file; }

private:
    HostFilePtr m_file;
};

class MarksWalk : public testing::Test {
protected:
    JobRig rig;
    EveryFile host;
    std::unique_ptr<Database> database;
    std::map<std::int32_t, Marks> model; // what the user said
    std::set<std::int32_t> touched;      // since all was on disk
    std::mt19937 random{4711};

    int below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
    Album& album(std::int32_t id) { return *database->library().albums.at(id); }

    void start()
    {
        database = std::make_unique<Database>();
        ASSERT_TRUE(database->read(kName, host, rig.context, [] {})) << rig.prompt.text();
    }
    Marks changed(Marks marks)
    {
        switch (below(4)) {
        case 0:
            marks.rank = below(11);
            break;
        case 1:
            marks.favourite = !marks.favourite;
            break;
        case 2:
            marks.isNew = true;
            marks.newDate = 20260101 + below(28);
            break;
        default:
            marks.isNew = false;
        }
        return marks;
    }
    void markSome()
    {
        std::vector<Album*> albums;
        for (int count = below(8) == 0 ? below(40) : 1; count > 0; --count) {
            albums.push_back(&album(1 + below(kAlbums)));
            Marks& marks = model[albums.back()->id];
            marks = changed(marks);
            touched.insert(albums.back()->id);
            setMarks(*albums.back(), marks);
            ++steps;
        }
        const bool saved = database->update(kName, albums, rig.files, rig.prompt);
        EXPECT_EQ(saved, database->unsavedAlbums() == 0);
        if (saved)
            touched.clear();
    }
    void failSoon(bool lasting)
    {
        rig.files.calls = 0;
        rig.files.failingCall = 1 + below(12);
        rig.files.torn = static_cast<std::size_t>(below(120));
        if (lasting)
            rig.files.readOnly.insert(kName);
    }
    void failNoMore()
    {
        rig.files.failingCall = 0;
        rig.files.readOnly.clear();
    }
    // As a user ends and starts the program. What could not be written is lost, but not another thing.
    void restart()
    {
        const bool saved = database->saveUnsaved(kName, rig.files, rig.prompt);
        failNoMore();
        start();
        for (auto& [id, marks] : model) {
            const Marks now = marksOf(album(id));
            if (saved || !touched.contains(id)) {
                ASSERT_EQ(now, marks) << id;
            }
            marks = now;
        }
        touched.clear();
        ++restarts;
        losses += saved ? 0 : 1;
    }

    int steps = 0;
    int restarts = 0;
    int losses = 0;
};

TEST_F(MarksWalk, TenThousandMarksEndAsTheModelSays)
{
    const Bytes original = generatedDatabase();
    rig.files.files[kName] = original;
    start();
    for (std::int32_t id = 1; id <= kAlbums; ++id)
        model[id] = {};
    while (steps < 10000) {
        if (below(10) == 0)
            failSoon(below(4) == 0);
        else if (below(3) == 0)
            failNoMore();
        markSome();
        if (below(150) == 0)
            restart();
    }
    failNoMore();
    restart();
    EXPECT_GT(restarts, 5);
    EXPECT_GT(losses, 0);
    EXPECT_FALSE(rig.prompt.boxes.empty());

    JobRig fresh;
    fresh.files.files[kName] = original;
    Database expected;
    ASSERT_TRUE(expected.read(kName, host, fresh.context, [] {}));
    for (const auto& [id, marks] : model)
        setMarks(*expected.library().albums.at(id), marks);
    ASSERT_TRUE(expected.write("C:\\db\\model.ts2", fresh.context));
    EXPECT_EQ(rig.files.files[kName], fresh.files.files["C:\\db\\model.ts2"]);
    EXPECT_NE(rig.files.files[kName], original);
}

} // namespace
} // namespace tessera::test
