#include "jukebox/HostObjects.h"

#include "jukebox/Arguments.h"
#include "jukebox/Skin.h"
#include "jukebox/TrackFile.h"

#include <array>

namespace tessera::jukebox {

namespace {

constexpr std::int32_t kImageFile = 1;
constexpr std::int32_t kEmbeddedImage = 2;

Variant noObject()
{
    return Variant(static_cast<IDispatch*>(nullptr));
}

Variant fileResult(const Library& library, std::optional<TrackIndex> track)
{
    return track ? Variant(makeObject<FileObject>(library, *track)) : noObject();
}

} // namespace

template <Column column>
Variant FileObject::text(const DispatchCall& call)
{
    expectNoArguments(call);
    return textResult(m_library.text(m_track, column));
}

template <Column column>
Variant FileObject::number(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(m_library.number(m_track, column));
}

std::span<const DispatchEntry<FileObject>> FileObject::members()
{
    using F = FileObject;
    constexpr WORD kGet = DISPATCH_PROPERTYGET;
    constexpr WORD kMethod = DISPATCH_METHOD;
    static constexpr std::array kMembers = {
        DispatchEntry<F>{1, kGet, L"Filename", &F::text<Column::Filename>},
        DispatchEntry<F>{2, kGet, L"Artist", &F::text<Column::Artist>},
        DispatchEntry<F>{3, kGet, L"Album", &F::text<Column::Album>},
        DispatchEntry<F>{4, kGet, L"Name", &F::text<Column::Name>},
        DispatchEntry<F>{6, kGet, L"Duration", &F::number<Column::Duration>},
        DispatchEntry<F>{7, kGet, L"Genre", &F::text<Column::Genre>},
        DispatchEntry<F>{8, kGet, L"Year", &F::number<Column::Year>},
        DispatchEntry<F>{9, kGet, L"Comment", &F::text<Column::Comment>},
        DispatchEntry<F>{10, kGet, L"Bitrate", &F::number<Column::Bitrate>},
        DispatchEntry<F>{11, kGet, L"Track", &F::number<Column::Track>},
        DispatchEntry<F>{13, kGet, L"Custom1", &F::text<Column::Custom1>},
        DispatchEntry<F>{14, kGet, L"Custom2", &F::text<Column::Custom2>},
        DispatchEntry<F>{15, kGet, L"Custom3", &F::text<Column::Custom3>},
        DispatchEntry<F>{16, kGet, L"PlayCount", &F::number<Column::PlayCount>},
        DispatchEntry<F>{18, kGet, L"Rating", &F::number<Column::Rating>},
        DispatchEntry<F>{19, kGet, L"Type", &F::text<Column::Type>},
        DispatchEntry<F>{20, kGet, L"Lyrics", &F::text<Column::Lyrics>},
        DispatchEntry<F>{21, kGet, L"Notes", &F::text<Column::Notes>},
        DispatchEntry<F>{23, kMethod, L"Image", &F::image},
        DispatchEntry<F>{25, kMethod, L"FileSizeText", &F::fileSize},
        DispatchEntry<F>{26, kMethod, L"FileDateText", &F::fileDate},
        DispatchEntry<F>{27, kMethod, L"DurationText", &F::duration},
        DispatchEntry<F>{28, kMethod, L"LastPlayedText", &F::text<Column::LastPlayed>},
    };
    return kMembers;
}

Variant FileObject::image(const DispatchCall& call)
{
    switch (Arguments(call, 1).number(0)) {
    case kImageFile:
        return textResult(m_library.text(m_track, Column::ImageFile));
    case kEmbeddedImage:
        return textResult(m_library.isEmpty(m_track, Column::EmbeddedImage)
                              ? std::wstring()
                              : copyToTemporaryFile(m_library.text(m_track, Column::EmbeddedImage)));
    default:
        return textResult(L"");
    }
}

Variant FileObject::fileSize(const DispatchCall& call)
{
    expectNoArguments(call);
    const std::wstring known = m_library.text(m_track, Column::FileSize);
    return textResult(known.empty() ? fileSizeText(path()) : known);
}

Variant FileObject::fileDate(const DispatchCall& call)
{
    expectNoArguments(call);
    const std::wstring known = m_library.text(m_track, Column::FileDate);
    return textResult(known.empty() ? fileDateText(path()) : known);
}

Variant FileObject::duration(const DispatchCall& call)
{
    expectNoArguments(call);
    const std::wstring known = m_library.text(m_track, Column::DurationText);
    return textResult(known.empty() ? durationText(m_library.number(m_track, Column::Duration)) : known);
}

std::span<const DispatchEntry<FilesObject>> FilesObject::members()
{
    static constexpr std::array kMembers = {
        DispatchEntry<FilesObject>{1, DISPATCH_METHOD, L"Count", &FilesObject::count},
        DispatchEntry<FilesObject>{2, DISPATCH_METHOD, L"File", &FilesObject::file},
    };
    return kMembers;
}

Variant FilesObject::count(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(static_cast<std::int32_t>(m_tracks.size()));
}

Variant FilesObject::file(const DispatchCall& call)
{
    const auto index = static_cast<std::uint32_t>(Arguments(call, 1).number(0));
    return index < m_tracks.size() ? fileResult(m_library, m_tracks[index]) : noObject();
}

std::span<const DispatchEntry<PlaylistObject>> PlaylistObject::members()
{
    using P = PlaylistObject;
    static constexpr std::array kMembers = {
        DispatchEntry<P>{1, DISPATCH_PROPERTYGET, L"Position", &P::position},
        DispatchEntry<P>{1, DISPATCH_PROPERTYPUT, L"Position", &P::setPosition},
        DispatchEntry<P>{4, DISPATCH_METHOD, L"Count", &P::count},
        DispatchEntry<P>{5, DISPATCH_METHOD, L"File", &P::file},
        DispatchEntry<P>{6, DISPATCH_METHOD, L"Clear", &P::clear},
        DispatchEntry<P>{8, DISPATCH_METHOD, L"Add", &P::add},
    };
    return kMembers;
}

Variant PlaylistObject::position(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(m_state.player.position());
}

Variant PlaylistObject::setPosition(const DispatchCall& call)
{
    m_state.player.setPosition(Arguments(call, 1).number(0));
    return {};
}

Variant PlaylistObject::count(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(m_state.player.count());
}

Variant PlaylistObject::file(const DispatchCall& call)
{
    return fileResult(m_state.library, m_state.player.entry(Arguments(call, 1).number(0)));
}

Variant PlaylistObject::clear(const DispatchCall& call)
{
    expectNoArguments(call);
    m_state.player.clear();
    return {};
}

Variant PlaylistObject::add(const DispatchCall& call)
{
    const Arguments arguments(call, 2);
    (void)arguments.number(1); // where to; this player always adds at the end
    const std::optional<TrackIndex> track = m_state.library.find(arguments.text(0));
    if (track) {
        m_state.player.add({&*track, 1});
    }
    return Variant(track.has_value());
}

std::span<const DispatchEntry<PlaybackObject>> PlaybackObject::members()
{
    using P = PlaybackObject;
    static constexpr std::array kMembers = {
        DispatchEntry<P>{1, DISPATCH_PROPERTYGET, L"State", &P::state},
        DispatchEntry<P>{8, DISPATCH_METHOD, L"PlayNow", &P::playNow},
        DispatchEntry<P>{15, DISPATCH_METHOD, L"Play", &P::play},
    };
    return kMembers;
}

Variant PlaybackObject::state(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(static_cast<std::int32_t>(m_state.player.state()));
}

Variant PlaybackObject::playNow(const DispatchCall& call)
{
    expectNoArguments(call);
    m_state.player.playEntry();
    return {};
}

Variant PlaybackObject::play(const DispatchCall& call)
{
    expectNoArguments(call);
    m_state.player.play();
    return {};
}

std::span<const DispatchEntry<HostObject>> HostObject::members()
{
    using H = HostObject;
    static constexpr std::array kMembers = {
        DispatchEntry<H>{1, DISPATCH_METHOD, L"Playback", &H::playback},
        DispatchEntry<H>{2, DISPATCH_METHOD, L"Search", &H::search},
        DispatchEntry<H>{3, DISPATCH_METHOD, L"Playlist", &H::playlist},
        DispatchEntry<H>{8, DISPATCH_METHOD, L"File", &H::file},
        DispatchEntry<H>{9, DISPATCH_METHOD, L"DrawSkin", &H::drawSkin},
        DispatchEntry<H>{10, DISPATCH_METHOD, L"Skin", &H::skin},
        DispatchEntry<H>{12, DISPATCH_METHOD, L"SkinColour", &H::colour},
    };
    return kMembers;
}

Variant HostObject::playback(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(makeObject<PlaybackObject>(m_state));
}

Variant HostObject::search(const DispatchCall& call)
{
    return Variant(
        makeObject<FilesObject>(m_state.library, m_state.library.search(Arguments(call, 1).text(0))));
}

Variant HostObject::playlist(const DispatchCall& call)
{
    expectNoArguments(call);
    return Variant(makeObject<PlaylistObject>(m_state));
}

Variant HostObject::file(const DispatchCall& call)
{
    return fileResult(m_state.library, m_state.library.find(Arguments(call, 1).text(0)));
}

Variant HostObject::drawSkin(const DispatchCall& call)
{
    m_state.drawsSkin = Arguments(call, 1).number(0) != 0;
    return {};
}

// Both the question whether there is a skin and the wish to have a window skinned; this player
// answers the wish and leaves the window as it is.
Variant HostObject::skin(const DispatchCall& call)
{
    const Arguments arguments(call, 2);
    (void)arguments.number(0);
    (void)arguments.number(1);
    return Variant(std::int32_t{m_state.skinned ? 1 : 0});
}

Variant HostObject::colour(const DispatchCall& call)
{
    const Arguments arguments(call, 2);
    const std::wstring section = arguments.text(0);
    const std::wstring key = arguments.text(1);
    const std::optional<COLORREF> colour =
        m_state.skinned ? skinColour(section, key) : std::optional<COLORREF>();
    return Variant(colour ? static_cast<std::int32_t>(*colour) : std::int32_t{-1});
}

} // namespace tessera::jukebox
