// Menus, keys and commands of the albums.

#include "Meanwhile.h"
#include "PaneAlbumDetailsFixture.h"
#include "base/Errors.h"
#include "library/Database.h"
#include "support/Recorders.h"
#include "support/TemporaryFolder.h"

#include <chrono>

using namespace tessera;

namespace {

const std::string kMarks =
    "New [10000 Yes - Use today's date|10001 Yes - Use a specified date|-|10002 No]|"
    "Rank [10101 1|10102 2|10103 3|10104 4|10105 5|10106 6|10107 7|10108 8|10109 9|10110 10|-|"
    "10100 Remove Ranking]|";
const std::string kYesNo = " [10200 Yes|-|10201 No]";

std::int32_t todayInUtc()
{
    using namespace std::chrono;
    const year_month_day day{floor<days>(system_clock::now())};
    return static_cast<int>(day.year()) * 10000 +
           static_cast<std::int32_t>(static_cast<unsigned>(day.month()) * 100 +
                                     static_cast<unsigned>(day.day()));
}

} // namespace

TEST_F(PaneAlbumDetailsTest, TheMenuHasItsEntries)
{
    open();
    choose({"Artist/Album", "LUMEN", "Rock & Roll"});
    EXPECT_EQ(outline(pane->contextMenu(false).get()),
              "10998 Play: Rock && Roll|10997 Append To Playlist: Rock && Roll|-|" + kMarks + "Favourite" +
                  kYesNo + "|-|10996 Go To Directory");
    choose({"Artist/Album"});
    EXPECT_EQ(outline(pane->contextMenu(false).get()), "10998 Play: All|10997 Append To Playlist: All|-|" +
                                                           kMarks + "Favourites" + kYesNo +
                                                           "|-|(Go To Directory)");
    send(albumCommand::kSortFirst + 10);
    selectOnly({1});
    const Menu overList = pane->contextMenu(true);
    const std::string text = outline(overList.get());
    EXPECT_TRUE(text.starts_with("10998 Play: "));
    EXPECT_NE(text.find("Favourite" + kYesNo + "|-|Sort By [10900 Album|10901 Artist|"), std::string::npos);
    EXPECT_TRUE(text.ends_with("|10915 Thumbnail]|-|10996 Go To Directory")) << text;
    EXPECT_NE(GetMenuState(overList.get(), 10910, MF_BYCOMMAND) & MF_CHECKED, 0u);
}

TEST_F(PaneAlbumDetailsTest, ARightClickSelectsTheNodeAndTheMenuIsForItsAlbums)
{
    open();
    choose({"Artist/Album"});
    selectOnly({4});
    tree().expand(node({"Artist/Album"}));
    const RECT line = tree().itemRect(node({"Artist/Album", "The Harbour Quartet"}));
    SetCursorPos(line.left + 3, (line.top + line.bottom) / 2);
    NMHDR click{tree().handle(), controlId::kTreeLibrary, static_cast<UINT>(NM_RCLICK)};
    const auto rightClick = [&] {
        SendMessageA(pane->window(), WM_NOTIFY, click.idFrom, reinterpret_cast<LPARAM>(&click));
        settle();
    };
    std::string shown;
    {
        const Meanwhile user([&] {
            const HMENU menu = openMenu();
            if (!menu)
                return false;
            shown = outline(menu);
            PostMessageA(pane->window(), WM_KEYDOWN, VK_DOWN, 1);
            PostMessageA(pane->window(), WM_KEYDOWN, VK_RETURN, 1);
            return true;
        });
        rightClick();
    }
    EXPECT_TRUE(shown.starts_with("10998 Play: All|")) << shown;
    EXPECT_EQ(shown.find("Sort By"), std::string::npos);
    EXPECT_EQ(takeCalls(), Texts{"play Yearling Tidewater"});
    EXPECT_EQ(list().selection(), std::vector<int>{});
    EXPECT_EQ(pane->status(), "Artist/Album - The Harbour Quartet - Multiple Selection: 2 of 5");

    {
        const Meanwhile user([&] {
            if (!openMenu())
                return false;
            pane->clearRecords(); // a job begins
            return true;
        });
        rightClick();
    }
    EXPECT_EQ(openMenu(), nullptr);
    EXPECT_EQ(takeCalls(), Texts{});
}

