#include "base/Clock.h"
#include "base/PatientFiles.h"
#include "library/KeptDatabases.h"
#include "library/SampleRig.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tessera::test {
namespace {

TEST(Writer, EmptyLibraryIsAHeader)
{
    SampleRig rig;
    Ts2Bytes header;
    header.header(0, 0, 0, 0, 0);
    EXPECT_EQ(rig.written(), header.bytes);
    EXPECT_EQ(rig.log.text(), "Writing Database\n"
                              "    Writing header information\n"
                              "    Writing tracks - 0\n"
                              "    Writing albums - 0\n"
                              "    Writing artists - 0\n"
                              "    Finished");
    EXPECT_EQ(rig.log.level, 0);
}

TEST(Writer, MissingThumbnailLeavesItsIdAlone)
{
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    rig.files.files.erase("C:\\m\\a\\folder.jpg");
    Bytes expected = sampleDatabase();
    expected.resize(expected.size() - 9); // length and bytes
    EXPECT_EQ(rig.written(), expected);
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the thumbnail file 'C:\\m\\a\\folder.jpg'!");
    EXPECT_EQ(rig.database.library().albums.at(1)->imageLength, 0u);
    EXPECT_EQ(rig.log.lines[rig.log.lines.size() - 2], "    Writing images - 1");
}

TEST(Writer, SoundPreviousFileIsKeptAndABadOnePushesNothingOut)
{
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    const std::string backup = std::string(SampleRig::kName) + ".bak";
    ASSERT_TRUE(rig.database.write(SampleRig::kName, rig.context));
    EXPECT_EQ(rig.files.files[backup], sampleDatabase());
    rig.files.files[SampleRig::kName] = bytesOf("not a database");
    ASSERT_TRUE(rig.database.write(SampleRig::kName, rig.context));
    EXPECT_EQ(rig.files.files[backup], sampleDatabase());
    EXPECT_EQ(rig.files.files[SampleRig::kName], sampleDatabase());
    EXPECT_EQ(rig.files.files.size(), 3u); // no temporary file
    EXPECT_EQ(rig.prompt.text(), "");
}

TEST(Writer, RefusedFolderFileAndFullDiskAreTold)
{
    for (const char* refused : {"C:\\db", SampleRig::kName}) {
        SampleRig rig;
        ASSERT_TRUE(rig.read(sampleDatabase()));
        rig.files.readOnly.insert(refused);
        rig.log.lines.clear();
        EXPECT_FALSE(rig.database.write(SampleRig::kName, rig.context));
        EXPECT_EQ(rig.prompt.text(), "exclamation: Could not create the database 'C:\\db\\sample.ts2'!");
        EXPECT_EQ(rig.log.text(), "Writing Database\n    Finished");
    }
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    const auto before = rig.files.files;
    rig.files.room = 100;
    EXPECT_FALSE(rig.database.write(SampleRig::kName, rig.context));
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not write the database 'C:\\db\\sample.ts2'!");
    EXPECT_EQ(rig.files.files, before);
    EXPECT_EQ(rig.log.level, 0);
}

const std::string kTarget = SampleRig::kName;
const std::string kPrevious = kTarget + ".bak";

// The sample with a mark on its first album, its second, or both.
Bytes markedDatabase(bool first, bool second)
{
    SamplePlaces at;
    Bytes bytes = sampleDatabase(&at);
    bytes[at.firstAlbum + 4 * 10 + 5 + 3 + 4] = first ? 7 : 0;
    bytes[at.secondAlbum] = second ? 8 : 0;
    return bytes;
}

// What a user may find before a build: no file, a damaged one, or one with some marks.
std::vector<Bytes> possibleFiles()
{
    return {{},
            bytesOf("damaged"),
            markedDatabase(false, false),
            markedDatabase(true, false),
            markedDatabase(false, true),
            markedDatabase(true, true)};
}

using FileMap = std::map<std::string, Bytes>;

// True when all marks of a database are in one of the files.
bool hasMarksOf(const Bytes& bytes, const FileMap& files)
{
    const auto all = possibleFiles();
    const auto marks = [&](const Bytes& of) {
        const auto place = std::ranges::find(all, of) - all.begin();
        return place >= 3 && place < 6 ? place - 2 : 0; // a bit for each album
    };
    return std::ranges::any_of(files,
                               [&](const auto& file) { return (marks(bytes) & ~marks(file.second)) == 0; });
}

class Replacing : public testing::Test {
protected:
    std::optional<SampleRig> rig;
    FileMap before;
    const Bytes built = markedDatabase(false, false);

