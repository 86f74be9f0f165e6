#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tessera {

// The host's objects as the plug-in uses them. Every call throws HostError when the host refuses
// it. Objects may be used from any thread that has initialised COM; file objects are let go on
// the user-interface thread.

// Numbers are the host's dispatch ids.
enum class FileText {
    Filename = 1,
    Artist = 2,
    Album = 3,
    Name = 4,
    Genre = 7,
    Comment = 9,
    Custom1 = 13,
    Custom2 = 14,
    Custom3 = 15,
    Type = 19,
    Lyrics = 20,
    Notes = 21,
    // methods without arguments
    FileSize = 25,
    FileDate = 26,
    DurationText = 27,
    LastPlayed = 28,
};

enum class FileNumber {
    Duration = 6,
    Year = 8,
    Bitrate = 10,
    Track = 11,
    PlayCount = 16,
    Rating = 18,
};

// ImageFile: a file beside or for the track. Embedded: the picture inside the track, written to
// a temporary file that the caller deletes.
enum class ImageKind { ImageFile = 1, Embedded = 2 };

class HostFile {
public:
    virtual ~HostFile() = default;
    virtual std::string text(FileText field) = 0;
    virtual std::u16string wideText(FileText field) = 0;
    virtual std::int32_t number(FileNumber field) = 0;
    virtual std::string image(ImageKind kind) = 0; // empty, too, for a name outside the code page
};
using HostFilePtr = std::shared_ptr<HostFile>;

class HostFiles {
public:
    virtual ~HostFiles() = default;
    virtual std::int32_t count() = 0;
    virtual HostFilePtr file(std::int32_t index) = 0; // from 0; null when the host gives none
};

class HostPlaylist {
public:
    virtual ~HostPlaylist() = default;
    virtual std::int32_t position() = 0;
    virtual void setPosition(std::int32_t index) = 0;
    virtual std::int32_t count() = 0;
    virtual HostFilePtr file(std::int32_t index) = 0;
    virtual void clear() = 0;
    virtual bool add(const std::string& fileName, std::int32_t argument) = 0;
};

class HostPlayback {
public:
    virtual ~HostPlayback() = default;
    virtual std::int32_t state() = 0; // 0 stopped, 1 playing
    virtual void playNow() = 0;       // method 8
    virtual void start() = 0;         // method 15
};

class Host {
public:
    virtual ~Host() = default;
    virtual std::unique_ptr<HostPlayback> playback() = 0;                       // null: none
    virtual std::unique_ptr<HostFiles> search(const std::string& criteria) = 0; // throws when none
    virtual std::unique_ptr<HostPlaylist> playlist() = 0;                       // null: none
    virtual HostFilePtr file(const std::string& fileName) = 0;                  // null: unknown
    virtual void drawSkin(std::int32_t on) = 0;
    virtual std::int32_t skin(std::int32_t window, std::int32_t mode) = 0;
    virtual std::int32_t colour(std::string_view section, std::string_view key) = 0; // -1: none
};

} // namespace tessera
