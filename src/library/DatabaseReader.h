#pragma once

#include "base/Bytes.h"
#include "library/Database.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessera {

// Why a database was refused: an assertion, or a message when there is none.
struct ReadFailure {
    const char* assertion = nullptr;
    unsigned long line = 0;
    Severity severity = Severity::Stop;
    std::string message;
};

// Fields as they stand in the file; texts point into its bytes.
struct TrackFields {
    std::uint32_t position = 0;
    std::int32_t id = 0;
    std::string_view fileName;
};

struct AlbumFields {
    std::uint32_t position = 0;
    std::uint32_t flags = 0;
    std::int32_t id = 0;
    std::string_view hostTitle;
    std::string_view displayTitle;
    std::string_view type;
    std::int32_t artistId = 0;
    std::string_view genre;
    std::int32_t duration = 0;
    std::int32_t minBitrate = 0;
    std::int32_t maxBitrate = 0;
    std::int32_t year = 0;
    std::int32_t rank = 0;
    std::int32_t newDate = 0;
    std::string_view path;
    std::string_view thumbnailFile;
};

struct ArtistFields {
    std::uint32_t position = 0;
    std::uint32_t flags = 0;
    std::int32_t id = 0;
    std::string_view hostName;
    std::string_view displayName;
    bool complete = false;
};

// Receives the records in file order. Records of a kind are named by their index, from 0.
class RecordSink {
public:
    virtual ~RecordSink() = default;
    virtual void databaseFlags(std::uint32_t) {}
    virtual void track(const TrackFields&) {}
    virtual void trackAlbum(std::int32_t) {} // of the track received last
    virtual void album(const AlbumFields&, std::span<const std::uint32_t>) {}
    virtual void artist(const ArtistFields&, std::span<const std::uint32_t>) {}
    virtual void image(std::uint32_t, ByteView) {}
};

// Takes fields off the bytes of a file, never beyond their end: a short read throws ReadFailure.
class FieldReader {
public:
    explicit FieldReader(ByteView bytes) : m_dwFileRemaining(bytes) {}

    std::uint32_t word();
    std::int32_t number() { return static_cast<std::int32_t>(word()); }
    std::string_view text();
    std::uint32_t idCount(); // of a list; so many ids are there
    ByteView block(std::uint32_t length);

    std::uint32_t position() const { return m_dwFileRemaining.position(); }
    std::uint32_t remaining() const { return m_dwFileRemaining.remaining(); }
    // True once a length or count was below 0: it took nothing, but would not be written so.
    bool sawNegative() const { return m_sawNegative; }

private:
    std::uint32_t length();

    ByteReader m_dwFileRemaining;
    bool m_sawNegative = false;
};

// Walks a whole database. It accepts what the writer can have written, so that what is accepted is
// written again byte for byte (image bytes come from their files); all else throws ReadFailure.
class DatabaseReader {
public:
    // Texts that hold control characters are refused, unless they only are compared: earlier builds wrote
    // some, and the marks of such a database are as good as any.
    enum class Texts { Clean, Any };
    DatabaseReader(ByteView bytes, const std::string& fileName, JobContext& context, RecordSink& sink,
                   Texts texts = Texts::Clean);

    void read();

private:
    // Ids of one kind, ascending; finds the index of an id, at once when ids are asked for in order.
    class Ids {
    public:
        void reserve(std::size_t count) { m_ids.reserve(count); }
        bool append(std::int32_t id); // false: below 1, repeated or out of order
        std::int64_t find(std::int32_t id);
        std::size_t size() const { return m_ids.size(); }
        std::int32_t operator[](std::size_t index) const { return m_ids[index]; }

    private:
        std::vector<std::int32_t> m_ids;
        std::size_t m_next = 0;
    };

    struct AlbumLinks {
        std::int32_t artistId;
        bool listed;
    };

    void readHeader();
    void readTracks();
    void readTrack();
    void readAlbums();
    void readAlbum();
    std::string_view readName();
    std::string_view readPath();
    void linkTracks(std::int32_t albumId);
    void readArtists();
    void readArtist();
    void linkAlbums(std::int32_t artistId);
    void readImages();
    void readImage(std::size_t index);
    bool linksAgree() const;

    template <class Step>
    void forEachRecord(std::uint32_t count, Step step);
    template <class Step>
    void forEachId(Step step);
    void expect(bool regular) { m_regular = m_regular && regular; } // told at the end
    static void require(bool regular);                              // told at once
    std::size_t reservation(std::uint32_t count, std::uint32_t shortest) const;

    FieldReader m_fields;
    const std::string& m_fileName;
    JobContext& m_context;
    RecordSink& m_sink;
    Texts m_texts;
    bool m_regular = true;

    std::uint32_t m_flags = 0;
    std::uint32_t m_trackCount = 0;
    std::uint32_t m_albumCount = 0;
    std::uint32_t m_artistCount = 0;
    std::uint32_t m_imageCount = 0;

    Ids m_tracks;
    Ids m_albums;
    std::int32_t m_lastArtist = 0;
    std::vector<std::int32_t> m_trackAlbums; // as the track says; kListed once its album lists it
    std::vector<AlbumLinks> m_albumLinks;
    std::vector<std::uint32_t> m_imageAlbums; // indices of the albums with an image
    std::vector<std::uint32_t> m_indices;     // the id list read last, as indices
};

// The same without log and boxes: why the bytes were refused, none when they were read. Cancelled
// passes through.
std::optional<ReadFailure> readQuietly(ByteView bytes, const std::string& fileName,
                                       const std::atomic<bool>& terminating, RecordSink& sink);

} // namespace tessera