    // A build is done and about to be written.
    void prepare(const Bytes& target, const Bytes& previous)
    {
        rig.emplace();
        ASSERT_TRUE(rig->read(built));
        rig->files.files.erase(kTarget);
        if (!target.empty())
            rig->files.files[kTarget] = target;
        if (!previous.empty())
            rig->files.files[kPrevious] = previous;
        before = rig->files.files;
    }
    bool write() { return rig->database.write(kTarget, rig->context); }
    FileMap& after() { return rig->files.files; }
    // The new file where it did not get its name; empty: there is none.
    std::string temporary()
    {
        const auto left = leftDatabases(kTarget, rig->files);
        return left.empty() ? std::string() : left.front();
    }
    void expectMarksKept(const char* when)
    {
        for (const auto& [name, bytes] : before)
            EXPECT_TRUE(hasMarksOf(bytes, after())) << when << ": " << name;
    }
};

TEST_F(Replacing, NoMarksGetLostHoweverOftenOneBuilds)
{
    for (const Bytes& target : possibleFiles()) {
        for (const Bytes& previous : possibleFiles()) {
            prepare(target, previous);
            for (const char* build : {"first", "second", "third"}) {
                ASSERT_TRUE(write());
                EXPECT_EQ(after()[kTarget], built);
                EXPECT_EQ(temporary(), "");
                expectMarksKept(build);
            }
            EXPECT_EQ(rig->prompt.text(), "");
        }
    }
    prepare(built, markedDatabase(true, false));
    ASSERT_TRUE(write());
    EXPECT_EQ(after(), before) << "one without marks is not worth a place of its own";
    prepare(markedDatabase(true, true), markedDatabase(true, false));
    ASSERT_TRUE(write());
    EXPECT_EQ(after()[kPrevious], markedDatabase(true, true));
    EXPECT_EQ(after().size(), 3u) << "what lives on in a later one is not kept twice; and the picture";
    prepare(markedDatabase(true, false), markedDatabase(false, true));
    ASSERT_TRUE(write());
    EXPECT_EQ(after()[kTarget + ".2.bak"], markedDatabase(false, true));
    EXPECT_EQ(rig->log.lines[rig->log.lines.size() - 2],
              "    Keeping the marks of an earlier database - " + kTarget + ".2.bak");
    after()[kTarget] = markedDatabase(true, true); // which has taken them
    ASSERT_TRUE(write());
    EXPECT_FALSE(after().contains(kTarget + ".2.bak"));
}

// A lock or short memory says nothing about what is in a file.
TEST_F(Replacing, WhatCannotBeReadNowIsKept)
{
    for (const bool target : {true, false}) {
        prepare(bytesOf("who knows"), bytesOf("who knows, either"));
        rig->files.unreadable.insert(target ? kTarget : kPrevious);
        if (!target)
            after()[kTarget] = before[kTarget] = markedDatabase(true, false);
        ASSERT_TRUE(write());
        const Bytes& kept = before[target ? kTarget : kPrevious];
        EXPECT_EQ(std::ranges::count(after(), kept, &FileMap::value_type::second), 1);
        EXPECT_TRUE(target || hasMarksOf(markedDatabase(true, false), after()));
    }
}

TEST_F(Replacing, APreviousNameThatCannotBeGivenDoesNotFailTheBuild)
{
    prepare(markedDatabase(true, false), {});
    rig->files.folders.insert(kPrevious);
    ASSERT_TRUE(write());
    expectMarksKept("a folder has its name");
    EXPECT_EQ(after()[kTarget], built);
}

// Numbers for earlier databases that others have: some at the end, all but one, all.
TEST_F(Replacing, NumbersThatAreUsedUpLoseNoMarks)
{
    for (const int first : {97, 98, 99, 3, 2}) {
        SCOPED_TRACE(first);
        prepare(markedDatabase(true, false), markedDatabase(false, true));
        for (int number = first; number <= 99; ++number)
            after()[kTarget + format(".%d.bak", number)] = bytesOf("taken");
        EXPECT_EQ(write(), first > 2);
        expectMarksKept("marks");
        EXPECT_TRUE(after().contains(kTarget + ".2.bak"));
        EXPECT_EQ(after()[first > 2 ? kTarget : temporary()], built);
    }
}

// A call that fails, and a crash at a call, after which nothing is done any more.
TEST_F(Replacing, EveryFailureAndCrashKeepsTheOldDatabaseOrTheNewOne)
{
    const Bytes first = markedDatabase(true, false);
    const Bytes second = markedDatabase(false, true);
    const std::pair<Bytes, Bytes> cases[] = {
        {first, {}}, {first, second}, {markedDatabase(true, true), second}, {built, second}, {built, built}};
    for (const auto& [target, previous] : cases) {
        for (const bool crash : {false, true}) {
            bool reachedTheEnd = false;
            for (int call = 1; !reachedTheEnd; ++call) {
                SCOPED_TRACE(format("%s at %d", crash ? "crash" : "failure", call));
                prepare(target, previous);
                rig->files.calls = 0;
                (crash ? rig->files.deadFrom : rig->files.failingCall) = call;
                const bool good = write();
                reachedTheEnd = rig->files.calls < call;
                EXPECT_EQ(rig->log.lines.back(), "    Finished");
                // A picture that cannot be read is told, and left out.
                const bool told = rig->prompt.text().find("thumbnail") != std::string::npos;
                const Bytes whole(built.begin(), built.end() - (told ? 9 : 0));
                EXPECT_EQ(rig->prompt.boxes.size(), (good ? 0u : 1u) + (told ? 1u : 0u));
                expectMarksKept("marks");
                const bool inUse = after().contains(kTarget) && !after()[kTarget].empty();
                if (good) {
                    EXPECT_EQ(after()[kTarget], whole);
                } else if (inUse) {
                    EXPECT_EQ(after()[kTarget], target);
                }
                rig->files.failingCall = rig->files.deadFrom = 0;
                if (!inUse) { // told now, and at the next start
                    EXPECT_NE(rig->prompt.text().find(".bak'."), std::string::npos);
                    after().erase(kTarget);
                    rig->prompt.boxes.clear();
                    EXPECT_FALSE(rig->database.read(kTarget, rig->host, rig->context, {}));
                    EXPECT_NE(rig->prompt.text().find(".bak - the"), std::string::npos) << rig->prompt.text();
                    EXPECT_NE(rig->prompt.text().find(".tmp - a"), std::string::npos);
                    EXPECT_TRUE(rig->prompt.text().ends_with("\nRename one of them to open it."));
                } else if (rig->prompt.text().find("complete") != std::string::npos) {
                    EXPECT_EQ(after()[temporary()], whole);
                } else {
                    EXPECT_TRUE(crash || temporary().empty());
                }
            }
        }
    }
}

// What a crash left goes with the next build; what only looks like it is somebody's own.
TEST_F(Replacing, LeftFilesOfOursGoAndThoseOfOthersStay)
{
    prepare(markedDatabase(true, false), {});
    const FileMap others = {{kTarget + ".tmp", markedDatabase(false, true)},
                            {kTarget + ".0badcafe.tmp", bytesOf("a letter")},
                            {kTarget + ".tomorrow.tmp", built}};
    const std::string left[] = {kTarget + ".01234567.tmp", kTarget + ".89abcdef.tmp"};
    after().insert(others.begin(), others.end());
    after()[left[0]] = Bytes(built.begin(), built.begin() + 20);
    after()[left[1]] = {};
    ASSERT_TRUE(write());
    EXPECT_TRUE(temporary().empty());
    for (const auto& [name, bytes] : others)
        EXPECT_EQ(after()[name], bytes) << name;
    after()[left[0]] = markedDatabase(true, true); // which somebody has opened and marked
    ASSERT_TRUE(write());
    EXPECT_TRUE(after().contains(left[0]));
}

// Earlier builds wrote texts with a NUL inside as the host gave them. No load takes such a file, and the
// next build must not throw its marks away.
TEST_F(Replacing, MarksOfADatabaseThatIsNoLongerLoadedAreKept)
{
    Bytes old = markedDatabase(true, false);
    const auto title = std::ranges::search(old, std::string_view("Tides"));
    ASSERT_FALSE(title.empty());
    title[1] = 0;
    EXPECT_FALSE(SampleRig().read(old));
    prepare(old, {});
    ASSERT_TRUE(write());
    EXPECT_EQ(after()[kPrevious], old);
    EXPECT_EQ(keptMarks(kTarget, rig->files, rig->terminating).size(), 1u);
}

// A scanner looks at what was just written. It lets go, or it does not, or the plug-in ends meanwhile.
TEST_F(Replacing, FilesThatAreHeldForAMomentAreWaitedFor)
{
    const std::string names[] = {kTarget, kPrevious, kTarget + ".????????.tmp"};
    for (const std::string& held : names) {
        prepare(markedDatabase(true, false), markedDatabase(true, false));
        rig->files.held[held] = 5;
        EXPECT_TRUE(write()) << held << rig->prompt.text();
        EXPECT_EQ(after()[kTarget], built);
        EXPECT_LE(rig->files.held[held], 0);
        EXPECT_EQ(after().size(), 3u);
    }
    int pauses = 0;
    rig->files.held[kTarget] = 3;
    PatientFiles patient(rig->files, rig->terminating, [&] { ++pauses; });
    EXPECT_TRUE(patient.openForUpdate(kTarget));
    EXPECT_EQ(pauses, 3);
    rig->files.held[kTarget] = 5;
    EXPECT_TRUE(Database().read(kTarget, rig->host, rig->context, {}));
    rig->files.held[kTarget] = 1000000;
    const std::uint32_t start = tickCount();
    EXPECT_FALSE(write());
    EXPECT_GE(tickCount() - start, 1900u);
    EXPECT_EQ(rig->prompt.text(), "exclamation: Could not create the database 'C:\\db\\sample.ts2'!");
    rig->terminating = true;
    const std::uint32_t end = tickCount();
    EXPECT_FALSE(Database().read(kTarget, rig->host, rig->context, {}));
    EXPECT_LT(tickCount() - end, 1500u);
    EXPECT_EQ(rig->prompt.boxes.back(), "exclamation: Could not open the database 'C:\\db\\sample.ts2'!")
        << "nothing about what is beside a file that is there";
}

// Takes any number of bytes and only counts them.
class CountingFiles : public FakeFiles {
public:
    std::unique_ptr<OutputFile> create(const std::string& path) override
    {
        FakeFiles::create(path).reset(); // as if it were there
        return std::make_unique<Counter>(largest);
    }
    std::uint64_t largest = 0;

private:
    class Counter : public OutputFile {
    public:
        explicit Counter(std::uint64_t& total) : m_total(total) { m_total = 0; }
        bool write(ByteView bytes) override
        {
            m_total += bytes.size();
            return true;
        }
        bool seek(std::uint32_t) override { return true; }
        bool readAt(std::uint32_t, std::span<std::uint8_t>) override { return false; }
        std::optional<std::uint64_t> size() override { return m_total; }
        bool flush() override { return true; }

