#include "StubHost.h"

#include "base/Text.h"
#include "system/Com.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

namespace tessera::bench {

void StubTracks::fill(const GeneratedLibrary& library)
{
    std::vector<std::int32_t> order(static_cast<std::size_t>(library.shape().tracks));
    std::iota(order.begin(), order.end(), 0);
    std::ranges::shuffle(order, std::mt19937(20021003));
    for (const std::int32_t track : order) {
        const std::int32_t album = library.albumOf(track);
        const std::int32_t performer = album % 10 == 9 ? track : album; // every tenth is a compilation
        texts.push_back({toWide(library.fileName(track)), toWide(library.artist(performer)),
                         toWide(library.title(album)), album % 3 == 0 ? u"Jazz" : u"Electronic"});
        numbers.push_back(track - library.firstTrack(album) + 1);
    }
}

namespace {

using Tracks = std::shared_ptr<const StubTracks>;
using Texts = StubTracks::Texts;

constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kCall = DISPATCH_METHOD;

class StubFile final : public DispatchServer<StubFile> {
public:
    explicit StubFile(Tracks tracks) : m_tracks(std::move(tracks)) {}

    static std::span<const DispatchEntry<StubFile>> members()
    {
        static const std::array<DispatchEntry<StubFile>, 10> kMembers{{
            {2, kGet, L"Artist", &StubFile::text<&Texts::artist>},
            {3, kGet, L"Album", &StubFile::text<&Texts::album>},
            {1, kGet, L"Filename", &StubFile::text<&Texts::fileName>},
            {7, kGet, L"Genre", &StubFile::text<&Texts::genre>},
            {19, kGet, L"Type", &StubFile::type},
            {11, kGet, L"Track", &StubFile::number},
            {6, kGet, L"Duration", &StubFile::value<217>},
            {8, kGet, L"Year", &StubFile::value<1998>},
            {10, kGet, L"Bitrate", &StubFile::value<192>},
            {23, kCall, L"Image", &StubFile::image},
        }};
        return kMembers;
    }

private:
    // The track whose turn it is for this property.
    std::size_t next(const DispatchCall& call)
    {
        std::size_t& reads = m_reads[static_cast<std::size_t>(call.id()) % m_reads.size()];
        return reads++ % m_tracks->texts.size();
    }

    template <std::u16string Texts::*Text>
    Variant text(const DispatchCall& call)
    {
        return std::u16string_view(m_tracks->texts[next(call)].*Text);
    }
    template <std::int32_t Value>
    Variant value(const DispatchCall&)
    {
        return Value;
    }
    Variant type(const DispatchCall&) { return u"MP3"; }
    Variant number(const DispatchCall& call) { return m_tracks->numbers[next(call)]; }
    Variant image(const DispatchCall&) { return u""; }

    Tracks m_tracks;
    std::array<std::size_t, 32> m_reads{}; // by the property's id; one reader at a time
};

class StubFiles final : public DispatchServer<StubFiles> {
public:
    explicit StubFiles(Tracks tracks) : m_tracks(tracks), m_file(makeObject<StubFile>(std::move(tracks))) {}

    static std::span<const DispatchEntry<StubFiles>> members()
    {
        static const std::array<DispatchEntry<StubFiles>, 2> kMembers{{
            {1, kCall, L"Count", &StubFiles::count},
            {2, kCall, L"File", &StubFiles::file},
        }};
        return kMembers;
    }

private:
    Variant count(const DispatchCall&) { return static_cast<std::int32_t>(m_tracks->texts.size()); }
    Variant file(const DispatchCall&) { return m_file; }

    Tracks m_tracks;
    ComPtr<StubFile> m_file;
};

class StubHost final : public DispatchServer<StubHost> {
public:
    explicit StubHost(Tracks tracks) : m_tracks(tracks), m_file(makeObject<StubFile>(std::move(tracks))) {}

    static std::span<const DispatchEntry<StubHost>> members()
    {
        static const std::array<DispatchEntry<StubHost>, 7> kMembers{{
            {8, kCall, L"File", &StubHost::file},
            {2, kCall, L"Search", &StubHost::search},
            {1, kCall, L"Playback", &StubHost::nothing},
            {3, kCall, L"Playlist", &StubHost::nothing},
            {9, kCall, L"DrawSkin", &StubHost::nothing},
            {10, kCall, L"Skin", &StubHost::nothing},
            {12, kCall, L"Colour", &StubHost::nothing},
        }};
        return kMembers;
    }

private:
    Variant file(const DispatchCall&) { return m_file; }
    Variant search(const DispatchCall&) { return makeObject<StubFiles>(m_tracks); }
    Variant nothing(const DispatchCall&) { return {}; }

    Tracks m_tracks;
    ComPtr<StubFile> m_file;
};

} // namespace

ComPtr<IDispatch> makeStubHost(std::shared_ptr<const StubTracks> tracks)
{
    return ComPtr<IDispatch>(makeObject<StubHost>(std::move(tracks)).get());
}

} // namespace tessera::bench
