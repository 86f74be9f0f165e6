#include "Benches.h"

#include <algorithm>
#include <limits>
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

// One property read, as the build made it.
struct Call {
    std::uint32_t track;
    bool isNumber;
    bool isWide;
    std::uint16_t field;
};
using Calls = std::vector<Call>;

// One object a track, without an allocation of its own; writes down what it is asked for while
// there is a list for it.
class IndexedFile : public HostFile {
public:
    IndexedFile(const TrackTexts& texts, std::uint32_t track, Calls*& calls)
        : m_texts(&texts), m_calls(&calls), m_track(track)
    {
    }

    std::string text(FileText field) override
    {
        note({m_track, false, false, static_cast<std::uint16_t>(field)});
        return toCodePage(value(field));
    }
    std::u16string wideText(FileText field) override
    {
        note({m_track, false, true, static_cast<std::uint16_t>(field)});
        return value(field);
    }
    std::int32_t number(FileNumber field) override
    {
        note({m_track, true, false, static_cast<std::uint16_t>(field)});
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

private:
    void note(Call call)
    {
        if (*m_calls != nullptr)
            (*m_calls)->push_back(call);
    }

    const std::u16string& value(FileText field) const
    {
        switch (field) {
        case FileText::Artist:
            return m_texts->artist;
        case FileText::Album:
            return m_texts->album;
        case FileText::Genre:
            return m_texts->genre;
        case FileText::Type:
            return m_texts->type;
        default:
            require(field == FileText::Filename, "the build reads an unknown property");
            return m_texts->fileName;
        }
    }

    const TrackTexts* m_texts;
    Calls** m_calls;
    std::uint32_t m_track;
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

// The same calls in the same order, and nothing else.
double timeOfHost(std::vector<IndexedFile>& files, const Calls& calls)
{
    std::size_t length = 0;
    settleHeap();
    const WorkClock::time_point start = WorkClock::now();
    for (const Call& call : calls) {
        HostFile& file = files[call.track];
        if (call.isNumber)
            length += static_cast<std::size_t>(file.number(static_cast<FileNumber>(call.field)));
        else if (call.isWide)
            length += file.wideText(static_cast<FileText>(call.field)).size();
        else
            length += file.text(static_cast<FileText>(call.field)).size();
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
    settleHeap();
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
    Calls calls;
    Calls* noted = &calls;
    const auto files = std::make_shared<std::vector<IndexedFile>>();
    for (const TrackTexts& track : texts)
        files->emplace_back(track, static_cast<std::uint32_t>(files->size()), noted);
    SearchHost host(files);
    Surroundings surroundings;
    NullFiles nowhere;
    JobContext context = surroundings.context(nowhere);
    DatabaseSettings settings;
    settings.lastUsed = "C:\\bench.ts2";
    BuildResult result;

    const auto work = [&] {
        Database database;
        settleHeap();
        const WorkClock::time_point start = WorkClock::now();
        require(database.build(
                    host, settings, [](Library&, JobContext&) { return 0; }, context),
                "the build failed");
        const double total = millisecondsSince(start);
        require(database.library().tracks.size() == texts.size(), "the build lost tracks");
        return total;
    };
    work();
    noted = nullptr;
    result.readsPerTrack = static_cast<double>(calls.size()) / static_cast<double>(texts.size());
    double hostTime = std::numeric_limits<double>::max();
    for (int run = 0; run < 3 * runs; ++run)
        hostTime = std::min(hostTime, timeOfHost(*files, calls));
    result.time = bestOf(runs, work, [&] { return bareWork(texts); });
    result.time.work -= hostTime;
    return result;
}

} // namespace tessera::bench
