// The album list under a real pointer, and what it shows behind its items.

#include "Hands.h"
#include "OverviewFixture.h"
#include "Snapshot.h"
#include "support/DropTarget.h"

#include <set>
#include <shlobj.h>
#include <thread>

namespace tessera {
namespace {

class AlbumListTest : public PaneOverviewTest {
protected:
    // Middle of an item on the screen.
    POINT middle(int item) const
    {
        const RECT place = m_pane->albumList().itemRect(item);
        return {place.left + 20, (place.top + place.bottom) / 2};
    }
    void addTracks(Album& album, std::initializer_list<const char*> files)
    {
        for (const char* const file : files) {
            const auto id = static_cast<std::int32_t>(m_commands.records.tracks.size()) + 1;
            auto track = std::make_unique<Track>();
            track->id = id;
            track->fileName = file;
            album.tracks[id] = track.get();
            m_commands.records.tracks[id] = std::move(track);
        }
    }
};

TEST_F(AlbumListTest, BackgroundPictureIsOffUntilItIsSet)
{
    open();
    AlbumList& albums = const_cast<AlbumList&>(m_pane->albumList());
    const int x = 500;
    const int y = 300; // below the last row
    EXPECT_EQ(pixel(x, y), m_commands.background);
    BitmapHandle picture;
    {
        const WindowDc screen;
        picture.reset(CreateCompatibleBitmap(screen.dc(), 16, 16));
        const MemoryDc memory(screen.dc());
        const SelectScope selected(memory.dc(), picture.get());
        fillRect(memory.dc(), {0, 0, 16, 16}, RGB(10, 120, 30));
    }
    for (const ListStyle style : {ListStyle::Details, ListStyle::Tiles, ListStyle::Icons}) {
        m_pane->setView(style);
        albums.setBackgroundPicture(picture.get());
        EXPECT_EQ(pixel(x, y), RGB(10, 120, 30)) << "behind the items, view " << static_cast<int>(style);
        albums.setBackgroundPicture(nullptr);
        EXPECT_EQ(pixel(x, y), m_commands.background) << static_cast<int>(style);
    }
    albums.setBackgroundPicture(picture.get());
    type("no such album");
    EXPECT_EQ(pixel(5, y), RGB(10, 120, 30)) << "behind the text of an empty list";
    albums.setBackgroundPicture(nullptr);
}

// Rows of the details view, higher than the small covers in them.
class AlbumRowsTest : public AlbumListTest {
protected:
    static constexpr int kColumns = 16;

