// Marks in the real plug-in: by commands of the details pane, in the file, and at the next start.

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "base/Files.h"
#include "library/Records.h"
#include "system/Handle.h"
#include "system/Registry.h"
#include "ui/ids.h"
#include "windowing/Control.h"
#include "windowing/ListView.h"
#include "windowing/TreeView.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <thread>

namespace tessera {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Texts = std::vector<std::string>;

// Where the albums' marks stand in a database, found by walking through its records.
class MarkPlaces {
public:
    struct Place {
        std::size_t flags;
        std::size_t rank; // the new date is behind it
    };

    explicit MarkPlaces(const Bytes& bytes) : m_bytes(bytes)
    {
        const std::uint32_t tracks = word(16);
        const std::uint32_t albums = word(20);
        m_at = 32;
        for (std::uint32_t i = 0; i < tracks; ++i) {
            m_at += 8;
            text();
            m_at += 4;
        }
        for (std::uint32_t i = 0; i < albums; ++i)
            album();
    }
    const Place& operator[](const std::string& title) const { return m_places.at(title); }
    std::size_t size() const { return m_places.size(); }

private:
    std::uint32_t word(std::size_t at) const
    {
        std::uint32_t value = 0;
        std::memcpy(&value, &m_bytes.at(at), sizeof value);
        return value;
    }
    std::string text()
    {
        const std::uint32_t length = word(m_at);
        const auto* const first = reinterpret_cast<const char*>(&m_bytes.at(m_at)) + 4;
        m_at += 4 + length;
        return {first, length};
    }
    void album()
    {
        const std::size_t flags = m_at;
        m_at += 8;
        const std::string title = text();
        if ((word(flags) & 1) == 0)
            text(); // the title that is shown
        text();     // type
        m_at += 4;  // artist
        text();     // genre
        m_at += 4 * 4;
        m_places[title] = {flags, m_at};
        m_at += 8;
        m_at += 4 + 4 * word(m_at); // tracks
        text();                     // path
        text();                     // thumbnail
    }

    const Bytes& m_bytes;
    std::size_t m_at = 0;
    std::map<std::string, Place> m_places;
};

std::int32_t todayInUtc()
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    return now.wYear * 10000 + now.wMonth * 100 + now.wDay;
}

bool menuIsOpen()
{
    const HWND menu = FindWindowA("#32768", nullptr);
    return menu && IsWindowVisible(menu);
}

std::function<void()> g_whileMenuIsOpen;

void CALLBACK lookForMenu(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_whileMenuIsOpen && menuIsOpen())
        g_whileMenuIsOpen();
}

