#include "ui/AlbumBalloon.h"
#include "FakeCommands.h"
#include "support/FakeHost.h"
#include "support/GdiObjects.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"
#include "windowing/ImageList.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tessera {
namespace {

class BalloonCommands : public FakeCommands {
public:
    const TokenParser& tokens() const override { return parser; }
    TokenParser parser;
};

BOOL CALLBACK countWindow(HWND, LPARAM count) noexcept
{
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

int windowsOfThread()
{
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), countWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

std::string classOf(HWND window)
{
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

// A list in a window that is active, with two albums of two tracks.
class AlbumBalloonTest : public testing::Test {
protected:
    AlbumBalloonTest()
    {
        initCommonControls();
        m_hParent = makeParentWindow(800, 600);
        m_hList = CreateWindowExA(0, "LISTBOX", "", WS_CHILD | WS_VISIBLE, 0, 0, 800, 600, m_hParent, nullptr,
                                  GetModuleHandleA(nullptr), nullptr);
        ShowWindow(m_hParent, SW_SHOW);
        SetForegroundWindow(m_hParent);
        SetFocus(m_hList);
        pumpMessages(30);
        m_commands.balloonSettings.delay = 0;
        m_host.tracks.resize(4);
        for (int i = 0; i < 4; ++i)
            addTrack(i);
        m_balloon = std::make_unique<AlbumBalloon>(m_commands);
    }
    ~AlbumBalloonTest() override
    {
        m_balloon.reset();
        DestroyWindow(m_hParent);
    }

    void addTrack(int i)
    {
        m_host.tracks[i].fileName = toWide(format("C:\\%d.mp3", i));
        m_host.tracks[i].number = i % 2 + 1;
        m_tracks[i].id = i + 1;
        m_tracks[i].fileName = format("C:\\%d.mp3", i);
        m_tracks[i].m_pMJFile = m_host.file(m_tracks[i].fileName);
        Album& album = m_albums[i / 2];
        m_tracks[i].album = &album;
        album.displayTitle = i / 2 == 0 ? "Tidewater" : "Second";
        album.artist = &m_artist;
        album.tracks[i + 1] = &m_tracks[i];
    }
    static POINT placeOf(int album) { return {150 + 200 * album, 350}; }
    BalloonTarget target(int album)
    {
        const POINT at = placeOf(album);
        return {&m_albums[album], {at.x - 50, at.y - 50, at.x + 50, at.y + 50}};
    }
    // The pointer comes to the album and rests for a tick.
    bool rest(int album)
    {
        m_balloon->track(m_hList, target(album), placeOf(album), true);
        m_balloon->track(m_hList, target(album), placeOf(album), false);
        return m_balloon->isShown();
    }
    void leave() { m_balloon->track(m_hList, {}, {700, 50}, true); }

    BalloonCommands m_commands;
    test::FakeHost m_host;
    Artist m_artist;
    Album m_albums[2];
    Track m_tracks[4];
    HWND m_hParent = nullptr;
    HWND m_hList = nullptr;
    std::unique_ptr<AlbumBalloon> m_balloon;
};

TEST_F(AlbumBalloonTest, RestingOnAnAlbumShowsItsTextsAndTakesNoFocus)
{
    m_balloon->track(m_hList, target(0), placeOf(0), true);
    EXPECT_FALSE(m_balloon->isShown()) << "the pointer is still moving";
    ASSERT_TRUE(rest(0));
    const BalloonWindow& window = m_balloon->window();
    EXPECT_EQ(classOf(window.handle()), "BalloonHelpClassDS");
    EXPECT_TRUE(IsWindowVisible(window.handle()));
    EXPECT_EQ(GetFocus(), m_hList);
    EXPECT_EQ(GetActiveWindow(), m_hParent);
    EXPECT_EQ(window.title(), (std::vector<std::string>{" - Tidewater - No Year", "0 kbps "}));
    EXPECT_EQ(window.body(), (std::vector<std::string>{"  1.     ()", "  2.     ()"}));
    EXPECT_EQ(windowText(window.handle()), " - Tidewater - No Year\r\n0 kbps \n  1.     ()\n  2.     ()\n")
        << "the same for those who read windows";
    EXPECT_EQ(window.timeOut(), 30000u);
    EXPECT_EQ(window.iconSize().cx, 0);
    RECT place{}, covered{};
    GetWindowRect(window.handle(), &place);
    const RECT item = target(0).item;
    EXPECT_FALSE(IntersectRect(&covered, &place, &item));
}

TEST_F(AlbumBalloonTest, NotShownWhenItIsNotWantedOrNotSeen)
{
    m_commands.balloonSettings.enabled = false;
    EXPECT_FALSE(rest(0));
    m_commands.balloonSettings.enabled = true;
    m_commands.busy = true;
    EXPECT_FALSE(rest(0));
    m_commands.busy = false;
    // Something lies over the list.
    const HWND cover = CreateWindowExA(0, "LISTBOX", "", WS_POPUP | WS_VISIBLE, 100, 300, 100, 100, m_hParent,
                                       nullptr, GetModuleHandleA(nullptr), nullptr);
    EXPECT_FALSE(rest(0));
    DestroyWindow(cover);
    SetActiveWindow(m_hParent);
    SetCapture(m_hList);
    EXPECT_FALSE(rest(0)) << "a drag is going on";
    ReleaseCapture();
    EXPECT_TRUE(rest(0));
}

TEST_F(AlbumBalloonTest, NextBalloonWaitsForTheDeadline)
{
    m_commands.balloonSettings.delay = 300;
    const DWORD start = GetTickCount();
    ASSERT_TRUE(rest(0));
    ASSERT_FALSE(rest(1));
    ASSERT_FALSE(m_balloon->isShown()) << "the first item is left";
    while (!rest(1) && GetTickCount() - start < 5000)
        Sleep(10);
    EXPECT_TRUE(m_balloon->isShown());
    EXPECT_GE(GetTickCount() - start, 300u);
    m_commands.balloonSettings.delay = 0;
}

TEST_F(AlbumBalloonTest, WhatTheUserDoesClosesItUntilTheItemIsLeft)
{
    const struct {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        bool toList;
    } acts[] = {{WM_LBUTTONDOWN, 0, MAKELPARAM(5, 5), false},
                {WM_RBUTTONDOWN, 0, MAKELPARAM(5, 5), false},
                {WM_ACTIVATEAPP, FALSE, 0, false},
                {WM_TIMER, 1, 0, false},
                {WM_KEYDOWN, VK_DOWN, 0, true},
                {WM_VSCROLL, SB_LINEDOWN, 0, true},
                {WM_MOUSEMOVE, 0, MAKELPARAM(700, 20), true},
                {WM_SHOWWINDOW, FALSE, 0, true}};
    for (const auto& act : acts) {
        ASSERT_TRUE(rest(0));
        SendMessageA(m_hList, WM_MOUSEMOVE, 0, MAKELPARAM(placeOf(0).x + 3, placeOf(0).y));
        ASSERT_TRUE(m_balloon->isShown()) << "still on the item";
        SendMessageA(act.toList ? m_hList : m_balloon->window().handle(), act.message, act.wParam,
                     act.lParam);
        EXPECT_FALSE(m_balloon->isShown()) << act.message;
        EXPECT_FALSE(rest(0)) << "not again on the same item: " << act.message;
        leave();
    }
    ASSERT_TRUE(rest(0));
    m_commands.busy = true;
    m_balloon->track(m_hList, target(0), placeOf(0), false);
    EXPECT_FALSE(m_balloon->isShown());
}

TEST_F(AlbumBalloonTest, ListMayGoFirst)
{
    ASSERT_TRUE(rest(0));
    DestroyWindow(m_hParent);
    EXPECT_FALSE(m_balloon->isShown());
}

TEST_F(AlbumBalloonTest, FailingHostIsQuiet)
{
    m_host.failingCall = m_host.calls + 1;
    EXPECT_TRUE(rest(0));
    EXPECT_TRUE(m_balloon->window().body().empty());
    EXPECT_TRUE(m_commands.messages.empty());
    m_commands.balloonSettings.headingTokens.clear();
    m_tracks[2].m_pMJFile = nullptr;
    EXPECT_FALSE(rest(1)) << "nothing to show";
}

TEST_F(AlbumBalloonTest, PictureFollowsTheSettings)
{
    const ImageList list = ImageList::create(70, 40, 1);
    {
        const WindowDc screen;
        const BitmapHandle bitmap(CreateCompatibleBitmap(screen.dc(), 70, 40));
        ASSERT_EQ(list.add(bitmap.get()), 0);
    }
    m_commands.fakeCovers.lists[3] = list.get();
    const struct {
        bool show;
        int width;
        int height;
        LONG expected;
    } cases[] = {{true, 70, 40, 70}, {false, 70, 40, 0}, {true, 0, 40, 0}, {true, 70, 0, 0}};
    for (const auto& c : cases) {
        m_commands.balloonSettings.showArtwork = c.show;
        m_commands.balloonSettings.width = c.width;
        m_commands.balloonSettings.height = c.height;
        ASSERT_TRUE(rest(0));
        EXPECT_EQ(m_balloon->window().iconSize().cx, c.expected);
        leave();
    }
    m_commands.balloonSettings.height = 40;
    ASSERT_TRUE(rest(0));
    ASSERT_EQ(m_commands.fakeCovers.listeners.size(), 1u);
    m_commands.fakeCovers.listeners[0]->coversArrived({&m_albums[0]});
    EXPECT_EQ(m_balloon->window().iconSize().cx, 70);
    m_balloon.reset();
    EXPECT_TRUE(m_commands.fakeCovers.listeners.empty());
    m_commands.fakeCovers.lists[3] = nullptr;
}

TEST_F(AlbumBalloonTest, NothingIsLeftBehind)
{
    const ImageList list = ImageList::create(64, 64, 1);
    const WindowDc screen;
    const BitmapHandle bitmap(CreateCompatibleBitmap(screen.dc(), 64, 64));
    list.add(bitmap.get());
    m_commands.fakeCovers.lists[3] = list.get();
    ASSERT_TRUE(rest(0));
    leave();
    const int objects = test::gdiObjects();
    const int windows = windowsOfThread();
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(rest(i % 2));
        m_commands.fakeCovers.listeners[0]->coversArrived({&m_albums[i % 2]});
        pumpMessages(1);
        leave();
    }
    EXPECT_EQ(test::gdiObjects(), objects);
    EXPECT_EQ(windowsOfThread(), windows);
    m_commands.fakeCovers.lists[3] = nullptr;
}

} // namespace
} // namespace tessera
