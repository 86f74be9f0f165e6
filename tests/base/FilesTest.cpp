#include "base/Files.h"

#include "support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

using namespace tessera;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::string_view text)
{
    return {text.begin(), text.end()};
}

// Refuses every write behind a number of bytes, as a full disk does.
class FullDisk : public OutputFile {
public:
    explicit FullDisk(std::size_t room) : m_room(room) {}
    bool write(ByteView data) override
    {
        ++writes;
        if (content.size() + data.size() > m_room)
            return false;
        content.insert(content.end(), data.begin(), data.end());
        return true;
    }
    bool seek(std::uint32_t) override { return false; }
    bool readAt(std::uint32_t, std::span<std::uint8_t>) override { return false; }
    std::optional<std::uint64_t> size() override { return content.size(); }
    bool flush() override { return true; }

    Bytes content;
    int writes = 0;

private:
    std::size_t m_room;
};

// What stands at a place of an open file; none when it does not reach so far.
std::optional<Bytes> readBack(OutputFile& file, std::uint32_t position, std::size_t length)
{
    Bytes buffer(length);
    return file.readAt(position, buffer) ? std::optional(buffer) : std::nullopt;
}

class Files : public testing::Test {
protected:
    FileSystem& files = systemFiles();
    TemporaryFolder folder{"files"};

    void put(const std::string& name, std::string_view text)
    {
        const auto file = files.create(folder.file(name));
        ASSERT_NE(file, nullptr);
        ASSERT_TRUE(file->write(bytes(text)));
    }
};

} // namespace

TEST_F(Files, WritesUpdatesAndReads)
{
    const std::string path = folder.file("a.ts2");
    put("a.ts2", "0123456789");
    {
        const auto file = files.openForUpdate(path);
        ASSERT_NE(file, nullptr);
        ASSERT_TRUE(file->seek(3));
        EXPECT_EQ(readBack(*file, 5, 2), bytes("56"));
        ASSERT_TRUE(file->write(bytes("ab"))); // at 3: the read has not moved it
        ASSERT_TRUE(file->write(bytes("c")));
        EXPECT_EQ(readBack(*file, 2, 5), bytes("2abc6"));
        ASSERT_TRUE(file->seek(10));
        ASSERT_TRUE(file->write(bytes("!"))); // longer by one
        EXPECT_FALSE(readBack(*file, 9, 3).has_value());
        EXPECT_FALSE(readBack(*file, 0xFFFFFFFF, 3).has_value());
        EXPECT_EQ(file->size(), 11u);
        EXPECT_TRUE(file->flush());
    }
    EXPECT_EQ(files.readAll(path), bytes("012abc6789!"));
    EXPECT_EQ(files.info(path)->size, 11u);
}

TEST_F(Files, CreateTruncatesAndUpdateNeedsAFile)
{
    put("a", "long content");
    put("a", "x");
    EXPECT_EQ(files.readAll(folder.file("a")), bytes("x"));
    EXPECT_EQ(files.openForUpdate(folder.file("none")), nullptr);
    EXPECT_FALSE(files.exists(folder.file("none")));
    EXPECT_EQ(files.create(folder.file("no\\folder")), nullptr);
}

TEST_F(Files, WhatCannotBeReadIsNone)
{
    EXPECT_FALSE(files.readAll(folder.file("none")).has_value());
    EXPECT_FALSE(files.readAll(folder.path()).has_value());
    EXPECT_FALSE(files.info(folder.file("none")).has_value());
    put("empty", "");
    EXPECT_EQ(files.readAll(folder.file("empty")), Bytes{});
}

TEST_F(Files, WhatIsCreatedNewTakesNobodysName)
{
    put("old", "old");
    EXPECT_FALSE(files.createNew(folder.file("old")));
    EXPECT_EQ(files.readAll(folder.file("old")), bytes("old"));
    ASSERT_TRUE(files.createNew(folder.file("new")));
    EXPECT_EQ(files.readAll(folder.file("new")), Bytes{});
    std::string link = folder.file("link");
    std::ranges::replace(link, '\\', '/');
    std::error_code refused; // by systems where links are for administrators
    std::filesystem::create_symlink("old", link, refused);
    EXPECT_EQ(files.createNew(folder.file("link")) == nullptr, !refused);
    EXPECT_EQ(files.readAll(folder.file("old")), bytes("old"));
}

// A host names the file, and may name anything.
TEST_F(Files, OnlyTemporaryFilesAreRemovedAsSuch)
{
    put("inside", "");
    // Another drive than that of the folder has no way from there.
    const auto way = std::filesystem::current_path().lexically_relative(folder.path());
    const std::string above = folder.file(way.empty() ? "..\\.." : way.string());
    for (const std::string& name :
         {above + "\\tessera-not-temporary", std::string("tessera-not-temporary")}) {
        ASSERT_TRUE(files.create(name)) << name;
        EXPECT_FALSE(files.removeTemporary(name));
        EXPECT_TRUE(files.remove(name));
    }
    EXPECT_FALSE(files.removeTemporary(folder.file("none")));
    EXPECT_FALSE(files.removeTemporary(folder.path() + "\\.."));
    EXPECT_TRUE(files.removeTemporary(folder.file("inside")));
    EXPECT_FALSE(files.exists(folder.file("inside")));
}