TEST_F(PaneAlbumDetailsTest, CommandsActOnTheNodesAlbumsOrOnTheSelectedRows)
{
    open();
    choose({"Artist/Album", "LUMEN"});
    send(albumCommand::kPlay);
    send(albumCommand::kGoToDirectory);
    selectOnly({1});
    send(albumCommand::kAppend);
    send(albumCommand::kGoToDirectory);
    EXPECT_EQ(takeCalls(), (Texts{"play Early Rock & Roll", "folder C:\\Music\\Early", "append Rock & Roll",
                                  "folder C:\\Music\\Rock & Roll"}));
    EXPECT_EQ(written(), Texts{}) << "none of them changes a mark";

    for (UINT rank = 1; rank <= 10; ++rank) {
        send(albumCommand::kRankNone + rank);
        EXPECT_EQ(album(3).rank, static_cast<int>(rank));
    }
    EXPECT_EQ(album(1).rank, 3);
    EXPECT_EQ(written(), Texts{"Rock & Roll"});
    selectOnly({});
    send(albumCommand::kRankNone);
    send(albumCommand::kRankNone);
    EXPECT_EQ(album(1).rank, 0);
    EXPECT_EQ(album(3).rank, 0);
    EXPECT_EQ(written(), (Texts{"Early", "Rock & Roll"}));
    send(albumCommand::kNotNew);
    EXPECT_EQ(written(), (Texts{"Early", "Rock & Roll"}));
    send(albumCommand::kFavourite);
    EXPECT_TRUE(album(1).has(kAlbumFavourite) && album(3).has(kAlbumFavourite));
    send(albumCommand::kNoFavourite);
    EXPECT_FALSE(album(1).has(kAlbumFavourite) || album(3).has(kAlbumFavourite));
    choose({"Artist/Album", "The Harbour Quartet", "Yearling"});
    send(albumCommand::kNotNew);
    EXPECT_FALSE(album(2).has(kAlbumNew));
    EXPECT_EQ(album(2).newDate, 20200131) << "the date is kept";
    EXPECT_FALSE(album(4).has(kAlbumNew) || album(4).has(kAlbumFavourite));
}

TEST_F(PaneAlbumDetailsTest, TodayIsTheDayInUtc)
{
    open();
    choose({"Artist/Album", "LUMEN", "Early"});
    const std::int32_t before = todayInUtc();
    send(albumCommand::kNewToday);
    const std::int32_t after = todayInUtc();
    EXPECT_TRUE(album(1).newDate == before || album(1).newDate == after) << album(1).newDate;
    EXPECT_TRUE(album(1).has(kAlbumNew));
}

TEST_F(PaneAlbumDetailsTest, ADateIsAskedForWhenTheCommandIsDone)
{
    open();
    choose({"Artist/Album", "The Harbour Quartet"});
    const auto answer = [&](int button) {
        ASSERT_EQ(commands.dialogs.size(), 1u);
        const Meanwhile user([&] {
            const HWND dialog = FindWindowA("#32770", "Select the date");
            if (!dialog)
                return false;
            SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
            return true;
        });
        std::exchange(commands.dialogs, {}).front()(parent);
    };
    send(albumCommand::kNewDate);
    EXPECT_EQ(written(), Texts{});
    answer(IDCANCEL);
    EXPECT_EQ(written(), Texts{});
    EXPECT_EQ(album(2).newDate, 20200131);

    send(albumCommand::kNewDate);
    choose({"Artist/Album", "LUMEN"}); // while it waits
    commands.records.albums.erase(4);
    pane->clearRecords();
    commands.library();
    pane->reload();
    answer(IDOK);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    EXPECT_EQ(album(2).newDate, now.wYear * 10000 + now.wMonth * 100 + now.wDay);
    EXPECT_EQ(written(), Texts{"Yearling"}) << "the albums it was asked for, as far as they are there";

    choose({"Artist/Album", "LUMEN"});
    send(albumCommand::kNewDate);
    commands.busy = true;
    answer(IDOK);
    EXPECT_EQ(written(), Texts{});
}

