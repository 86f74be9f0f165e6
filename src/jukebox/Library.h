#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessera::jukebox {

// Columns of a library file, in the order of their names in the file's header table.
enum class Column {
    Filename,
    Artist,
    Album,
    Name,
    Duration,
    Genre,
    Year,
    Bitrate,
    Track,
    Type,
    Comment,
    Lyrics,
    Notes,
    Custom1,
    Custom2,
    Custom3,
    PlayCount,
    Rating,
    FileSize,
    FileDate,
    DurationText,
    LastPlayed,
    ImageFile,
    EmbeddedImage,
};
inline constexpr std::size_t kColumnCount = 24;

// Position of a track in its library, from 0.
using TrackIndex = std::uint32_t;

// The music library that a library file describes. It does not change once it is read, so any
// thread may use it.
class Library {
public:
    // Takes the text of a library file: UTF-8, a header line with column names, then a line per
    // track, tab-separated, with the escapes \t \n \r \\. Lines that are wrong are left out, each
    // with a sentence in `complaints` that names its line. None when the header is unusable.
    static std::optional<Library> parse(std::string text, std::vector<std::string>& complaints);

    Library(Library&&) = default;
    Library& operator=(Library&&) = default;
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    TrackIndex size() const { return static_cast<TrackIndex>(m_tracks.size()); }

    std::wstring text(TrackIndex track, Column column) const;
    // 0 when the column is empty.
    std::int32_t number(TrackIndex track, Column column) const;
    bool isEmpty(TrackIndex track, Column column) const { return value(track, column).empty(); }

    // By full path name, ignoring case.
    std::optional<TrackIndex> find(std::wstring_view fileName) const;
    // Tracks in whose artist, album, name, genre or file name every word of the criteria occurs,
    // ignoring case; all tracks when there are no words.
    std::vector<TrackIndex> search(std::wstring_view criteria) const;
    // Number of different albums, telling equal titles apart by their folders.
    std::size_t albumCount() const;

private:
    using Values = std::array<std::string_view, kColumnCount>; // UTF-8, into m_text

    Library() = default;
    std::string_view value(TrackIndex track, Column column) const
    {
        return m_tracks[track][static_cast<std::size_t>(column)];
    }
    std::wstring searchText(TrackIndex track) const;
    // What is wrong with the line; empty when the track was taken over.
    std::string addTrack(const Values& values);

    // Held by pointer: the views must outlive a move, which may copy a short text.
    std::unique_ptr<std::string> m_text;
    std::vector<Values> m_tracks;
    std::unordered_map<std::wstring, TrackIndex> m_byName; // folded

    friend class LibraryParser;
};

} // namespace tessera::jukebox
