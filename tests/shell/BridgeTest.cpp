#include "FakeHost.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "shell/HostBridge.h"
#include "shell/SkinColours.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

std::vector<std::string> g_assertions;

void noteAssertion(const char* expression, const char*, unsigned long)
{
    g_assertions.push_back(expression);
}

class BridgeTest : public testing::Test {
protected:
    BridgeTest() : before(setAssertionHandler(noteAssertion)), host(makeFakeHost(script))
    {
        g_assertions.clear();
        bridge.attach(host.get());
    }
    ~BridgeTest() override { setAssertionHandler(before); }

    AssertionHandler before;
    std::shared_ptr<HostScript> script = smallLibrary();
    ComPtr<IDispatch> host;
    HostBridge bridge;
};

TEST_F(BridgeTest, EveryFieldOfAFile)
{
    const auto files = bridge.search("lumen");
    ASSERT_EQ(files->count(), 30);
    const HostFilePtr file = files->file(6);
    EXPECT_EQ(file->text(FileText::Filename), "C:\\Music\\Album 2\\02.mp3");
    EXPECT_EQ(file->text(FileText::Artist), "Artist 3");
    EXPECT_EQ(file->wideText(FileText::Album), u"Album 2");
    for (const FileText field : {FileText::Name, FileText::Genre, FileText::Comment, FileText::Custom1,
                                 FileText::Custom2, FileText::Custom3, FileText::Lyrics, FileText::Notes,
                                 FileText::FileSize, FileText::FileDate, FileText::DurationText}) {
        EXPECT_EQ(file->text(field), format("text %d", static_cast<int>(field)));
    }
    EXPECT_THROW(file->text(FileText::LastPlayed), HostError); // the fake host has none
    for (const FileNumber field : {FileNumber::Duration, FileNumber::Year, FileNumber::Bitrate,
                                   FileNumber::PlayCount, FileNumber::Rating}) {
        EXPECT_EQ(file->number(field), static_cast<int>(field) * 10);
    }
    EXPECT_EQ(file->number(FileNumber::Track), 2);
    EXPECT_EQ(bridge.playlist()->position(), 3);
    EXPECT_EQ(script->journal().front(), "search lumen");
    EXPECT_EQ(bridge.file("C:\\nowhere.mp3"), nullptr);
}

TEST_F(BridgeTest, MissingObjectsAndRefusalsAreErrors)
{
    script->failAt = 1;
    try {
        bridge.drawSkin(0);
        ADD_FAILURE();
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), E_FAIL);
    }
    script->calls = 0;
    script->failAt = 0;
    script->nullAt = 1;
    EXPECT_THROW(bridge.search(""), HostError);
    bridge.release();
    try {
        bridge.playlist();
        ADD_FAILURE();
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), kErrorPointer);
    }
}

struct PlayCase {
    bool append;
    bool playNow;
    int state;
    std::vector<std::string> journal;
};

TEST_F(BridgeTest, PlayFilesFollowsFlagsAndState)
{
    const std::vector<std::string> added{"count", "add a.mp3 -1", "add b.mp3 -1"};
    const auto played = [&](std::vector<std::string> rest) {
        std::vector<std::string> all{"clear"};
        all.insert(all.end(), added.begin(), added.end());
        all.push_back("position 6"); // behind the five that are there, the second file
        all.insert(all.end(), rest.begin(), rest.end());
        return all;
    };
    const PlayCase cases[] = {
        {true, true, 0, added},        {false, false, 0, played({"start"})},
        {false, false, 1, played({})}, {false, true, 0, played({"start"})},
        {false, true, 2, played({})},  {false, true, 1, played({"play now"})},
    };
    for (const PlayCase& each : cases) {
        const auto fresh = smallLibrary();
        fresh->colours["state"] = each.state;
        bridge.attach(makeFakeHost(fresh).get());
        bridge.playFiles({{"a.mp3", "b.mp3"}, each.append, 1, each.playNow});
        EXPECT_EQ(fresh->journal(), each.journal) << each.append << each.playNow << each.state;
    }
}

