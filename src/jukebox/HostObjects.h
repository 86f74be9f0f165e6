#pragma once

#include "jukebox/Player.h"
#include "system/Com.h"

#include <atomic>
#include <memory>
#include <vector>

// The automation objects that a plug-in is given. All of them may be called from any thread.
namespace tessera::jukebox {

// What the automation objects serve; outlives them.
struct HostState {
    const Library& library;
    Player& player;
    bool skinned = false;
    std::atomic<bool> drawsSkin = true; // the plug-in switches it off while it builds its windows
};

// A track of the library.
class FileObject : public DispatchServer<FileObject> {
public:
    FileObject(const Library& library, TrackIndex track) : m_library(library), m_track(track) {}
    static std::span<const DispatchEntry<FileObject>> members();

private:
    template <Column column>
    Variant text(const DispatchCall& call);
    template <Column column>
    Variant number(const DispatchCall& call);
    Variant image(const DispatchCall& call);
    Variant fileSize(const DispatchCall& call);
    Variant fileDate(const DispatchCall& call);
    Variant duration(const DispatchCall& call);
    std::wstring path() const { return m_library.text(m_track, Column::Filename); }

    const Library& m_library;
    TrackIndex m_track;
};

// The result of a search.
class FilesObject : public DispatchServer<FilesObject> {
public:
    FilesObject(const Library& library, std::vector<TrackIndex> tracks)
        : m_library(library), m_tracks(std::move(tracks))
    {
    }
    static std::span<const DispatchEntry<FilesObject>> members();

private:
    Variant count(const DispatchCall& call);
    Variant file(const DispatchCall& call);

    const Library& m_library;
    const std::vector<TrackIndex> m_tracks;
};

class PlaylistObject : public DispatchServer<PlaylistObject> {
public:
    explicit PlaylistObject(HostState& state) : m_state(state) {}
    static std::span<const DispatchEntry<PlaylistObject>> members();

private:
    Variant position(const DispatchCall& call);
    Variant setPosition(const DispatchCall& call);
    Variant count(const DispatchCall& call);
    Variant file(const DispatchCall& call);
    Variant clear(const DispatchCall& call);
    Variant add(const DispatchCall& call);

    HostState& m_state;
};

class PlaybackObject : public DispatchServer<PlaybackObject> {
public:
    explicit PlaybackObject(HostState& state) : m_state(state) {}
    static std::span<const DispatchEntry<PlaybackObject>> members();

private:
    Variant state(const DispatchCall& call);
    Variant playNow(const DispatchCall& call);
    Variant play(const DispatchCall& call);

    HostState& m_state;
};

// What a plug-in's Init is called with.
class HostObject : public DispatchServer<HostObject> {
public:
    explicit HostObject(HostState& state) : m_state(state) {}
    static std::span<const DispatchEntry<HostObject>> members();

private:
    Variant playback(const DispatchCall& call);
    Variant search(const DispatchCall& call);
    Variant playlist(const DispatchCall& call);
    Variant file(const DispatchCall& call);
    Variant drawSkin(const DispatchCall& call);
    Variant skin(const DispatchCall& call);
    Variant colour(const DispatchCall& call);

    HostState& m_state;
};

} // namespace tessera::jukebox
