#include "ui/TakeMarks.h"

#include "AlbumFixture.h"
#include "library/Database.h"
#include "support/Recorders.h"
#include "support/TemporaryFolder.h"
#include "windowing/Control.h"
#include "windowing/MessageLoop.h"

#include <gtest/gtest.h>

namespace tessera {

namespace {

constexpr UINT kGo = WM_APP + 9;

// The window that the dialog belongs to; plays the user's part once the dialog's loop runs.
class TakeMarksOwner final : public Mapped<TakeMarksOwner> {
public:
    ~TakeMarksOwner() override { destroy(); }
    static std::span<const MapEntry<TakeMarksOwner>> messageMap()
    {
        static constexpr MapEntry<TakeMarksOwner> map[] = {{kGo, &TakeMarksOwner::onGo}};
        return map;
    }
    std::function<void(HWND dialog)> script;

private:
    Handled onGo(const Message&)
    {
        const auto now = script; // which may choose what comes next
        now(FindWindowA("#32770", "Take marks from another database"));
        return 0;
    }
};

class TakeMarksTest : public testing::Test {
protected:
    TakeMarksTest()
    {
        owner.create(nullptr, 0, {0, 0, 800, 600}, {WS_POPUP | WS_VISIBLE});
        fill(commands.records);
        commands.databaseSettings.lastUsed = folder.file("here.ts2");
        Database other;
        fill(other.library());
        other.library().albums.at(1)->rank = 7;
        other.library().albums.at(1)->set(kAlbumFavourite, true);
        other.library().albums.at(2)->rank = 3;
        other.library().albums.at(2)->hostTitle = "Lost";
        other.library().albums.at(2)->displayTitle = "Lost";
        other.library().tracks.at(2)->fileName = "D:\\lost.mp3";
        write(other, "here.ts2.bak");
        setMarks(*other.library().albums.at(1), {});
        write(other, "lost.ts2");
        setMarks(*other.library().albums.at(1), {.rank = 2});
        write(other, "here.ts2");
        const auto damaged = systemFiles().create(folder.file("damaged.ts2"));
        damaged->write(test::bytesOf("not a database"));
    }
    static void fill(Library& library)
    {
        Artist& artist = addArtist(library, "Lumen");
        artist.hostName = "Lumen";
        for (const char* title : {"Tides", "Moons"}) {
            Album& album = addAlbum(library, title, artist);
            album.hostTitle = title;
            artist.albums.emplace(album.id, &album);
            auto track = std::make_unique<Track>();
            track->id = album.id;
            track->fileName = std::string("D:\\") + title + ".mp3";
            track->album = &album;
            album.tracks.emplace(track->id, track.get());
            library.tracks[album.id] = std::move(track);
        }
    }
    void write(Database& database, const char* name)
    {
        test::JobRig rig;
        JobContext context{systemFiles(), rig.log, rig.prompt, rig.terminating};
        ASSERT_TRUE(database.write(folder.file(name), context));
    }
    std::optional<MarksPlan> run(std::function<void(HWND)> script)
    {
        owner.script = std::move(script);
        PostMessageA(owner.handle(), kGo, 0, 0);
        return askMarks(owner.handle(), commands, suggested);
    }
    static HWND item(HWND dialog, UINT id) { return GetDlgItem(dialog, static_cast<int>(id)); }
    static std::string report(HWND dialog) { return windowText(item(dialog, TakeMarks::kReport)); }
    static bool mayAccept(HWND dialog) { return IsWindowEnabled(item(dialog, IDOK)) != FALSE; }
    // As a user types a name: OK waits until the file was looked at.
    static void type(HWND dialog, const std::string& name)
    {
        SetWindowTextA(item(dialog, TakeMarks::kFileName), name.c_str());
        EXPECT_FALSE(mayAccept(dialog));
        SendMessageA(dialog, WM_TIMER, 1, 0);
    }
    static void press(HWND dialog, UINT id) { PostMessageA(dialog, WM_COMMAND, id, 0); }