// The database is of six albums, "Album 1" to "Album 6", by three artists.
class MarksTest : public testing::Test {
protected:
    MarksTest() : folder("shell-marks"), path(folder.file("music.ts2"))
    {
        forgetSettings();
        general.lastPane = paneId::kAlbumDetails;
        store(general);
        database.lastUsed = path;
        database.loadLastAtStartup = false;
        store(database);
        RunningPlugin builder;
        builder.start();
        EXPECT_TRUE(builder.create());
        builder.stop();
        model = file();
        database.loadLastAtStartup = true;
        store(database);
    }
    ~MarksTest() override { SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL); }

    void start(std::shared_ptr<HostScript> script = smallLibrary())
    {
        plugin = std::make_unique<RunningPlugin>(std::move(script));
        plugin->start();
        ASSERT_TRUE(plugin->waitForJob());
        ASSERT_EQ(plugin->shownPane(), paneId::kAlbumDetails);
        settle();
    }
    void settle() const { plugin->container.pumpFor(0); }

    Bytes file() const { return systemFiles().readAll(path).value_or(Bytes()); }
    bool putFile(const Bytes& bytes) const { return systemFiles().create(path)->write(bytes); }
    void setReadOnly(bool on) const
    {
        ASSERT_TRUE(SetFileAttributesA(path.c_str(), on ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL));
    }
    HWND pane() const { return plugin->pane(paneId::kAlbumDetails); }
    TreeView tree(int id = controlId::kTreeLibrary) const { return TreeView(GetDlgItem(pane(), id)); }
    ListView list() const { return ListView(GetDlgItem(pane(), controlId::kDetailsAlbums)); }
    void command(int id) const
    {
        SendMessageA(pane(), WM_COMMAND, static_cast<WPARAM>(id), 0);
        settle();
    }
    // The artists' root: all albums.
    void chooseAll() const
    {
        tree().select(nullptr);
        tree().select(tree().root());
        settle();
    }
    void chooseRows(const Texts& titles) const
    {
        chooseAll();
        for (int row = 0; row < list().count(); ++row) {
            if (std::ranges::count(titles, list().text(row, 0)) > 0)
                list().select(row);
        }
        settle();
    }
    std::string cell(const std::string& title, int column) const
    {
        for (int row = 0; row < list().count(); ++row) {
            if (list().text(row, 0) == title)
                return list().text(row, column);
        }
        return "no album";
    }
    std::string status() const { return windowText(GetDlgItem(pane(), controlId::kStatus)); }
    // Of the first level below a tree's artists, the number of albums below it.
    static int leaves(const TreeView& tree)
    {
        int count = 0;
        for (HTREEITEM artist = tree.child(tree.root()); artist; artist = tree.next(artist)) {
            for (HTREEITEM album = tree.child(artist); album; album = tree.next(album))
                ++count;
        }
        return count;
    }

    // What the file is to hold.
    void putWord(std::size_t at, std::uint32_t value) { std::memcpy(&model.at(at), &value, sizeof value); }
    void putFlag(const std::string& title, std::uint32_t flag, bool on)
    {
        std::uint8_t& flags = model.at(MarkPlaces(model)[title].flags);
        flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag);
    }
    void putRank(const std::string& title, int rank)
    {
        putWord(MarkPlaces(model)[title].rank, static_cast<std::uint32_t>(rank));
    }
    void putDate(const std::string& title, std::int32_t date)
    {
        putWord(MarkPlaces(model)[title].rank + 4, static_cast<std::uint32_t>(date));
    }

    std::string couldNotOpen() const { return "Could not open the database '" + path + "'!"; }

    TemporaryFolder folder;
    std::string path;
    GeneralSettings general;
    DatabaseSettings database;
    Bytes model;
    std::unique_ptr<RunningPlugin> plugin;
};

const std::string kTwoAreLost = "The changes of 2 albums could not be saved and are lost!";

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

