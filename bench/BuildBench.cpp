#include "Benches.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <tuple>

namespace tessera::bench {

namespace {

// What the host knows of one track, ready to be handed out.
struct TrackTexts {
    std::u16string fileName;
    std::u16string artist;
    std::u16string album;
    std::u16string genre;
    std::u16string type;
    std::int32_t number = 0;
    std::int32_t year = 0;
    std::int32_t bitrate = 0;
};

enum Read {
    kFileName,
    kArtist,
    kAlbum,
    kGenre,
    kType,
    kWideFileName,
    kWideArtist,
    kWideAlbum,
    kWideGenre,
    kWideType,
    kNumber,
    kReadKinds
};
using Counts = std::array<std::uint64_t, kReadKinds>;

// One object a track, without an allocation of its own; counts what it is asked for.
class IndexedFile : public HostFile {
public:
    IndexedFile(const TrackTexts& texts, Counts& counts) : m_texts(&texts), m_counts(&counts) {}

    std::string text(FileText field) override
    {
        const Read read = kindOf(field);
        ++(*m_counts)[read];
        return toCodePage(value(read));
    }
    std::u16string wideText(FileText field) override
    {
        const Read read = kindOf(field);
        ++(*m_counts)[read + kWideFileName];
        return value(read);
    }
    std::int32_t number(FileNumber field) override
    {
        ++(*m_counts)[kNumber];
        switch (field) {
        case FileNumber::Duration:
            return 217;
        case FileNumber::Year:
            return m_texts->year;
        case FileNumber::Bitrate:
            return m_texts->bitrate;
        case FileNumber::Track:
            return m_texts->number;
        default:
            return 0;
        }
    }
    std::string image(ImageKind) override { return {}; }

    const std::u16string& value(Read read) const
    {
        const std::u16string* const values[] = {&m_texts->fileName, &m_texts->artist, &m_texts->album,
                                                &m_texts->genre, &m_texts->type};
        return *values[read];
    }

private:
    static Read kindOf(FileText field)
    {
        switch (field) {
        case FileText::Artist:
            return kArtist;
        case FileText::Album:
            return kAlbum;
        case FileText::Genre:
            return kGenre;
        case FileText::Type:
            return kType;
        default:
            require(field == FileText::Filename, "the build reads an unknown property");
            return kFileName;
        }
    }

    const TrackTexts* m_texts;
    Counts* m_counts;
};

using FileList = std::shared_ptr<std::vector<IndexedFile>>;

class ListedFiles : public HostFiles {
public:
    explicit ListedFiles(FileList files) : m_files(std::move(files)) {}
    std::int32_t count() override { return static_cast<std::int32_t>(m_files->size()); }
    HostFilePtr file(std::int32_t index) override
    {
        return {m_files, &(*m_files)[static_cast<std::size_t>(index)]};
    }

private:
    FileList m_files;
};

class SearchHost : public OneFileHost {
public:
    explicit SearchHost(FileList files) : m_files(std::move(files)) {}
    std::unique_ptr<HostFiles> search(const std::string&) override
    {
        return std::make_unique<ListedFiles>(m_files);
    }

private:
    FileList m_files;
};

// In an order that has nothing to do with that of the albums.
std::vector<TrackTexts> makeTexts(const GeneratedLibrary& library)
{
    std::vector<std::int32_t> order(static_cast<std::size_t>(library.shape().tracks));
    std::iota(order.begin(), order.end(), 0);
    std::ranges::shuffle(order, std::mt19937(20021003));
    std::vector<TrackTexts> texts;
    texts.reserve(order.size());
    for (const std::int32_t track : order) {
        const std::int32_t album = library.albumOf(track);
        const std::int32_t number = track - library.firstTrack(album) + 1;
        const bool compilation = album % 10 == 9;
        texts.push_back({toWide(library.fileName(track)), toWide(library.artist(compilation ? track : album)),
                         toWide(library.title(album)), toWide(album % 3 == 0 ? "Jazz" : "Electronic"), u"MP3",
                         number, 1960 + album % 60, 128 + 64 * (number % 3)});
    }
    return texts;
}

double timeOfHost(std::vector<IndexedFile>& files, const Counts& counts)
{
    // As many calls of each kind as the build made, over the same files.
    static constexpr FileText kFields[] = {FileText::Filename, FileText::Artist, FileText::Album,
                                           FileText::Genre, FileText::Type};
    std::size_t length = 0;
    const WorkClock::time_point start = WorkClock::now();
    for (int kind = 0; kind < kReadKinds; ++kind) {
        for (std::uint64_t i = 0; i < counts[static_cast<std::size_t>(kind)]; ++i) {
            HostFile& file = files[i % files.size()];
            if (kind == kNumber)
                length += static_cast<std::size_t>(file.number(FileNumber::Year));
            else if (kind < kWideFileName)
                length += file.text(kFields[kind]).size();
            else
                length += file.wideText(kFields[kind - kWideFileName]).size();
        }
    }
    const double time = millisecondsSince(start);
    require(length > 0, "the host answers nothing");
    return time;
}

struct Key {
    std::u16string album;
    std::u16string type;
    std::int32_t number;
    std::uint32_t index;
};

// Converting the texts that the records keep, and sorting the keys, folded once.
double bareWork(const std::vector<TrackTexts>& texts)
{
    std::size_t length = 0;
    const WorkClock::time_point start = WorkClock::now();
    std::vector<Key> keys;
    keys.reserve(texts.size());
    for (const TrackTexts& track : texts) {
        for (const std::u16string* text :
             {&track.fileName, &track.artist, &track.album, &track.genre, &track.type})
            length += toCodePage(*text).size();
        keys.push_back({foldWide(track.album), foldWide(track.type), track.number,
                        static_cast<std::uint32_t>(keys.size())});
    }
    std::ranges::stable_sort(keys, [](const Key& left, const Key& right) {
        return std::tie(left.album, left.type, left.number) < std::tie(right.album, right.type, right.number);
    });
    const double time = millisecondsSince(start);
    require(length > 0 && keys.front().album <= keys.back().album, "the bare work is wrong");
    return time;
}

} // namespace

// The file goes nowhere: saving has rows of its own.
BuildResult benchBuild(const GeneratedLibrary& library, int runs)
{
    const std::vector<TrackTexts> texts = makeTexts(library);
    Counts counts{};
    const auto files = std::make_shared<std::vector<IndexedFile>>();
    for (const TrackTexts& track : texts)
        files->emplace_back(track, counts);
    SearchHost host(files);
    Surroundings surroundings;
    NullFiles nowhere;
    JobContext context = surroundings.context(nowhere);
    DatabaseSettings settings;
    settings.lastUsed = "C:\\bench.ts2";
    BuildResult result;

    const auto work = [&] {
        counts.fill(0);
        Database database;
        const WorkClock::time_point start = WorkClock::now();
        require(database.build(
                    host, settings, [](Library&, JobContext&) { return 0; }, context),
                "the build failed");
        const double total = millisecondsSince(start);
        require(database.library().tracks.size() == texts.size(), "the build lost tracks");
        const Counts made = counts;
        const std::uint64_t reads = std::accumulate(made.begin(), made.end(), std::uint64_t{0});
        result.readsPerTrack = static_cast<double>(reads) / static_cast<double>(texts.size());
        return total - timeOfHost(*files, made);
    };
    result.time = bestOf(runs, work, [&] { return bareWork(texts); });
    return result;
}

} // namespace tessera::bench
