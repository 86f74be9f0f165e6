#include "Benches.h"

#include <algorithm>

namespace tessera::bench {

Best benchSave(const std::string& file, const std::string& copy, int runs)
{
    Loaded loaded(file);
    JobContext context = loaded.surroundings.context(systemFiles());
    const auto bytes = systemFiles().readAll(file);
    const std::string bareCopy = copy + ".bare";

    const auto work = [&] {
        systemFiles().remove(copy); // an old file would be read and kept first
        const Clock::time_point start = Clock::now();
        require(loaded.database.write(copy, context), "the save failed");
        return millisecondsSince(start);
    };
    const auto bare = [&] {
        systemFiles().remove(bareCopy);
        const Clock::time_point start = Clock::now();
        {
            const auto out = systemFiles().create(bareCopy);
            BufferedWriter writer(*out);
            for (std::size_t i = 0; i < bytes->size(); i += 4096)
                writer.putBlock(ByteView(*bytes).subspan(i, std::min<std::size_t>(4096, bytes->size() - i)));
            require(writer.flush() && out->flush(), "cannot write");
        }
        return millisecondsSince(start);
    };
    const Best best = bestOf(runs, work, bare);
    require(systemFiles().readAll(copy) == bytes, "the saved file is another");
    systemFiles().remove(copy);
    systemFiles().remove(bareCopy);
    return best;
}

Best benchUpdate(const std::string& file, int runs)
{
    constexpr std::int32_t kAlbums = 1000;
    Loaded loaded(file);
    const Albums& albums = loaded.database.library().albums;
    const auto bytes = systemFiles().readAll(file);
    // The places of the records: each ends where the next begins.
    std::vector<ByteView> records;
    for (std::int32_t id = 1; id <= kAlbums; ++id) {
        const std::uint32_t start = albums.at(id)->filePosition;
        records.push_back(ByteView(*bytes).subspan(start, albums.at(id + 1)->filePosition - start));
    }

    const auto work = [&] {
        const Clock::time_point start = Clock::now();
        for (std::int32_t id = 1; id <= kAlbums; ++id) {
            Album* const changed[] = {albums.at(id).get()};
            loaded.database.update(file, changed, systemFiles(), loaded.surroundings.prompt);
        }
        return millisecondsSince(start) * 1000 / kAlbums;
    };
    const auto bare = [&] {
        const Clock::time_point start = Clock::now();
        for (std::int32_t id = 1; id <= kAlbums; ++id) {
            const ByteView record = records[static_cast<std::size_t>(id - 1)];
            const auto position = static_cast<std::uint32_t>(record.data() - bytes->data());
            const auto out = systemFiles().openForUpdate(file);
            std::vector<std::uint8_t> old(record.size());
            require(out->readAt(position, old) && std::ranges::equal(old, record), "the record is another");
            require(out->seek(position) && out->write(record), "cannot write");
        }
        return millisecondsSince(start) * 1000 / kAlbums;
    };
    const Best best = bestOf(runs, work, bare);
    require(systemFiles().readAll(file) == bytes, "an update of nothing changed the file");
    return best;
}

} // namespace tessera::bench