TEST_F(BridgeTest, PlayFilesWithoutItsObjectsIsAnAssertion)
{
    script->givesPlaylist = false;
    EXPECT_THROW(bridge.playFiles({{"a.mp3"}}), HostError);
    script->givesPlaylist = true;
    script->givesPlayback = false;
    EXPECT_THROW(bridge.playFiles({{"a.mp3"}}), HostError);
    EXPECT_EQ(g_assertions, (std::vector<std::string>{"pMJCurrentPlaylist != 0", "pMJPlayback != 0"}));
    EXPECT_TRUE(bridge.hostLock().try_lock()); // let go of all the same
    bridge.hostLock().unlock();
}

// Two threads in the bridge at once, each dropping what it got from the other.
TEST_F(BridgeTest, TwoThreadsUnderLoadAndFilesDieOnTheirOwnThread)
{
    std::atomic<int> wrong{0};
    const auto work = [&] {
        const ComInit com;
        for (int round = 0; round < 200; ++round) {
            const auto files = bridge.search("");
            for (int i = 0; i < 30; ++i) {
                const HostFilePtr file = files->file(i);
                wrong +=
                    file->text(FileText::Filename) == script->tracks[static_cast<std::size_t>(i)].fileName
                        ? 0
                        : 1;
                wrong += bridge.file(file->text(FileText::Filename)) ? 0 : 1;
            }
        }
    };
    {
        const Thread first("first", work);
        const Thread second("second", work);
        for (int round = 0; round < 50; ++round) {
            bridge.playFiles({{"a.mp3"}, false, 0, true});
            bridge.releaseDropped();
        }
    }
    bridge.release();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(script->strayReleases, 0);
    EXPECT_EQ(script->live, 1);
}

TEST_F(BridgeTest, InsideACallIsKnownToItsOwnThreadOnly)
{
    bool inside = false;
    script->onCall = [&](int) { inside = bridge.inCall(); };
    bridge.drawSkin(1);
    EXPECT_TRUE(inside);
    EXPECT_FALSE(bridge.inCall());
    const Thread other("other", [&] {
        const ComInit com;
        bridge.drawSkin(1);
    });
    other.waitAnsweringSentMessages();
    EXPECT_FALSE(inside);
}

TEST_F(BridgeTest, ColoursOfTheSkinAreReadBeforeTheyAreWanted)
{
    SkinColours colours(bridge);
    EXPECT_FALSE(colours.read());
    EXPECT_EQ(colours.treeText(), GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_EQ(colours.listSelectedText(), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(colours.listSelectedBackground(), GetSysColor(COLOR_HIGHLIGHTTEXT));
    EXPECT_EQ(script->calls, 0);
    colours.setUseHost(true);
    script->colours = {
        {"Tree/Text", 0x112233}, {"Frame/Face3DColor", 0x445566}, {"Tree/BackColor", 0x778899}};
    script->failAt = 2; // a refusal is no colour
    EXPECT_TRUE(colours.read());
    EXPECT_EQ(script->calls, 5);
    EXPECT_EQ(colours.treeText(), GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_EQ(colours.frameFace(), 0x445566U);
    EXPECT_EQ(colours.treeBackground(), 0x778899U);
    EXPECT_EQ(colours.listSelectedText(), GetSysColor(COLOR_HIGHLIGHT));
    script->colours["Frame/Face3DColor"] = 0x010203; // the only one that may change
    script->colours["Tree/BackColor"] = 0x040506;
    EXPECT_TRUE(colours.read());
    EXPECT_EQ(colours.treeText(), 0x112233U);
    EXPECT_EQ(colours.frameFace(), 0x010203U);
    EXPECT_EQ(colours.treeBackground(), 0x778899U);
    EXPECT_FALSE(colours.read());
    EXPECT_EQ(script->calls, 5 + 4 + 3);
}

} // namespace
} // namespace tessera