    void openRows()
    {
        m_commands.setListFont(-30);
        open();
        // All columns are in view.
        for (int column = 0; column < kColumns; ++column)
            list().setColumnWidth(column, 50);
        SetFocus(list().handle());
    }
    Snapshot painted() const
    {
        RedrawWindow(m_pane->window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        return Snapshot(list().handle());
    }
    RECT part(int item, LONG which) const
    {
        RECT rect{which, 0, 0, 0};
        list().send(LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&rect));
        return rect;
    }
    RECT column(int index) const
    {
        RECT place{};
        SendMessageA(list().header(), HDM_GETITEMRECT, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(&place));
        return place;
    }
    // How many pixels of the upper line of a row are not as the line below it.
    int dots(const Snapshot& shot, int item, LONG from, LONG to) const
    {
        const int top = static_cast<int>(part(item, LVIR_BOUNDS).top);
        int count = 0;
        for (int x = static_cast<int>(from); x < to; ++x)
            count += shot.at(x, top) != shot.at(x, top + 1);
        return count;
    }
    COLORREF ground(const Snapshot& shot, int item, LONG x) const
    {
        return shot.at(static_cast<int>(x), static_cast<int>(part(item, LVIR_BOUNDS).top) + 2);
    }
    // Where a row shows its cover.
    RECT coverIn(const Snapshot& shot, int item) const
    {
        const RECT row = part(item, LVIR_BOUNDS);
        RECT found{shot.width(), shot.height(), 0, 0};
        for (int y = static_cast<int>(row.top); y < row.bottom; ++y) {
            for (int x = 0; x < shot.width(); ++x) {
                if (shot.at(x, y) != ColouredCovers::kColour)
                    continue;
                found = {std::min<LONG>(found.left, x), std::min<LONG>(found.top, y),
                         std::max<LONG>(found.right, x + 1), std::max<LONG>(found.bottom, y + 1)};
            }
        }
        return found;
    }
};

TEST_F(AlbumRowsTest, ShowWhatIsSelectedAndWhereTheFocusIs)
{
    openRows();
    selectOnly({2});
    list().setFocused(1);
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    // The first column first, in the middle and last.
    for (const int place : {0, 5, kColumns - 1}) {
        std::vector<int> order;
        for (int index = 1; index < kColumns; ++index)
            order.push_back(kColumns - index);
        order.insert(order.begin() + place, 0);
        list().send(LVM_SETCOLUMNORDERARRAY, kColumns, reinterpret_cast<LPARAM>(order.data()));
        const Snapshot shot = painted();
        for (const int item : {1, 2}) {
            const RECT row = part(item, LVIR_BOUNDS);
            const RECT cover = coverIn(shot, item);
            ASSERT_GT(row.bottom - row.top, 30);
            EXPECT_EQ(cover.right - cover.left, 16) << place;
            EXPECT_EQ(cover.bottom - cover.top, 16) << place << ": nothing is drawn over it";
            EXPECT_LE(std::abs((cover.top + cover.bottom) - (row.top + row.bottom)), 1) << place;
            EXPECT_LE(column(0).left, cover.left);
            EXPECT_GE(column(0).right, cover.right);
        }
        const LONG left = place == 0 ? part(2, LVIR_LABEL).left : 0;
        const LONG right = column(order.back()).right;
        for (int index = 0; index < kColumns; ++index) {
            EXPECT_EQ(ground(shot, 2, column(index).right - 2), highlight) << place << " " << index;
            EXPECT_EQ(ground(shot, 1, column(index).right - 2), m_commands.background);
        }
        EXPECT_EQ(ground(shot, 2, left), highlight) << place;
        EXPECT_NE(ground(shot, 2, left - 1), highlight) << place;
        EXPECT_NE(ground(shot, 2, right), highlight) << place;
        EXPECT_GT(dots(shot, 1, left, right), (right - left) / 3) << place;
        EXPECT_EQ(dots(shot, 1, 0, left), 0) << place;
        EXPECT_EQ(dots(shot, 1, right, shot.width()), 0) << place;
        EXPECT_EQ(dots(shot, 0, 0, right), 0) << place << ": another row";
    }
    SetFocus(box().handle());
    const Snapshot without = painted();
    EXPECT_EQ(dots(without, 1, 0, without.width()), 0);
    EXPECT_EQ(ground(without, 2, 100), GetSysColor(COLOR_BTNFACE));
}

// One colour from the header to the bottom, in whatever order, also when a part is painted again.
TEST_F(AlbumRowsTest, TheSortedColumnIsShadedDownToTheBottom)
{
    openRows();
    clickColumn(3);
    const auto shades = [&](const Snapshot& shot) {
        const int x = static_cast<int>(column(3).right) - 1;
        std::set<COLORREF> all;
        for (int y = static_cast<int>(part(0, LVIR_BOUNDS).top); y < shot.height(); ++y)
            all.insert(shot.at(x, y));
        return all;
    };
    const Snapshot shot = painted();
    ASSERT_EQ(shades(shot).size(), 1u);
    EXPECT_NE(*shades(shot).begin(), m_commands.background);
    for (const int other : {2, 4})
        EXPECT_EQ(ground(shot, 0, column(other).right - 1), m_commands.background);
    EXPECT_EQ(shot.at(static_cast<int>(column(2).right) - 1, shot.height() - 2), m_commands.background);

    const RECT lower{0, 200, 900, 210};
    RedrawWindow(list().handle(), &lower, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_EQ(shades(Snapshot(list().handle())), shades(shot));
    const RECT place = part(0, LVIR_BOUNDS);
    RedrawWindow(list().handle(), &place, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(shades(Snapshot(list().handle())), shades(shot));
}

TEST_F(AlbumListTest, AlbumsAreDraggedOutAsTheirFilesInTrackOrder)
{
    m_commands.generalSettings.sortTracksByLocation = true;
    addTracks(*m_commands.records.albums[1], {"C:\\m\\b.mp3", "C:\\m\\A.mp3"});
    addTracks(*m_commands.records.albums[2], {"C:\\m\\c.mp3"});
    const OleInit ole;
    open();
    MoveWindow(m_pane->window(), 0, 0, 900, 400, TRUE);
    const HWND below = CreateWindowExA(0, "LISTBOX", "", WS_CHILD | WS_VISIBLE, 0, 400, 900, 200, m_hParent,
                                       nullptr, nullptr, nullptr);
    test::DropTarget target;
    ASSERT_EQ(RegisterDragDrop(below, &target), S_OK);
    pumpMessages(100);
    selectOnly({0, 1});
    const POINT from = middle(0);
    std::thread hand([from] {
        const auto step = [](POINT place, DWORD button) {
            SetCursorPos(place.x, place.y);
            mouse_event(MOUSEEVENTF_MOVE, 1, 0, 0, 0);
            mouse_event(button, 0, 0, 0, 0);
            Sleep(60);
        };
        step(from, MOUSEEVENTF_LEFTDOWN);
        for (const int y : {20, 60, 200, 420, 500, 502})
            step({from.x + y / 4, y < from.y ? from.y + y : y}, MOUSEEVENTF_MOVE);
        step({from.x + 130, 505}, MOUSEEVENTF_LEFTUP);
    });
    pumpMessages(1500);
    hand.join();
    EXPECT_EQ(target.files(), (Titles{"C:\\m\\A.mp3", "C:\\m\\b.mp3", "C:\\m\\c.mp3"}));
    RevokeDragDrop(below);
}

TEST_F(AlbumListTest, ControlAndWheelOfARealMouse)
{
    open();
    m_pane->setView(ListStyle::Icons);
    m_commands.artworkSettings.imageSizeIndex = 2;
    hands::pointAt(middle(0));
    SetFocus(list().handle());
    hands::hold(VK_CONTROL);
    for (const int delta : {-30, -30, -30, -30})
        hands::turnWheel(delta);
    hands::letGo(VK_CONTROL);
    hands::turnWheel(120);
    EXPECT_EQ(m_commands.calls, Titles{"size 1"}) << "one notch; without the key the list scrolls";
}

TEST_F(AlbumListTest, TheFirstAlbumInViewStaysThereWhenTheCellsGrow)
{
    for (int i = 0; i < 200; ++i)
        addAlbum(m_commands.records, "More", *m_commands.records.artists[1]);
    open();
    m_pane->setView(ListStyle::Icons);
    hands::pointAt(middle(0));
    for (int notch = 0; notch < 12; ++notch)
        hands::turnWheel(-120);
    const auto firstInView = [&] {
        const int items = list().count();
        int item = 0;
        while (item < items && cell(item).top < 0)
            ++item;
        return item;
    };
    const int before = firstInView();
    ASSERT_GT(before, 8);
    const LONG width = cell(0).right - cell(0).left;
    m_commands.fakeCovers.size = {175, 175};
    for (CoverListener* const listener : std::vector(m_commands.fakeCovers.listeners))
        listener->imageListsRebuilt();
    pumpMessages(50);
    ASSERT_GT(cell(0).right - cell(0).left, width);
    const LONG perRow = list().clientRect().right / (175 + 20);
    EXPECT_LE(firstInView(), before);
    EXPECT_GT(firstInView(), before - static_cast<int>(perRow));
}

// Looks at the menu that is open, from a timer of the menu's own loop, and closes it.
struct OpenMenu {
    static inline std::vector<std::string> texts;
    static inline RECT place{};

    static void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD)
    {
        const HWND window = FindWindowA("#32768", nullptr);
        if (!window || !IsWindowVisible(window))
            return;
        KillTimer(nullptr, timer);
        GetWindowRect(window, &place);
        constexpr UINT kGetMenu = 0x01E1; // MN_GETHMENU
        const auto menu = reinterpret_cast<HMENU>(SendMessageA(window, kGetMenu, 0, 0));
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            char text[128] = "";
            GetMenuStringA(menu, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
            texts.emplace_back(text);
        }
        EndMenu();
    }
};

TEST_F(AlbumListTest, MenuComesUpWhereTheItemIs)
{
    open();
    m_pane->setView(ListStyle::Icons);
    pumpMessages(100);
    selectOnly({1});
    list().setFocused(1);
    OpenMenu::texts.clear();
    SetTimer(nullptr, 0, 50, &OpenMenu::look);
    SendMessageA(list().handle(), WM_KEYDOWN, VK_APPS, 1);
    EXPECT_EQ(OpenMenu::texts, (Titles{"Play: Yearling", "Append To Playlist: Yearling", "", "Sort By", "",
                                       "Go To Directory"}));
    POINT cursor{};
    GetCursorPos(&cursor);
    const RECT item = m_pane->albumList().itemRect(1);
    EXPECT_TRUE(PtInRect(&item, {cursor.x, (item.top + item.bottom) / 2}));
    EXPECT_LE(std::abs(OpenMenu::place.left - cursor.x), 4);
    EXPECT_LE(std::abs(OpenMenu::place.top - cursor.y), 4);
    EXPECT_TRUE(m_commands.calls.empty()) << "a menu that is closed does nothing";
}

} // namespace
} // namespace tessera