TEST_F(PaneAlbumDetailsTest, MarksRebuildTheTreesOfMarksOnly)
{
    open();
    choose({"Artist/Album", "The Harbour Quartet"});
    const HTREEITEM selected = tree().selection();
    send(albumCommand::kFavourite);
    EXPECT_EQ(children(node({"Artist/Album"}, kFavourites), kFavourites),
              (Texts{"LUMEN", "The Harbour Quartet"}));
    EXPECT_EQ(tree().selection(), selected);
    EXPECT_EQ(titles(), (Texts{"Yearling", "Tidewater"}));
    EXPECT_EQ(pane->status(), "Artist/Album - The Harbour Quartet - Multiple Selection: 2 of 5");

    commands.logged.clear();
    send(albumCommand::kRankNone + 7);
    EXPECT_EQ(commands.logged, Texts{}) << "a rank rebuilds nothing";
    EXPECT_NE(node({"Rank", "(Unranked)", "The Harbour Quartet"}), nullptr);
    EXPECT_EQ(node({"Rank", "7"}), nullptr);

    chooseTree(kFavourites);
    choose({"Artist/Album", "The Harbour Quartet"}, kFavourites);
    EXPECT_EQ(titles(), (Texts{"Yearling", "Tidewater"}));
    send(albumCommand::kRankNone + 8);
    EXPECT_EQ(titles().size(), 2u);
    selectOnly({0});
    send(albumCommand::kNoFavourite);
    EXPECT_EQ(titles(), Texts{});
    EXPECT_EQ(tree(kFavourites).selection(), nullptr);
    EXPECT_EQ(pane->status(), "Total Albums: 5");
    EXPECT_EQ(children(node({"Artist/Album", "The Harbour Quartet"}, kFavourites), kFavourites),
              Texts{"Tidewater"});
    EXPECT_NE(node({"Rank", "8", "The Harbour Quartet", "Tidewater"}, kFavourites), nullptr)
        << "it shows the new rank";
    EXPECT_EQ(node({"Rank", "7"}), nullptr) << "the library's tree was left alone";
    EXPECT_EQ(tree().selection(), selected);
}

TEST_F(PaneAlbumDetailsTest, AHiddenTreeOfMarksForgetsItsSelectionWhenItIsMadeAnew)
{
    open();
    chooseTree(kFavourites);
    choose({"Artist/Album", "LUMEN"}, kFavourites);
    chooseTree(kLibrary);
    choose({"Artist/Album", "Vera Linde"});
    send(albumCommand::kNewToday);
    EXPECT_EQ(titles(), Texts{"Nothing"});
    chooseTree(kFavourites);
    EXPECT_EQ(tree(kFavourites).selection(), nullptr);
    EXPECT_EQ(titles(), Texts{});
    EXPECT_EQ(pane->status(), "Total Albums: 5");
}

TEST_F(PaneAlbumDetailsTest, KeysActOnSelectedRowsOnly)
{
    open();
    choose({"Artist/Album"});
    key('5', true);
    key('B', true);
    key('N', true, true);
    EXPECT_EQ(written(), Texts{}) << "no row is selected";
    selectOnly({0, 3});
    key('B', true);
    EXPECT_TRUE(album(1).has(kAlbumFavourite) && album(4).has(kAlbumFavourite)) << "one was no favourite";
    key('B', true);
    EXPECT_FALSE(album(1).has(kAlbumFavourite) || album(4).has(kAlbumFavourite));
    key('N', true, true);
    EXPECT_TRUE(album(1).has(kAlbumNew) && album(4).has(kAlbumNew));
    written();
    key('5', false);
    key('B', false);
    key('N', true);
    key('5', true, true);
    EXPECT_EQ(written(), Texts{});
    EXPECT_EQ(album(3).rank, 0);
    EXPECT_EQ(list().selection(), (std::vector<int>{0, 3}));
}

