#pragma once

#include "jukebox/Library.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace tessera::jukebox {

enum class PlayState { Stopped = 0, Playing = 1, Paused = 2 };

// What the player does at one moment.
struct NowPlaying {
    PlayState state = PlayState::Stopped;
    std::optional<TrackIndex> track; // none while stopped
    std::uint32_t elapsedMs = 0;
    std::uint32_t durationMs = 0;
    std::int32_t position = -1; // in the playlist; -1: none
    std::int32_t entries = 0;
};

// The current playlist and the playback of its entries by a clock of its own; no sound. Every
// call may come from any thread.
class Player {
public:
    using Clock = std::uint32_t (*)(); // milliseconds, may wrap
    Player(const Library& library, Clock clock) : m_library(library), m_clock(clock) {}

    // Called after each change, outside the lock, on the thread that changed something. Set it
    // before other threads know the player.
    void onChange(std::function<void()> listener) { m_listener = std::move(listener); }

    std::int32_t count() const;
    std::optional<TrackIndex> entry(std::int32_t index) const; // none when there is no such entry
    void clear();                                              // the track that plays goes on
    void add(std::span<const TrackIndex> tracks);
    std::int32_t position() const;
    // The entry that play starts with, and that follows the track that plays; -1 or an entry's index,
    // other numbers count as -1.
    void setPosition(std::int32_t index);

    PlayState state() const;
    void play();      // from the position, or on from a pause
    void playEntry(); // the entry at the position from its beginning, whatever plays now
    void playEntry(std::int32_t index);
    void pause(); // or on, when paused
    void stop();
    void next();
    void previous();
    void seek(std::uint32_t elapsedMs); // within the track that plays or pauses
    // Goes on to the next entry when the track has come to its end; call it now and then.
    void advance();

    NowPlaying now() const;

private:
    std::int32_t countLocked() const { return static_cast<std::int32_t>(m_entries.size()); }
    std::int32_t followingLocked() const;
    std::uint32_t elapsedLocked() const;
    std::uint32_t durationLocked() const;
    void startLocked(std::int32_t index);
    void stopLocked();
    template <class Change>
    void change(Change what);
    void notify() const;

    const Library& m_library;
    Clock m_clock;
    std::function<void()> m_listener;

    mutable std::mutex m_lock; // guards all that follows
    std::vector<TrackIndex> m_entries;
    std::int32_t m_position = -1;
    bool m_positionIsNext = false; // moved since the track started: it is what follows
    PlayState m_state = PlayState::Stopped;
    std::optional<TrackIndex> m_track;
    std::uint32_t m_startedAt = 0;    // tick of the last start or resumption
    std::uint32_t m_playedBefore = 0; // milliseconds until then
};

} // namespace tessera::jukebox