// Everything that the pane can be sent, while a worker is in the build and in the load.
TEST_F(MarksTest, NothingIsMarkedWhileAJobRuns)
{
    start();
    chooseRows({"Album 2"});
    for (const int call : {10, 200, 330}) {
        plugin->script->calls = 0;
        WorkerStop stop(*plugin->script, call);
        ASSERT_TRUE(plugin->beginCreating());
        ASSERT_TRUE(plugin->container.pump([&] { return stop.reached.isSet(); })) << call;
        for (int id = albumCommand::kNewToday; id <= albumCommand::kPlay; ++id)
            PostMessageA(pane(), WM_COMMAND, static_cast<WPARAM>(id), 0);
        for (int id = controlId::kTreeLibrary; id <= controlId::kTreeCompleted; ++id) {
            for (HTREEITEM root = tree(id).root(); root; root = tree(id).next(root)) {
                tree(id).expand(root);
                tree(id).select(tree(id).child(root));
                tree(id).select(root);
            }
            for (const UINT code : {UINT(NM_RCLICK), UINT(NM_DBLCLK), UINT(NM_RETURN)}) {
                NMHDR header{tree(id).handle(), static_cast<UINT_PTR>(id), code};
                SendMessageA(pane(), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
            }
        }
        for (const int combo :
             {controlId::kTreeCombo, controlId::kAlbumInfoCombo, controlId::kTrackDetailsCombo}) {
            const HWND control = GetDlgItem(pane(), combo);
            for (WPARAM entry : {2u, 1u, 0u}) {
                SendMessageA(control, CB_SETCURSEL, entry, 0);
                SendMessageA(pane(), WM_COMMAND, MAKEWPARAM(static_cast<WORD>(combo), CBN_SELCHANGE),
                             reinterpret_cast<LPARAM>(control));
            }
        }
        for (const UINT code : {UINT(NM_RCLICK), UINT(NM_DBLCLK), UINT(NM_RETURN)}) {
            NMITEMACTIVATE header{};
            header.hdr = {list().handle(), controlId::kDetailsAlbums, code};
            SendMessageA(pane(), WM_NOTIFY, header.hdr.idFrom, reinterpret_cast<LPARAM>(&header));
        }
        RedrawWindow(pane(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        plugin->container.pumpFor(30);
        stop.letGo();
        ASSERT_TRUE(plugin->waitForJob());
        plugin->script->onCall = nullptr;
        EXPECT_TRUE(plugin->boxes.texts.empty());
        EXPECT_TRUE(file() == model) << call; // built anew, without marks
        EXPECT_EQ(leaves(tree()), 6);
        const auto journal = plugin->script->journal();
        EXPECT_EQ(std::ranges::count(journal, "clear"), 0);
        chooseRows({"Album 2"});
        EXPECT_EQ(list().count(), 6);
    }
}

// Inside the calls that playing makes, and those of the list of what plays then.
TEST_F(MarksTest, TheHostMayEndThePlugInWhileAlbumsArePlayed)
{
    int total = 0;
    for (int call = 0; call <= total; call += call < 12 ? 1 : 5) {
        start(smallLibrary());
        SendMessageA(GetDlgItem(pane(), controlId::kAlbumInfoCombo), CB_SETCURSEL, 2, 0);
        SendMessageA(pane(), WM_COMMAND, MAKEWPARAM(controlId::kAlbumInfoCombo, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(GetDlgItem(pane(), controlId::kAlbumInfoCombo)));
        chooseRows({"Album 2", "Album 4"});
        plugin->script->calls = 0;
        plugin->script->onCall = [&](int number) {
            if (number == call)
                plugin->stop();
        };
        command(albumCommand::kPlay);
        plugin->script->onCall = nullptr;
        if (call == 0) {
            total = plugin->script->calls;
            ASSERT_GT(total, 15);
            EXPECT_EQ(std::ranges::count(plugin->script->journal(), "clear"), 1);
            plugin->stop();
        }
        plugin->container.pumpFor(30);
        EXPECT_FALSE(plugin->pane(paneId::kMain)) << call;
        EXPECT_EQ(plugin->script->live, 1) << call;
        EXPECT_EQ(plugin->script->strayReleases, 0) << call;
        plugin.reset();
    }
}

// What happens to a menu that is open when the database goes, or all of the plug-in.
class MarksMenuTest : public MarksTest {
protected:
    MarksMenuTest() { g_whileMenuIsOpen = nullptr; }
    ~MarksMenuTest() override { g_whileMenuIsOpen = nullptr; }

    // True when the menu came up.
    bool openMenuAnd(const std::function<void()>& action)
    {
        int ticks = 0;
        g_whileMenuIsOpen = [&] {
            if (ticks++ == 0)
                action();
        };
        const UINT_PTR timer = SetTimer(nullptr, 0, 20, &lookForMenu);
        NMITEMACTIVATE header{};
        header.hdr = {list().handle(), controlId::kDetailsAlbums, static_cast<UINT>(NM_RCLICK)};
        SendMessageA(pane(), WM_NOTIFY, header.hdr.idFrom, reinterpret_cast<LPARAM>(&header));
        KillTimer(nullptr, timer);
        return ticks > 0;
    }
};

TEST_F(MarksMenuTest, ItIsClosedWhenTheDatabaseChanges)
{
    start();
    chooseRows({"Album 2"});
    EXPECT_TRUE(openMenuAnd([&] {
        plugin->boxes.onDialog = walkWizard;
        plugin->command(commandId::kNewDatabase);
    }));
    ASSERT_TRUE(plugin->waitForJob());
    EXPECT_TRUE(plugin->logged("Creating Database"));
    EXPECT_FALSE(menuIsOpen());
    chooseAll();
    EXPECT_EQ(list().count(), 6);
    EXPECT_TRUE(file() == model);
}

TEST_F(MarksMenuTest, ThePlugInMayEndWhileItIsOpen)
{
    for (const bool wholeControl : {false, true}) {
        start();
        chooseRows({"Album 2"});
        EXPECT_TRUE(openMenuAnd([&] {
            plugin->stop();
            if (wholeControl) {
                plugin->container.drop();
                plugin->control.reset();
            }
        }));
        plugin->container.pumpFor(60);
        EXPECT_FALSE(menuIsOpen());
        EXPECT_EQ(plugin->script->live, 1);
        plugin->container.drop();
        plugin->control.reset();
        plugin->container.pumpFor(60);
        EXPECT_TRUE(plugin->module.canUnload());
        plugin.reset();
    }
}

// A library that cannot be loaded leaves nothing of the one before.
TEST_F(MarksTest, AfterALoadThatFailsThereAreTheRootsOnly)
{
    start();
    tree().expand(tree().root());
    chooseRows({"Album 2"});
    plugin->script->knowsFiles = false;
    ASSERT_TRUE(plugin->create());
    EXPECT_EQ(plugin->boxes.texts.size(), 1u);
    for (int id = controlId::kTreeLibrary; id <= controlId::kTreeCompleted; ++id) {
        EXPECT_EQ(tree(id).count(), 3);
        EXPECT_EQ(tree(id).selection(), nullptr);
        for (HTREEITEM root = tree(id).root(); root; root = tree(id).next(root))
            tree(id).select(root);
    }
    settle();
    EXPECT_EQ(list().count(), 0);
    EXPECT_EQ(status(), "Rank - Nothing Selected"); // of the root that was selected last
    for (const int id : {albumCommand::kFavourite, albumCommand::kPlay, albumCommand::kGoToDirectory})
        command(id);
    EXPECT_TRUE(file() == model);
    plugin->script->knowsFiles = true;
    ASSERT_TRUE(plugin->create());
    EXPECT_EQ(leaves(tree()), 6);
    EXPECT_TRUE(tree().expanded(tree().root()));
}

TEST_F(MarksTest, TheDateDialogKeepsTheDatabaseAndMarksWhenItIsDone)
{
    start();
    chooseRows({"Album 2", "Album 3"});
    int seen = 0;
    Texts captions;
    plugin->boxes.onDialog = [&](HWND dialog) {
        char caption[100] = "";
        GetWindowTextA(dialog, caption, sizeof caption);
        captions.emplace_back(caption);
        if (++seen == 1) {
            plugin->command(commandId::kNewDatabase);
            command(albumCommand::kNewDate); // a second one is refused
        } else if (seen == 4) {
            const HWND calendar = GetDlgItem(dialog, 32999);
            SendMessageA(calendar, WM_KEYDOWN, VK_LEFT, 0);
            SendMessageA(dialog, WM_COMMAND, IDOK, 0);
        }
    };
    command(albumCommand::kNewDate);
    ASSERT_TRUE(plugin->container.pump([&] { return seen >= 4; }));
    plugin->container.pumpFor(50);
    EXPECT_EQ(captions, Texts(4, "Select the date"));
    SYSTEMTIME now{};
    GetLocalTime(&now);
    FILETIME ticks{};
    SystemTimeToFileTime(&now, &ticks);
    ULARGE_INTEGER day{{ticks.dwLowDateTime, ticks.dwHighDateTime}};
    day.QuadPart -= 24ULL * 3600 * 10000000;
    ticks = {day.LowPart, day.HighPart};
    FileTimeToSystemTime(&ticks, &now);
    for (const char* const title : {"Album 2", "Album 3"}) {
        putFlag(title, kAlbumNew, true);
        putDate(title, now.wYear * 10000 + now.wMonth * 100 + now.wDay);
    }
    EXPECT_TRUE(file() == model);
    EXPECT_FALSE(plugin->logged("Creating Database"));
}

TEST_F(MarksTest, TheEndInsideTheDateDialogMarksNothing)
{
    start();
    chooseRows({"Album 2"});
    bool ended = false;
    plugin->boxes.onDialog = [&](HWND) {
        if (!std::exchange(ended, true))
            plugin->stop();
    };
    command(albumCommand::kNewDate);
    ASSERT_TRUE(plugin->container.pump([&] { return ended; }));
    plugin->container.pumpFor(60);
    EXPECT_FALSE(plugin->pane(paneId::kMain));
    EXPECT_TRUE(file() == model);
    EXPECT_EQ(plugin->script->live, 1);
}

TEST_F(MarksTest, TheSettingsAreFiveValuesAndBarsKeepTheirPlace)
{
    const auto value = [](const char* name) {
        return RegistryStore().read("PaneAlbumDetails", name).value_or(StoredValue{});
    };
    const auto number = [](const StoredValue& stored) {
        std::int32_t read = -1;
        if (stored.type == StorageType::Number && stored.bytes.size() == 4)
            std::memcpy(&read, stored.bytes.data(), 4);
        return read;
    };
    const auto percent = [](const StoredValue& stored) {
        double read = -1;
        if (stored.type == StorageType::Binary && stored.bytes.size() == 8)
            std::memcpy(&read, stored.bytes.data(), 8);
        return read;
    };
    constexpr const char* kBars[] = {"SplitMain", "SplitDetails", "SplitTracks"};
    EXPECT_EQ(number(value("ListviewStyle")), 1); // as the run that built the database left them
    EXPECT_EQ(number(value("TrackDetailsCombo")), 0);
    for (const char* const bar : kBars)
        EXPECT_EQ(percent(value(bar)), 50.0) << bar;
    start();
    RECT client{};
    GetClientRect(pane(), &client);
    const double expected[] = {(client.right * 3 / 10 + 3) * 100.0 / client.right,
                               client.bottom * 2 / 5 * 100.0 / client.bottom,
                               (client.right * 7 / 10 + 3) * 100.0 / client.right};
    const POINT drops[] = {
        {client.right * 3 / 10, 5}, {5, client.bottom * 2 / 5}, {client.right * 7 / 10, 5}};
    for (int i = 0; i < 3; ++i) {
        const HWND bar = GetDlgItem(pane(), controlId::kSplitMain + i);
        SendMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
        POINT drop = drops[i];
        MapWindowPoints(pane(), bar, &drop, 1);
        SendMessageA(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(drop.x, drop.y));
        SendMessageA(bar, WM_LBUTTONUP, 0, MAKELPARAM(drop.x, drop.y));
    }
    plugin->command(commandId::kViewTiles);
    const HWND combo = GetDlgItem(pane(), controlId::kTrackDetailsCombo);
    SendMessageA(combo, CB_SETCURSEL, 3, 0);
    SendMessageA(pane(), WM_COMMAND, MAKEWPARAM(controlId::kTrackDetailsCombo, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(combo));
    plugin->stop();
    EXPECT_EQ(number(value("ListviewStyle")), 3);
    EXPECT_EQ(number(value("TrackDetailsCombo")), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(percent(value(kBars[i])), expected[i], 1e-9) << kBars[i];
    plugin->start();
    ASSERT_TRUE(plugin->waitForJob());
    for (int i = 0; i < 3; ++i) {
        RECT bar{};
        GetWindowRect(GetDlgItem(pane(), controlId::kSplitMain + i), &bar);
        MapWindowPoints(nullptr, pane(), reinterpret_cast<POINT*>(&bar), 2);
        if (i != 1)
            EXPECT_NEAR(bar.left, drops[i].x + 3, 1);
        else
            EXPECT_NEAR(bar.top, drops[i].y, 1);
    }
}

// The texts come from the records, whatever the view shows, in the order of the header.
TEST_F(MarksTest, TheListIsExportedWithItsMarks)
{
    start();
    chooseRows({"Album 2"});
    command(albumCommand::kRankNone + 9);
    command(albumCommand::kFavourite);
    std::vector<int> order(kColumnCount);
    std::iota(order.rbegin(), order.rend(), 0);
    list().send(LVM_SETCOLUMNORDERARRAY, order.size(), reinterpret_cast<LPARAM>(order.data()));
    plugin->command(commandId::kViewTiles);
    const std::string exported = folder.file("out.txt");
    int seen = 0;
    plugin->boxes.onDialog = [&](HWND dialog) {
        if (++seen != 3)
            return;
        SendMessageA(GetDlgItem(dialog, 0x47c), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(exported.c_str()));
        PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    };
    plugin->command(commandId::kExportList);
    ASSERT_TRUE(plugin->container.pump([&] { return !plugin->boxes.texts.empty(); }));
    EXPECT_TRUE(plugin->boxes.texts.front().starts_with("Finished writing to " + exported));
    const Bytes bytes = systemFiles().readAll(exported).value_or(Bytes());
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(std::ranges::count(text, '\n'), 6);
    // Thumbnail, path, compilation, new; then favourite, rank, type.
    EXPECT_NE(text.find("\tC:\\Music\\Album 2\t\t\tYes\t9\tMP3\t"), std::string::npos) << text;
    EXPECT_NE(text.find("\tArtist 3\tAlbum 2\n"), std::string::npos) << text;
}

} // namespace
} // namespace tessera