    TemporaryFolder folder{"take-marks"};
    FakeCommands commands;
    std::string suggested;
    TakeMarksOwner owner;
};

} // namespace

// A half-typed name is another server's: nobody is asked before the user says so.
TEST_F(TakeMarksTest, AServerIsAskedOnlyWhenOkIsPressed)
{
    EXPECT_FALSE(run([&](HWND dialog) {
        type(dialog, "//127.0.0.1/none/a.ts2");
        EXPECT_EQ(report(dialog), "Press OK to look at the database on the network.");
        SendMessageA(dialog, WM_COMMAND, IDOK, 0);
        EXPECT_EQ(report(dialog), "Could not open the database '//127.0.0.1/none/a.ts2'!");
        EXPECT_FALSE(mayAccept(dialog));
        type(dialog, folder.file("nul.ts2"));
        EXPECT_EQ(report(dialog), "This is no file.");
        press(dialog, IDCANCEL);
    }));
}

TEST_F(TakeMarksTest, SuggestsTheKeptGenerationAndAnswersItsMarks)
{
    const auto plan = run([this](HWND dialog) {
        EXPECT_EQ(windowText(item(dialog, TakeMarks::kFileName)), folder.file("here.ts2.bak"));
        EXPECT_EQ(report(dialog), "Ranks: 2 found, 1 matched\nFavourites: 1 found, 1 matched\n"
                                  "New: 0 found, 0 matched\n");
        EXPECT_TRUE(mayAccept(dialog));
        press(dialog, IDOK);
    });
    ASSERT_TRUE(plan && plan->changes.size() == 1);
    EXPECT_EQ(plan->changes[0].album, commands.records.albums.at(1).get());
    EXPECT_EQ(plan->changes[0].marks, (Marks{.rank = 7, .favourite = true}));
    EXPECT_EQ(commands.records.albums.at(1)->rank, 0) << "the caller changes it";
}

TEST_F(TakeMarksTest, EveryNameIsLookedAtAndOkNeedsAMatch)
{
    const auto plan = run([this](HWND dialog) {
        const struct {
            std::string name;
            std::string text;
            bool accepted;
        } cases[] = {
            {folder.file("none.ts2"), "Could not open the database '" + folder.file("none.ts2") + "'!",
             false},
            {folder.file("damaged.ts2"), "Invalid database!", false},
            {folder.file("HERE.ts2"), "This is the database in use.", false},
            {folder.file("lost.ts2"),
             "Ranks: 1 found, 0 matched\nFavourites: 0 found, 0 matched\nNew: 0 found, 0 matched\n", false},
            {"", "Choose the database that holds the marks.", false},
            {folder.file("here.ts2.bak"),
             "Ranks: 2 found, 1 matched\nFavourites: 1 found, 1 matched\nNew: 0 found, 0 matched\n", true},
        };
        for (const auto& given : cases) {
            type(dialog, given.name);
            EXPECT_EQ(report(dialog), given.text);
            EXPECT_EQ(mayAccept(dialog), given.accepted) << given.name;
            if (!given.accepted) {
                SendMessageA(dialog, WM_COMMAND, IDOK, 0);
                EXPECT_TRUE(IsWindow(dialog)) << "Enter does nothing";
            }
        }
        press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(plan.has_value());
}

TEST_F(TakeMarksTest, WhatIsThereAlreadyIsSaidAndNoFileIsNoSuggestion)
{
    setMarks(*commands.records.albums.at(1), {.rank = 7, .favourite = true});
    const auto same = run([](HWND dialog) {
        EXPECT_NE(report(dialog).find("Your albums have all of them already."), std::string::npos);
        press(dialog, IDOK);
    });
    EXPECT_TRUE(same && same->changes.empty());

    commands.databaseSettings.lastUsed = folder.file("other.ts2");
    EXPECT_FALSE(run([](HWND dialog) {
        EXPECT_EQ(windowText(item(dialog, TakeMarks::kFileName)), "");
        EXPECT_FALSE(mayAccept(dialog));
        press(dialog, IDCANCEL);
    }));
}

// As the keyboard does it: the timer comes by itself, Enter is OK, Escape is Cancel.
TEST_F(TakeMarksTest, WorksFromTheKeyboard)
{
    commands.databaseSettings.lastUsed = folder.file("other.ts2");
    const auto plan = run([this](HWND dialog) {
        const HWND name = item(dialog, TakeMarks::kFileName);
        EXPECT_EQ(GetFocus(), name);
        for (const char letter : folder.file("here.ts2.bak")) {
            SendMessageA(name, WM_CHAR, static_cast<WPARAM>(letter), 0);
        }
        EXPECT_FALSE(mayAccept(dialog));
        const ULONGLONG end = GetTickCount() + 5000;
        while (!mayAccept(dialog) && GetTickCount() < end) {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageA(&message);
            }
            Sleep(5);
        }
        PostMessageA(name, WM_KEYDOWN, VK_RETURN, 1);
    });
    EXPECT_TRUE(plan && plan->changes.size() == 1);
    EXPECT_FALSE(
        run([](HWND dialog) { PostMessageA(item(dialog, TakeMarks::kFileName), WM_KEYDOWN, VK_ESCAPE, 1); }));
}

TEST_F(TakeMarksTest, BrowsingThatIsCancelledKeepsTheName)
{
    bool cancelled = false;
    int looks = 0;
    const auto plan = run([&](HWND dialog) {
        PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(TakeMarks::kBrowse, BN_CLICKED), 0);
        owner.script = [&, dialog](HWND) {
            const HWND browser = FindWindowA("#32770", "Select the database to take marks from");
            if (!cancelled && browser && IsWindowVisible(browser)) {
                PostMessageA(browser, WM_COMMAND, IDCANCEL, 0);
                cancelled = true;
            }
            if ((cancelled && IsWindowEnabled(dialog)) || ++looks > 1000) {
                press(dialog, IDOK);
                return;
            }
            Sleep(5);
            PostMessageA(owner.handle(), kGo, 0, 0);
        };
        PostMessageA(owner.handle(), kGo, 0, 0);
    });
    EXPECT_TRUE(cancelled);
    EXPECT_TRUE(plan && plan->changes.size() == 1);
}

} // namespace tessera
