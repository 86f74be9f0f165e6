#include "base/PatientFiles.h"

#include "support/FileHolder.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace tessera;
using tessera::test::FileHolder;

namespace {

class PatientFilesTest : public testing::Test {
protected:
    PatientFilesTest()
    {
        for (const std::string& path : {from, to})
            systemFiles().create(path);
    }

    TemporaryFolder folder{"patient"};
    const std::string from = folder.file("from");
    const std::string to = folder.file("to");
    std::atomic<bool> terminating{false};
    int pauses = 0;
    PatientFiles patient{systemFiles(), terminating, [this] { ++pauses; }};
};

} // namespace

TEST_F(PatientFilesTest, WhatAnotherProgramHoldsIsTriedUntilItLetsGo)
{
    const std::pair<std::string, std::function<bool(FileSystem&)>> cases[] = {
        {from, [&](FileSystem& files) { return files.readAll(from).has_value(); }},
        {from, [&](FileSystem& files) { return files.openForUpdate(from) != nullptr; }},
        {from, [&](FileSystem& files) { return files.create(from) != nullptr; }},
        {to, [&](FileSystem& files) { return files.rename(from, to); }},
        {to, [&](FileSystem& files) { return files.rename(to, from); }},
    };
    for (const auto& [held, call] : cases) {
        SCOPED_TRACE(&call - &cases[0].second);
        const FileHolder holder(held, 300);
        ASSERT_TRUE(holder.holds());
        EXPECT_FALSE(call(systemFiles()));
        EXPECT_TRUE(systemFiles().heldByAnother());
        pauses = 0;
        EXPECT_TRUE(call(patient));
        EXPECT_GT(pauses, 1);
    }
}

// What will not change by itself is known at once; so is what comes when the plug-in ends.
TEST_F(PatientFilesTest, NothingElseIsWaitedFor)
{
    SetFileAttributesA(to.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(patient.openForUpdate(to));
    SetFileAttributesA(to.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_FALSE(patient.readAll(folder.file("none")));
    EXPECT_FALSE(patient.rename(folder.file("none"), to));
    EXPECT_FALSE(patient.rename(from, folder.path()));
    EXPECT_FALSE(patient.create(folder.file("no\\folder")));
    EXPECT_EQ(pauses, 0);

    const FileHolder holder(from, 300);
    EXPECT_FALSE(systemFiles().readAll(from));
    EXPECT_TRUE(systemFiles().readAll(to));
    EXPECT_FALSE(systemFiles().heldByAnother());
    terminating = true;
    EXPECT_FALSE(patient.readAll(from));
    EXPECT_EQ(pauses, 0);
}