TEST_F(Files, RenameTakesThePlaceOfWhatIsThere)
{
    put("new", "new");
    put("old", "old");
    EXPECT_TRUE(files.rename(folder.file("new"), folder.file("old")));
    EXPECT_FALSE(files.exists(folder.file("new")));
    EXPECT_EQ(files.readAll(folder.file("old")), bytes("new"));
    EXPECT_FALSE(files.rename(folder.file("new"), folder.file("old")));
    EXPECT_TRUE(files.remove(folder.file("old")));
    EXPECT_FALSE(files.remove(folder.file("old")));
}

TEST_F(Files, FindMatchesTheLastComponent)
{
    put("Album Front.JPG", "");
    put("readme.txt", "");
    EXPECT_EQ(files.findFirst(folder.file("*front*.jpg")), "Album Front.JPG");
    EXPECT_EQ(files.findFirst(folder.file("read??.txt")), "readme.txt");
    EXPECT_FALSE(files.findFirst(folder.file("*.png")).has_value());
    put("Readme.TMP", "");
    EXPECT_EQ(files.findAll(folder.file("read??.t*")),
              (std::vector<std::string>{"Readme.TMP", "readme.txt"}));
    EXPECT_FALSE(files.findFirst(folder.file("none\\*")).has_value());
    // Never the folder itself or the one above it.
    const auto any = files.findFirst(folder.file("*"));
    ASSERT_TRUE(any.has_value());
    EXPECT_NE(*any, ".");
    TemporaryFolder empty("empty");
    EXPECT_FALSE(files.findFirst(empty.file("*")).has_value());
}

TEST(BufferedWriter, CollectsSmallWritesAndPassesLargeOnesOn)
{
    FullDisk disk(1000);
    BufferedWriter writer(disk, 16);
    writer.put(std::uint32_t{0x04030201});
    writer.put(std::int32_t{-1});
    writer.putText("ab");
    EXPECT_EQ(disk.writes, 0);
    const Bytes large(20, 7);
    writer.putBlock(large);
    EXPECT_EQ(disk.writes, 2); // what was collected, then the block itself
    writer.putText("");
    EXPECT_TRUE(writer.flush());
    const std::string_view expected(
        "\1\2\3\4\xFF\xFF\xFF\xFF\2\0\0\0ab\7\7\7\7\7\7\7\7\7\7\7\7\7\7\7\7\7\7\7\7\0\0\0\0", 38);
    EXPECT_EQ(disk.content, bytes(expected));
}

TEST(BufferedWriter, FileSeesWholeBuffersWhateverThePieces)
{
    FullDisk disk(1000);
    BufferedWriter writer(disk, 16);
    Bytes expected;
    const auto expectWord = [&](std::size_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            expected.push_back(static_cast<std::uint8_t>(value >> shift));
    };
    for (const std::size_t size : {2u, 3u, 10u, 1u, 15u, 16u, 17u, 33u, 0u, 5u}) {
        const std::string text(size, static_cast<char>('a' + size % 26));
        writer.putText(text);
        writer.put(static_cast<std::uint32_t>(0xF1E2D3C4 + size));
        expectWord(size);
        expected.insert(expected.end(), text.begin(), text.end());
        expectWord(0xF1E2D3C4 + size);
        EXPECT_EQ(disk.content.size() % 16, 0u) << size;
    }
    EXPECT_TRUE(writer.flush());
    EXPECT_EQ(disk.content, expected);
}

TEST(BufferedWriter, NothingGoesBeyondTheLargestFile)
{
    for (const std::size_t size : {100u, 101u}) {
        FullDisk disk(1000);
        BufferedWriter writer(disk, 16, 100);
        writer.putBlock(Bytes(50, 1));
        writer.putBlock(Bytes(size - 50, 2));
        EXPECT_EQ(writer.flush(), size == 100);
        EXPECT_EQ(writer.tooLarge(), size > 100);
        EXPECT_LE(disk.content.size(), 100u);
    }
}

TEST(BufferedWriter, TheFirstRefusalSticks)
{
    FullDisk disk(16);
    BufferedWriter writer(disk, 16);
    for (int i = 0; i < 8; ++i)
        writer.put(std::int32_t{i});
    EXPECT_FALSE(writer.flush());
    EXPECT_FALSE(writer.good());
    const int writes = disk.writes;
    writer.putText("more");
    EXPECT_FALSE(writer.flush());
    EXPECT_EQ(disk.writes, writes);
    EXPECT_EQ(disk.content.size(), 16u);
}