TEST_F(PaneAlbumDetailsTest, TheLastChangesAreTakenBackOneByOne)
{
    open();
    choose({"Artist/Album", "The Harbour Quartet"});
    const auto captionMenu = [&] {
        std::string shown;
        const Meanwhile user([&] {
            if (const HMENU menu = openMenu())
                shown = outline(menu);
            return !shown.empty() && EndMenu();
        });
        SendMessageA(child(controlId::kCaptionMenu), WM_KEYDOWN, VK_DOWN, 1);
        settle();
        return shown.substr(0, shown.find('\t'));
    };
    EXPECT_EQ(captionMenu(), "(Undo");
    selectOnly({0, 1});
    key('9', true);
    key('N', true, true);
    selectOnly({1});
    key('4', true);
    key('4', true);
    send(albumCommand::kNoFavourite);
    EXPECT_EQ(written(), Texts{"Tidewater"}) << "what is not in the file yet is tried again";
    EXPECT_EQ(captionMenu(), "10981 Undo: Rank 4, 1 album") << "the last two changed nothing";
    key('Z', true);
    EXPECT_EQ(pane->status(), "Undone: Rank 4, 1 album");
    EXPECT_EQ(album(4).rank, 9);
    EXPECT_EQ(written(), Texts{"Tidewater"});
    EXPECT_EQ(captionMenu(), "10981 Undo: New, 2 albums");
    selectOnly({});
    SetFocus(tree().handle());
    hold(true, false);
    SendMessageA(tree().handle(), WM_KEYDOWN, 'Z', 1);
    hold(false, false);
    EXPECT_EQ(album(2).newDate, 20200131) << "it was new already";
    EXPECT_TRUE(album(2).has(kAlbumNew));
    EXPECT_FALSE(album(4).has(kAlbumNew));
    EXPECT_EQ(pane->status(), "Undone: New, 2 albums");
    EXPECT_EQ(children(node({"Artist/Album", "The Harbour Quartet"}, kNew), kNew), Texts{"Yearling"});
    key('Z', true);
    EXPECT_EQ(album(2).rank, 0);
    EXPECT_EQ(written(), (Texts{"Yearling", "Tidewater"}));
    key('Z', true);
    EXPECT_EQ(written(), Texts{});
    EXPECT_EQ(pane->status(), "Nothing to undo");

    selectOnly({0});
    for (int i = 0; i < 51; ++i)
        key(i % 2 == 0 ? '1' : '2', true);
    for (int i = 0; i < 50; ++i)
        key('Z', true);
    EXPECT_EQ(album(2).rank, 1) << "the oldest change is forgotten";
    written();
    key('Z', true);
    EXPECT_EQ(written(), Texts{});
}

