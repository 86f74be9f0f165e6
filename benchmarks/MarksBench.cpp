#include "Benches.h"

#include "library/Marks.h"

#include <algorithm>

namespace tessera::bench {

namespace {

struct Record {
    std::uint32_t position;
    ByteView bytes;
};

// Read, compare, seek and write of the records, one flush for all.
void rewriteBare(const std::string& file, const std::vector<Record>& records)
{
    const auto out = systemFiles().openForUpdate(file);
    require(out != nullptr, "cannot open");
    std::vector<std::uint8_t> old;
    for (const Record& record : records) {
        old.resize(record.bytes.size());
        require(out->readAt(record.position, old) && std::ranges::equal(old, record.bytes),
                "the record is another");
        require(out->seek(record.position) && out->write(record.bytes), "cannot write");
    }
    require(out->flush(), "cannot flush");
}

} // namespace

Best benchMarks(const std::string& file, int runs)
{
    constexpr std::int32_t kAlbums = 1000;
    constexpr std::int32_t kStep = 7; // spread over the file
    Loaded loaded(file);
    const Albums& albums = loaded.database.library().albums;
    const auto bytes = systemFiles().readAll(file);
    std::vector<Record> records;
    std::vector<Album*> marked;
    for (std::int32_t i = 0; i < kAlbums; ++i) {
        Album& album = *albums.at(i * kStep + 1);
        const std::uint32_t end =
            albums.at(album.id + 1)->filePosition; // a record ends where the next begins
        records.push_back(
            {album.filePosition, ByteView(*bytes).subspan(album.filePosition, end - album.filePosition)});
        marked.push_back(&album);
    }

    const auto mark = [&](bool favourite) {
        for (Album* album : marked) {
            Marks marks = marksOf(*album);
            marks.favourite = favourite;
            setMarks(*album, marks);
        }
        return loaded.database.update(file, marked, systemFiles(), loaded.surroundings.prompt);
    };
    const auto work = [&] {
        const Clock::time_point start = Clock::now();
        require(mark(true), "the update failed");
        const double time = millisecondsSince(start);
        require(mark(false), "the update failed");
        return time;
    };
    const auto bare = [&] {
        const Clock::time_point start = Clock::now();
        rewriteBare(file, records);
        return millisecondsSince(start);
    };
    const Best best = bestOf(runs, work, bare);
    require(systemFiles().readAll(file) == bytes, "marks that were taken back changed the file");
    return best;
}

} // namespace tessera::bench
