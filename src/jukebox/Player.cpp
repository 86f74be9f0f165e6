#include "jukebox/Player.h"

#include <algorithm>

namespace tessera::jukebox {

template <class Change>
void Player::change(Change what)
{
    {
        const std::lock_guard guard(m_lock);
        what();
    }
    notify();
}

void Player::notify() const
{
    if (m_listener) {
        m_listener();
    }
}

std::int32_t Player::count() const
{
    const std::lock_guard guard(m_lock);
    return countLocked();
}

std::optional<TrackIndex> Player::entry(std::int32_t index) const
{
    const std::lock_guard guard(m_lock);
    if (index < 0 || index >= countLocked()) {
        return std::nullopt;
    }
    return m_entries[static_cast<std::size_t>(index)];
}

void Player::clear()
{
    change([&] {
        m_entries.clear();
        m_position = -1;
        m_positionIsNext = false;
    });
}

void Player::add(std::span<const TrackIndex> tracks)
{
    change([&] { m_entries.insert(m_entries.end(), tracks.begin(), tracks.end()); });
}

std::int32_t Player::position() const
{
    const std::lock_guard guard(m_lock);
    return m_position;
}

void Player::setPosition(std::int32_t index)
{
    change([&] {
        m_position = index >= 0 && index < countLocked() ? index : -1;
        m_positionIsNext = m_state != PlayState::Stopped;
    });
}

PlayState Player::state() const
{
    const std::lock_guard guard(m_lock);
    return m_state;
}

void Player::startLocked(std::int32_t index)
{
    if (index < 0 || index >= countLocked()) {
        return stopLocked();
    }
    m_position = index;
    m_positionIsNext = false;
    m_track = m_entries[static_cast<std::size_t>(index)];
    m_state = PlayState::Playing;
    m_startedAt = m_clock();
    m_playedBefore = 0;
}

void Player::stopLocked()
{
    m_state = PlayState::Stopped;
    m_track.reset();
    m_positionIsNext = false;
    m_playedBefore = 0;
}

void Player::play()
{
    change([&] {
        if (m_state == PlayState::Paused) {
            m_state = PlayState::Playing;
            m_startedAt = m_clock();
        } else if (m_state == PlayState::Stopped) {
            startLocked(std::max(m_position, 0));
        }
    });
}

void Player::playEntry()
{
    change([&] { startLocked(std::max(m_position, 0)); });
}

void Player::playEntry(std::int32_t index)
{
    change([&] { startLocked(index); });
}

void Player::pause()
{
    change([&] {
        if (m_state == PlayState::Playing) {
            m_playedBefore = elapsedLocked();
            m_state = PlayState::Paused;
        } else if (m_state == PlayState::Paused) {
            m_state = PlayState::Playing;
            m_startedAt = m_clock();
        }
    });
}

void Player::stop()
{
    change([&] { stopLocked(); });
}

void Player::next()
{
    change([&] { startLocked(followingLocked()); });
}

void Player::previous()
{
    change([&] { startLocked(std::max(m_position - 1, 0)); });
}

void Player::seek(std::uint32_t elapsedMs)
{
    change([&] {
        if (m_track) {
            m_playedBefore = std::min(elapsedMs, durationLocked());
            m_startedAt = m_clock();
        }
    });
}

void Player::advance()
{
    {
        const std::lock_guard guard(m_lock);
        if (m_state != PlayState::Playing || elapsedLocked() < durationLocked()) {
            return;
        }
        startLocked(followingLocked());
    }
    notify();
}

std::int32_t Player::followingLocked() const
{
    return m_positionIsNext ? m_position : m_position + 1;
}

std::uint32_t Player::elapsedLocked() const
{
    if (m_state != PlayState::Playing) {
        return m_playedBefore;
    }
    return m_playedBefore + (m_clock() - m_startedAt);
}

std::uint32_t Player::durationLocked() const
{
    if (!m_track) {
        return 0;
    }
    return static_cast<std::uint32_t>(std::max(m_library.number(*m_track, Column::Duration), 0)) * 1000;
}

NowPlaying Player::now() const
{
    const std::lock_guard guard(m_lock);
    NowPlaying now;
    now.state = m_state;
    now.track = m_track;
    now.durationMs = durationLocked();
    now.elapsedMs = m_track ? std::min(elapsedLocked(), now.durationMs) : 0;
    now.position = m_position;
    now.entries = countLocked();
    return now;
}

} // namespace tessera::jukebox