TEST_F(PaneAlbumDetailsTest, TheCaptionOffersTheMarksOfThePreviousDatabase)
{
    const TemporaryFolder folder("caption-offer");
    commands.databaseSettings.lastUsed = folder.file("a.ts2");
    Database previous;
    Artist& lumen = addArtist(previous.library(), "LUMEN");
    Album& early = addAlbum(previous.library(), "Early", lumen);
    lumen.albums.emplace(early.id, &early);
    auto track = std::make_unique<Track>();
    track->id = early.id;
    track->album = &early;
    early.tracks.emplace(track->id, track.get());
    previous.library().tracks[track->id] = std::move(track);
    early.hostTitle = album(1).hostTitle = "Early";
    early.rank = 9;
    test::JobRig rig;
    JobContext context{systemFiles(), rig.log, rig.prompt, rig.terminating};
    ASSERT_TRUE(previous.write(folder.file("a.ts2.bak"), context));
    open();
    const HWND offer = child(controlId::kCaptionOffer);
    const auto press = [&] {
        SetFocus(offer);
        SendMessageA(offer, WM_KEYDOWN, VK_RETURN, 1);
        settle();
    };
    EXPECT_FALSE(IsWindowVisible(offer)) << "nothing is offered yet";
    pane->offerMarks({{folder.file("a.ts2.bak"), 1}, {folder.file("a.ts2.7.bak"), 2}});
    EXPECT_TRUE(IsWindowVisible(offer));
    EXPECT_EQ(windowText(offer), "The previous database holds marks of 1 album. Take them...");
    press();
    ASSERT_EQ(commands.dialogs.size(), 1u);
    const auto answer = [&](int button) {
        const Meanwhile user([&] {
            const HWND dialog = FindWindowA("#32770", "Take marks from another database");
            if (!dialog)
                return false;
            const bool possible = IsWindowEnabled(GetDlgItem(dialog, button)) != FALSE;
            EXPECT_TRUE(possible);
            PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(possible ? button : IDCANCEL), 0);
            return true;
        });
        std::exchange(commands.dialogs, {}).front()(parent);
    };
    answer(IDCANCEL);
    EXPECT_EQ(album(1).rank, 3);
    EXPECT_TRUE(IsWindowVisible(offer)) << "it stays until it is taken";
    const RECT button = Control(offer).rect();
    SendMessageA(offer, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    SendMessageA(offer, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
    settle();
    ASSERT_EQ(commands.dialogs.size(), 1u);
    EXPECT_GT(button.left, place(controlId::kCaptionMenu).right);
    EXPECT_LT(button.right, place(controlId::kStatus).right);
    answer(IDOK);
    EXPECT_EQ(album(1).rank, 9);
    EXPECT_TRUE(album(1).has(kAlbumFavourite)) << "what is not marked there stays";
    EXPECT_EQ(written(), Texts{"Early"});
    EXPECT_TRUE(IsWindowVisible(offer)) << "it is taken, and the next one offered";
    send(albumCommand::kDismissMarks);
    EXPECT_FALSE(IsWindowVisible(offer));
    EXPECT_NE(GetFocus(), offer);
    key('Z', true);
    EXPECT_EQ(album(1).rank, 3);
}

TEST_F(PaneAlbumDetailsTest, WhileALibraryIsBusyNothingIsDone)
{
    open();
    choose({"Artist/Album"});
    selectOnly({0});
    const Texts before = titles();
    const std::string status = pane->status();
    commands.busy = true;
    for (UINT command = albumCommand::kNewToday; command <= albumCommand::kPlay; ++command)
        SendMessageA(pane->window(), WM_COMMAND, command, 0);
    for (const WPARAM each : {WPARAM{'5'}, WPARAM{'B'}, WPARAM{'Z'}, WPARAM{VK_RETURN}})
        key(each, each != VK_RETURN);
    tree().select(node({"Genre"}));
    chooseTree(kNew);
    NMHDR click{list().handle(), controlId::kDetailsAlbums, static_cast<UINT>(NM_RCLICK)};
    SendMessageA(pane->window(), WM_NOTIFY, click.idFrom, reinterpret_cast<LPARAM>(&click));
    click = {tree().handle(), controlId::kTreeLibrary, static_cast<UINT>(NM_RCLICK)};
    SendMessageA(pane->window(), WM_NOTIFY, click.idFrom, reinterpret_cast<LPARAM>(&click));
    settle();
    EXPECT_EQ(takeCalls(), Texts{});
    EXPECT_EQ(written(), Texts{});
    EXPECT_EQ(commands.dialogs.size(), 0u);
    EXPECT_EQ(titles(), before);
    EXPECT_EQ(pane->status(), status);
    EXPECT_EQ(ComboBoxEx(child(controlId::kTreeCombo)).selection(), kLibrary);
    EXPECT_TRUE(IsWindowVisible(tree().handle()));
    commands.busy = false;
    for (UINT command = 9990; command <= 11010; ++command) {
        if (command < albumCommand::kNewToday || command > albumCommand::kPlay)
            SendMessageA(pane->window(), WM_COMMAND, command, 0);
    }
    EXPECT_EQ(takeCalls(), Texts{});
    EXPECT_EQ(written(), Texts{});
}
