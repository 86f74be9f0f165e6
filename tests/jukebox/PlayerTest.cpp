#include "jukebox/Player.h"

#include <gtest/gtest.h>

namespace tessera::jukebox {
namespace {

std::uint32_t s_now = 0;

Library threeTracks()
{
    std::vector<std::string> complaints;
    return *Library::parse("Filename\tDuration\na\t10\nb\t20\nc\t30\n", complaints);
}

// A player with all three tracks in its playlist, at a clock that starts shortly before it wraps.
class PlayerTest : public testing::Test {
protected:
    PlayerTest()
    {
        s_now = 0xFFFFF000;
        m_player.onChange([this] { ++m_changes; });
        m_player.add(std::vector<TrackIndex>{0, 1, 2});
    }
    void pass(std::uint32_t milliseconds)
    {
        s_now += milliseconds;
        m_player.advance();
    }
    void expectPlaying(std::int32_t position, std::uint32_t elapsedMs)
    {
        const NowPlaying now = m_player.now();
        EXPECT_EQ(now.state, PlayState::Playing);
        EXPECT_EQ(now.position, position);
        EXPECT_EQ(now.elapsedMs, elapsedMs);
    }

    Library m_library = threeTracks();
    Player m_player{m_library, [] { return s_now; }};
    int m_changes = 0;
};

TEST_F(PlayerTest, GoesOnToTheNextEntryByItselfAndStopsAtTheEnd)
{
    m_player.play();
    pass(9999);
    expectPlaying(0, 9999);
    pass(1);
    expectPlaying(1, 0);
    pass(20000);
    expectPlaying(2, 0);
    pass(30000);
    EXPECT_EQ(m_player.state(), PlayState::Stopped);
    EXPECT_EQ(m_player.now().track, std::nullopt);
    EXPECT_EQ(m_player.position(), 2);
}

TEST_F(PlayerTest, APauseHoldsTheClock)
{
    m_player.playEntry(1);
    pass(5000);
    m_player.pause();
    pass(60000);
    EXPECT_EQ(m_player.now().elapsedMs, 5000u);
    EXPECT_EQ(m_player.state(), PlayState::Paused);
    m_player.play();
    pass(1000);
    expectPlaying(1, 6000);
    m_player.seek(19000);
    pass(1000);
    expectPlaying(2, 0);
}

TEST_F(PlayerTest, APositionSetWhileATrackPlaysIsWhatFollows)
{
    m_player.play();
    m_player.setPosition(2);
    EXPECT_EQ(m_player.now().track, TrackIndex{0});
    pass(10000);
    expectPlaying(2, 0);
}

TEST_F(PlayerTest, ATrackGoesOnWhenThePlaylistIsReplaced)
{
    m_player.play();
    m_player.clear();
    EXPECT_EQ(m_player.position(), -1);
    EXPECT_EQ(m_player.now().track, TrackIndex{0});
    m_player.add(std::vector<TrackIndex>{2});
    m_player.setPosition(0);
    pass(10000);
    EXPECT_EQ(m_player.now().track, TrackIndex{2});
    expectPlaying(0, 0);
}

TEST_F(PlayerTest, NextAndPreviousStayInsideThePlaylist)
{
    m_player.playEntry(0);
    m_player.previous();
    expectPlaying(0, 0);
    m_player.next();
    m_player.next();
    expectPlaying(2, 0);
    m_player.next();
    EXPECT_EQ(m_player.state(), PlayState::Stopped);
    m_player.playEntry(7);
    EXPECT_EQ(m_player.state(), PlayState::Stopped);
}

TEST_F(PlayerTest, AnEmptyPlaylistStaysSilent)
{
    m_player.clear();
    m_player.play();
    m_player.playEntry();
    m_player.next();
    m_player.previous();
    m_player.pause();
    EXPECT_EQ(m_player.state(), PlayState::Stopped);
    m_player.setPosition(0);
    EXPECT_EQ(m_player.position(), -1);
    EXPECT_EQ(m_player.entry(0), std::nullopt);
    EXPECT_EQ(m_player.entry(-1), std::nullopt);
}

TEST_F(PlayerTest, EveryChangeIsTold)
{
    const int before = m_changes;
    m_player.play();
    m_player.setPosition(1);
    EXPECT_EQ(m_changes, before + 2);
    pass(1);
    EXPECT_EQ(m_changes, before + 2);
    pass(10000);
    EXPECT_EQ(m_changes, before + 3);
}

} // namespace
} // namespace tessera::jukebox
