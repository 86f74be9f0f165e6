// Marks in the real plug-in: by commands of the details pane, in the file, and at the next start.

#include "MarksFixture.h"

#include "library/Records.h"
#include "support/FileHolder.h"
#include "system/Handle.h"

#include <atomic>
#include <thread>

namespace tessera {
namespace {

std::int32_t todayInUtc()
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    return now.wYear * 10000 + now.wMonth * 100 + now.wDay;
}

const char* const kTwoAreLost = "The changes of 2 albums could not be saved and are lost!";

TEST_F(MarksTest, ChangeTheirFieldsInTheFileAndNothingElseAndAreThereAtTheNextStart)
{
    ASSERT_EQ(MarkPlaces(model).size(), 6u);
    start();
    const auto expectFile = [&](const char* after) { EXPECT_TRUE(file() == model) << after; };
    chooseRows({"Album 2"});
    command(albumCommand::kRankNone + 10);
    putRank("Album 2", 10);
    expectFile("rank of one");
    command(albumCommand::kNotNew);
    command(albumCommand::kNoFavourite);
    expectFile("marks that are clear already");
    chooseRows({"Album 1", "Album 4", "Album 6"});
    command(albumCommand::kRankNone + 1);
    command(albumCommand::kFavourite);
    for (const char* const title : {"Album 1", "Album 4", "Album 6"}) {
        putRank(title, 1);
        putFlag(title, kAlbumFavourite, true);
    }
    expectFile("rank and favourite of several");
    chooseRows({"Album 1", "Album 5"});
    command(albumCommand::kRankNone);
    putRank("Album 1", 0);
    expectFile("a rank that is removed, and one that there was not");
    const std::int32_t before = todayInUtc();
    chooseRows({"Album 3", "Album 6"});
    command(albumCommand::kNewToday);
    const std::int32_t date = before == todayInUtc() ? before : todayInUtc();
    for (const char* const title : {"Album 3", "Album 6"}) {
        putFlag(title, kAlbumNew, true);
        putDate(title, date);
    }
    expectFile("new since today");
    chooseRows({"Album 6"});
    command(albumCommand::kNotNew);
    command(albumCommand::kNoFavourite);
    putFlag("Album 6", kAlbumNew, false);
    putFlag("Album 6", kAlbumFavourite, false);
    expectFile("no longer new, which keeps the date");
    EXPECT_EQ(leaves(tree(controlId::kTreeNew)), 1);
    EXPECT_EQ(leaves(tree(controlId::kTreeFavourites)), 2);
    EXPECT_TRUE(plugin->boxes.texts.empty());
    plugin->stop();
    expectFile("the end");

    start();
    EXPECT_EQ(status(), "Total Albums: 6");
    chooseAll();
    EXPECT_EQ(status(), "Artist/Album - Multiple Selection: 6 of 6");
    EXPECT_EQ(cell("Album 2", 10), "10");
    EXPECT_EQ(cell("Album 4", 10), "1");
    EXPECT_EQ(cell("Album 4", 11), "Yes");
    EXPECT_EQ(cell("Album 1", 10), "");
    EXPECT_NE(cell("Album 3", 12), "");
    EXPECT_EQ(cell("Album 6", 12), "");
    EXPECT_EQ(leaves(tree(controlId::kTreeNew)), 1);
    EXPECT_EQ(leaves(tree(controlId::kTreeFavourites)), 2);
    EXPECT_EQ(leaves(tree(controlId::kTreeLibrary)), 6);
    EXPECT_EQ(leaves(tree(controlId::kTreeCompleted)), 0);
    expectFile("the next start");
}

TEST_F(MarksTest, RanksThatNoMenuGivesAreShownAndMayBeRemoved)
{
    putRank("Album 1", -3);
    putRank("Album 2", 99);
    ASSERT_TRUE(putFile(model));
    start();
    chooseAll();
    EXPECT_EQ(cell("Album 1", 10), "");
    EXPECT_EQ(cell("Album 2", 10), "99");
    Texts ranks;
    const HTREEITEM rankRoot = tree().next(tree().next(tree().root()));
    for (HTREEITEM rank = tree().child(rankRoot); rank; rank = tree().next(rank))
        ranks.push_back(tree().text(rank));
    ASSERT_EQ(ranks.size(), 3u); // one node a rank, whatever it is called
    EXPECT_EQ(std::ranges::count(ranks, "(Unranked)"), 2);
    chooseRows({"Album 1", "Album 2"});
    command(albumCommand::kRankNone);
    putRank("Album 1", 0);
    putRank("Album 2", 0);
    EXPECT_TRUE(file() == model);
}

TEST_F(MarksTest, AReadOnlyFileKeepsThemInMemoryForTheNextChange)
{
    start();
    setReadOnly(true);
    chooseRows({"Album 2"});
    command(albumCommand::kRankNone + 7);
    command(albumCommand::kFavourite);
    EXPECT_EQ(plugin->boxes.texts, Texts(2, couldNotOpen()));
    EXPECT_TRUE(file() == model);
    EXPECT_EQ(cell("Album 2", 10), "7");
    EXPECT_EQ(leaves(tree(controlId::kTreeFavourites)), 1);
    setReadOnly(false);
    chooseRows({"Album 5"});
    command(albumCommand::kRankNone + 2);
    putRank("Album 2", 7);
    putFlag("Album 2", kAlbumFavourite, true);
    putRank("Album 5", 2);
    EXPECT_TRUE(file() == model);
    plugin->boxes.texts.clear();
    plugin->stop();
    EXPECT_TRUE(plugin->boxes.texts.empty());
}

TEST_F(MarksTest, AFileThatIsInUseOrCutOffOrAnotherIsLeftAlone)
{
    start();
    chooseRows({"Album 2"});
    {
        const FileHandle inUse(
            CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        command(albumCommand::kRankNone + 7);
        EXPECT_EQ(plugin->boxes.texts, Texts{couldNotOpen()});
        const DWORD start = GetTickCount();
        command(albumCommand::kRankNone + 6);
        EXPECT_LT(GetTickCount() - start, 1500u) << "one wait in vain is enough";
        EXPECT_EQ(plugin->boxes.texts, Texts(2, couldNotOpen()));
    }
    Bytes cut = model;
    cut.resize(cut.size() / 2);
    Bytes other = model;
    other[MarkPlaces(model)["Album 2"].flags + 14] ^= 1; // in the title
    for (const Bytes& bytes : {cut, other}) {
        ASSERT_TRUE(putFile(bytes));
        plugin->boxes.texts.clear();
        command(albumCommand::kRankNone + 8);
        ASSERT_EQ(plugin->boxes.texts.size(), 1u);
        EXPECT_NE(plugin->boxes.texts.front().find("has been changed by another program!"),
                  std::string::npos);
        EXPECT_TRUE(file() == bytes);
    }
    ASSERT_TRUE(putFile(model)); // it is back
    command(albumCommand::kNotNew);
    putRank("Album 2", 8);
    EXPECT_TRUE(file() == model);
}

// A scanner holds the database when it is to be marked, and each file that a build has just closed.
TEST_F(MarksTest, FilesThatAreHeldForAMomentAreWaitedFor)
{
    start();
    chooseRows({"Album 2"});
    {
        const test::FileHolder scanner(path, 400);
        ASSERT_TRUE(scanner.holds());
        command(albumCommand::kRankNone + 7);
    }
    putRank("Album 2", 7);
    EXPECT_TRUE(file() == model);

    std::atomic<bool> scanning{true};
    std::atomic<int> held{0};
    std::thread scanner([&] {
        while (scanning) {
            for (const char* ending : {".tmp", "", ".bak"})
                held += test::FileHolder(path + ending, 60).holds() ? 1 : 0;
        }
    });
    const bool created = plugin->create();
    scanning = false;
    scanner.join();
    EXPECT_TRUE(created);
    EXPECT_GT(held, 0);
    EXPECT_TRUE(plugin->boxes.texts.empty());
    EXPECT_TRUE(systemFiles().readAll(path + ".bak") == model);
}

// However often one builds before they are taken, and after a mark in between.
TEST_F(MarksTest, BuildingAgainLosesNoMarksAndKeepsTheirOffer)
{
    start();
    chooseRows({"Album 2", "Album 5"});
    command(albumCommand::kFavourite);
    const Bytes marked = file();
    for (int build = 0; build < 2; ++build) {
        ASSERT_TRUE(plugin->create());
        EXPECT_TRUE(systemFiles().readAll(path + ".bak") == marked);
    }
    chooseRows({"Album 1"});
    command(albumCommand::kRankNone + 3);
    const Bytes markedLater = file();
    ASSERT_TRUE(plugin->create());
    EXPECT_TRUE(systemFiles().readAll(path + ".bak") == markedLater);
    EXPECT_TRUE(systemFiles().readAll(path + ".2.bak") == marked);
    EXPECT_TRUE(plugin->boxes.texts.empty());
}

// The box must not keep a container waiting that sends messages.
TEST_F(MarksTest, TheEndTriesOnceMoreAndSaysHowManyAreLost)
{
    for (const bool mended : {true, false}) {
        start();
        setReadOnly(true);
        chooseRows({"Album 2", "Album 5"});
        command(albumCommand::kFavourite);
        EXPECT_EQ(plugin->boxes.texts, Texts{couldNotOpen()});
        plugin->boxes.texts.clear();
        setReadOnly(!mended);
        std::thread container;
        std::atomic<LRESULT> answered{0};
        const HWND window = plugin->window();
        plugin->boxes.onBox = [&](HWND) {
            if (answered != 0) {
                plugin->boxes.onBox = nullptr; // the watcher answers it
            } else if (!container.joinable()) {
                container = std::thread([&] {
                    DWORD_PTR result = 0;
                    answered = SendMessageTimeoutA(window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(500, 300),
                                                   SMTO_NORMAL, 5000, &result);
                });
            }
        };
        plugin->stop();
        if (container.joinable())
            container.join();
        EXPECT_EQ(plugin->boxes.texts, mended ? Texts() : Texts{kTwoAreLost});
        EXPECT_EQ(answered != 0, !mended);
        for (const char* const title : {"Album 2", "Album 5"})
            putFlag(title, kAlbumFavourite, true);
        EXPECT_EQ(file() == model, mended);
        setReadOnly(false);
        plugin.reset();
        for (const char* const title : {"Album 2", "Album 5"})
            putFlag(title, kAlbumFavourite, false);
        ASSERT_TRUE(putFile(model));
    }
}

TEST_F(MarksTest, AnotherDatabaseComesAfterThoseThatCouldNotBeWritten)
{
    start();
    setReadOnly(true);
    chooseRows({"Album 2", "Album 5"});
    command(albumCommand::kFavourite);
    setReadOnly(false);
    plugin->boxes.texts.clear();
    ASSERT_TRUE(plugin->create()); // the file is written first, and what it replaces stays beside it
    EXPECT_TRUE(plugin->boxes.texts.empty());
    for (const char* const title : {"Album 2", "Album 5"})
        putFlag(title, kAlbumFavourite, true);
    EXPECT_TRUE(systemFiles().readAll(path + ".bak") == model);
    EXPECT_EQ(leaves(tree(controlId::kTreeFavourites)), 0);

    chooseRows({"Album 1", "Album 3"});
    plugin->boxes.texts.clear();
    const Bytes built = file();
    Bytes other = built;
    other.push_back(0);
    ASSERT_TRUE(putFile(other));
    command(albumCommand::kRankNone + 4);
    ASSERT_EQ(plugin->boxes.texts.size(), 1u);
    plugin->boxes.texts.clear();
    ASSERT_TRUE(plugin->create());
    EXPECT_EQ(plugin->boxes.texts, Texts{kTwoAreLost});
    EXPECT_TRUE(file() == built);
}

std::function<void()> g_end;

void CALLBACK runEnd(HWND window, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(window, timer);
    if (g_end)
        std::exchange(g_end, nullptr)();
}

// The box says that the file in use cannot be written; the plug-in ends while it is open.
TEST_F(MarksTest, TheEndInsideTheBoxBeforeAnotherDatabaseOpens)
{
    start();
    setReadOnly(true);
    chooseRows({"Album 2", "Album 5"});
    command(albumCommand::kFavourite);
    plugin->boxes.texts.clear();
    int looks = 0;
    plugin->boxes.onDialog = [&](HWND dialog) {
        constexpr int kNameField = 0x47c;
        if (const HWND field = GetDlgItem(dialog, kNameField); field && ++looks == 2) {
            SendMessageA(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(folder.file("other.ts2").c_str()));
            PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        }
    };
    bool ended = false;
    plugin->boxes.onBox = [&](HWND) { SetTimer(plugin->container.frame(), 1, 1, &runEnd); };
    g_end = [&] {
        plugin->boxes.onBox = nullptr; // the next box is answered: the end tries once more
        ended = true;
        plugin->stop();
        plugin->container.drop();
        plugin->control.reset();
        plugin->container.pumpFor(60);
        EXPECT_FALSE(plugin->module.canUnload()) << "the box is below on the stack";
    };
    ASSERT_TRUE(systemFiles().create(folder.file("other.ts2"))->write(model));
    plugin->command(commandId::kOpenDatabase);
    EXPECT_TRUE(plugin->container.pump([&] { return ended; }));
    plugin->container.pumpFor(100);
    EXPECT_EQ(plugin->boxes.texts, Texts{kTwoAreLost});
    EXPECT_TRUE(plugin->module.canUnload());
    EXPECT_EQ(plugin->script->live, 1);
    EXPECT_EQ(storedDatabase().lastUsed, path);
    EXPECT_TRUE(file() == model);
}

// Neither its changes nor the offer of what the one before held.
TEST_F(MarksTest, WhatBelongsToADatabaseGoesWithIt)
{
    start();
    const HWND offer = GetDlgItem(pane(), controlId::kCaptionOffer);
    EXPECT_FALSE(IsWindowVisible(offer));
    chooseRows({"Album 2"});
    command(albumCommand::kRankNone + 7);
    ASSERT_TRUE(plugin->create());
    EXPECT_TRUE(IsWindowVisible(offer));
    EXPECT_EQ(windowText(offer), "The previous database holds marks of 1 album. Take them...");
    chooseRows({"Album 3"});
    command(albumCommand::kRankNone + 2);
    const Bytes first = file();
    const std::string other = folder.file("other.ts2");
    ASSERT_TRUE(systemFiles().create(other)->write(model));
    for (const std::string& next : {other, path}) {
        ASSERT_TRUE(plugin->open(next));
        EXPECT_EQ(tree().count() > 3, true);
        EXPECT_FALSE(IsWindowVisible(offer)) << next;
        command(albumCommand::kTakeBack);
        EXPECT_EQ(status(), "Nothing to undo");
        EXPECT_TRUE(file() == first);
        EXPECT_TRUE(systemFiles().readAll(other) == model);
    }
    EXPECT_TRUE(plugin->boxes.texts.empty());
}

} // namespace
} // namespace tessera
