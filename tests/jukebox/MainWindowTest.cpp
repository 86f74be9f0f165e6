#include "jukebox/MainWindow.h"

#include "base/Clock.h"
#include "jukebox/CommandIds.h"

#include <gtest/gtest.h>

namespace tessera::jukebox {
namespace {

Library parseLibrary()
{
    std::vector<std::string> complaints;
    return *Library::parse("Filename\tName\tArtist\tAlbum\tDuration\n"
                           "a\tOne\tArt\tAlb\t61\nb\tTwo\tArt\tAlb\t20\nc\tThree\tArt\tAlb\t30\n",
                           complaints);
}

// The real window, driven by sent messages only: what it posts to itself, the loading of the
// plug-in too, stays in the queue.
class MainWindowTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_window.open());
        m_player.add(std::vector<TrackIndex>{0, 1, 2});
    }
    void media(int command) { SendMessageA(m_window.handle(), WM_APPCOMMAND, 0, MAKELPARAM(0, command)); }
    HWND child(UINT id) { return GetDlgItem(m_window.handle(), static_cast<int>(id)); }

    OleInit m_ole;
    Library m_library = parseLibrary();
    Player m_player{m_library, tickCount};
    HostState m_state{m_library, m_player};
    MainWindow m_window{m_state};
};

TEST_F(MainWindowTest, MediaCommandsOfOtherProgramsAreObeyed)
{
    EXPECT_EQ(FindWindowA("MJFrame", "MEDIA JUKEBOX"), m_window.handle());
    media(14);
    EXPECT_EQ(m_player.now().track, TrackIndex{0});
    media(11);
    media(11);
    EXPECT_EQ(m_player.now().track, TrackIndex{2});
    media(12);
    EXPECT_EQ(m_player.now().track, TrackIndex{1});
    media(14);
    EXPECT_EQ(m_player.state(), PlayState::Paused);
    media(14);
    EXPECT_EQ(m_player.state(), PlayState::Playing);
    media(13);
    EXPECT_EQ(m_player.state(), PlayState::Stopped);
}

TEST_F(MainWindowTest, ThePlaylistShowsItsTracksAndPlaysOne)
{
    SendMessageA(m_window.handle(), WM_APP + 2, 0, 0); // as after a change
    const ListView list(GetDlgItem(child(kPlaylistId), static_cast<int>(kPlaylistListId)));
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.text(0, 0), "One");
    EXPECT_EQ(list.text(1, 2), "Alb");
    EXPECT_EQ(list.text(0, 3), "1:01");
    list.setFocused(1);
    list.select(1);
    list.send(WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(m_player.now().track, TrackIndex{1});
}

TEST_F(MainWindowTest, HiddenPartsLeaveTheirPlaceToTheOthers)
{
    const auto height = [&](UINT id) { return Control(child(id)).clientRect().bottom; };
    const LONG before = height(kPluginAreaId);
    SendMessageA(m_window.handle(), WM_COMMAND, kShowPlaylist, 0);
    EXPECT_FALSE(IsWindowVisible(child(kPlaylistId)));
    EXPECT_GT(height(kPluginAreaId), before);
    SendMessageA(m_window.handle(), WM_COMMAND, kShowPlaylist, 0);
    EXPECT_EQ(height(kPluginAreaId), before);
    SendMessageA(m_window.handle(), WM_COMMAND, kShowPlugin, 0);
    EXPECT_FALSE(IsWindowVisible(child(kPluginAreaId)));
    EXPECT_GT(height(kPlaylistId), before);
    MoveWindow(m_window.handle(), 0, 0, 10, 10, TRUE); // smaller than anything fits
    EXPECT_GE(Control(child(kPlaylistId)).clientRect().bottom, 0);
}

TEST_F(MainWindowTest, TheWholeLibraryIsPlayedAndCleared)
{
    m_player.clear();
    SendMessageA(m_window.handle(), WM_COMMAND, kPlayLibrary, 0);
    EXPECT_EQ(m_player.count(), 3);
    EXPECT_EQ(m_player.now().track, TrackIndex{0});
    SendMessageA(m_window.handle(), WM_COMMAND, kClearPlaylist, 0);
    EXPECT_EQ(m_player.count(), 0);
    EXPECT_EQ(m_player.state(), PlayState::Stopped);
}

} // namespace
} // namespace tessera::jukebox
