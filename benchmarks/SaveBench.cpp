#include "Benches.h"

#include <algorithm>
#include <functional>

namespace tessera::bench {

namespace {

double bestTime(int runs, const std::function<double()>& work)
{
    double best = work();
    for (int run = 1; run < runs; ++run)
        best = std::min(best, work());
    return best;
}

} // namespace

SaveResult benchSave(const std::string& file, const std::string& copy)
{
    Loaded loaded(file);
    JobContext context = loaded.surroundings.context(systemFiles());
    const auto bytes = systemFiles().readAll(file);
    const std::string bareCopy = copy + ".bare";

    const auto save = [&](JobContext& to) {
        const Clock::time_point start = Clock::now();
        require(loaded.database.write(copy, to), "the save failed");
        return millisecondsSince(start);
    };
    const auto work = [&] {
        systemFiles().remove(copy); // an old file would be read and kept first
        return save(context);
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
    constexpr int kRounds = 15; // short ones: how fast a medium takes data changes from second to second
    SaveResult result;
    result.time = bestOf(4, work, bare, kRounds);
    require(systemFiles().readAll(copy) == bytes, "the saved file is another");
    result.replaced = bestTime(10, [&] { return save(context); });
    NullFiles nowhere;
    JobContext toNowhere = loaded.surroundings.context(nowhere);
    result.writer = bestTime(20, [&] { return save(toNowhere); });
    for (const std::string& made : {copy, copy + ".bak", bareCopy})
        systemFiles().remove(made);
    return result;
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
