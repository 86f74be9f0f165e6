#include "library/SampleRig.h"

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

TEST(Writer, EveryFileSystemFailureKeepsTheOldDatabaseOrWritesTheNewOne)
{
    const Bytes old = sampleDatabase(nullptr, "OLD");
    bool reachedTheEnd = false;
    for (int call = 1; !reachedTheEnd; ++call) {
        SCOPED_TRACE(call);
        SampleRig rig;
        ASSERT_TRUE(rig.read(sampleDatabase()));
        rig.files.files[SampleRig::kName] = old;
        rig.log.lines.clear();
        rig.files.calls = 0;
        rig.files.failingCall = call;
        const bool good = rig.database.write(SampleRig::kName, rig.context);
        reachedTheEnd = rig.files.calls < call;
        EXPECT_EQ(rig.log.lines.back(), "    Finished");
        EXPECT_EQ(rig.log.level, 0);
        if (good) {
            EXPECT_NE(rig.files.files[SampleRig::kName], old);
        } else {
            EXPECT_EQ(rig.files.files[SampleRig::kName], old);
        }
        EXPECT_TRUE(good || rig.prompt.boxes.size() == 1) << rig.prompt.text();
        EXPECT_FALSE(rig.files.files.contains(std::string(SampleRig::kName) + ".tmp"));
    }
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