    private:
        std::uint64_t& m_total;
    };
};

TEST(Writer, WhatNoLoadCouldHoldIsRefused)
{
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    CountingFiles files;
    files.files[kTarget] = sampleDatabase();
    files.files["C:\\m\\a\\folder.jpg"] = Bytes(std::size_t{64} << 20);
    for (std::int32_t id = 10; id < 50; ++id) { // 2.5 GB; the last picture is not even looked for
        auto album = std::make_unique<Album>();
        album->id = id;
        album->flags = kAlbumHasImage;
        album->thumbnailFile = id < 49 ? "C:\\m\\a\\folder.jpg" : "C:\\missing.jpg";
        rig.database.library().albums.emplace(id, std::move(album));
    }
    JobContext context{files, rig.log, rig.prompt, rig.terminating};
    EXPECT_FALSE(rig.database.write(kTarget, context));
    EXPECT_EQ(rig.prompt.text(),
              "exclamation: Could not write the database 'C:\\db\\sample.ts2'!\n\nIt would be "
              "larger than 2 GB, which is more than can be loaded.");
    EXPECT_LE(files.largest, 0x7FFFFFFFU);
    EXPECT_EQ(files.files[kTarget], sampleDatabase());
    EXPECT_TRUE(leftDatabases(kTarget, files).empty());
}

TEST(Writer, CancelledAtAnyLineLeavesTheOldDatabase)
{
    for (std::size_t line = 1; line <= 6; ++line) {
        SCOPED_TRACE(line);
        SampleRig rig;
        ASSERT_TRUE(rig.read(sampleDatabase()));
        rig.files.files[SampleRig::kName] = sampleDatabase(nullptr, "OLD");
        rig.log.lines.clear();
        rig.log.terminating = &rig.terminating;
        rig.log.cancelAtLine = line;
        EXPECT_THROW(rig.database.write(SampleRig::kName, rig.context), Cancelled);
        EXPECT_EQ(rig.files.files[SampleRig::kName], sampleDatabase(nullptr, "OLD"));
        EXPECT_EQ(rig.files.files.size(), 2u);
        EXPECT_EQ(rig.log.level, 0);
    }
}

} // namespace
} // namespace tessera::test
