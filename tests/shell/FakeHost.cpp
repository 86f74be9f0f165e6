#include "FakeHost.h"

#include "base/Text.h"

#include <array>

namespace tessera {

void HostScript::note(const std::string& what)
{
    const ScopedLock lock(m_lock);
    m_journal.push_back(what);
}

std::vector<std::string> HostScript::journal()
{
    const ScopedLock lock(m_lock);
    return m_journal;
}

namespace {

// Counts every call, and refuses or answers nothing where the script wants it.
template <class Object>
class Scripted : public DispatchServer<Object> {
public:
    explicit Scripted(std::shared_ptr<HostScript> script) : m_script(std::move(script)) { ++m_script->live; }
    ~Scripted() override { --m_script->live; }

protected:
    bool dispatch(const DispatchCall& call, WORD kinds, Variant& result) override
    {
        const int number = ++m_script->calls;
        m_script->member = static_cast<int>(call.id());
        if (m_script->onCall) {
            m_script->onCall(number);
        }
        if (number == m_script->failAt) {
            throw HostError(E_FAIL);
        }
        return number == m_script->nullAt || DispatchServer<Object>::dispatch(call, kinds, result);
    }

    std::shared_ptr<HostScript> m_script;
};

class FakeFile final : public Scripted<FakeFile> {
public:
    FakeFile(std::shared_ptr<HostScript> script, FakeTrack track)
        : Scripted(std::move(script)), m_track(std::move(track))
    {
    }
    ~FakeFile() override
    {
        if (GetCurrentThreadId() != m_script->uiThread) {
            ++m_script->strayReleases;
        }
    }
    static std::span<const DispatchEntry<FakeFile>> members();

private:
    Variant fileName(const DispatchCall&) { return m_track.fileName; }
    Variant artist(const DispatchCall&) { return m_track.artist; }
    Variant album(const DispatchCall&) { return m_track.album; }
    Variant text(const DispatchCall& call) { return format("text %d", static_cast<int>(call.id())); }
    Variant type(const DispatchCall&) { return "MP3"; }
    Variant value(const DispatchCall& call) { return static_cast<std::int32_t>(call.id() * 10); }
    Variant number(const DispatchCall&) { return m_track.number; }
    Variant image(const DispatchCall& call)
    {
        const std::string& image = m_script->embeddedImage;
        if (image.empty() || call.argument(0).number() != 2) {
            return "";
        }
        char temporary[MAX_PATH] = "";
        GetTempFileNameA(".", "fak", 0, temporary);
        CopyFileA(image.c_str(), temporary, FALSE);
        m_script->note("image");
        return std::string(temporary);
    }

    FakeTrack m_track;
};

std::span<const DispatchEntry<FakeFile>> FakeFile::members()
{
    static constexpr WORD kGet = DISPATCH_PROPERTYGET;
    static constexpr WORD kCall = DISPATCH_METHOD;
    static const std::array<DispatchEntry<FakeFile>, 22> kMembers{{
        {1, kGet, L"Filename", &FakeFile::fileName}, {2, kGet, L"Artist", &FakeFile::artist},
        {3, kGet, L"Album", &FakeFile::album},       {4, kGet, L"Name", &FakeFile::text},
        {6, kGet, L"Duration", &FakeFile::value},    {7, kGet, L"Genre", &FakeFile::text},
        {8, kGet, L"Year", &FakeFile::value},        {9, kGet, L"Comment", &FakeFile::text},
        {10, kGet, L"Bitrate", &FakeFile::value},    {11, kGet, L"Track", &FakeFile::number},
        {13, kGet, L"Custom1", &FakeFile::text},     {14, kGet, L"Custom2", &FakeFile::text},
        {15, kGet, L"Custom3", &FakeFile::text},     {16, kGet, L"PlayCount", &FakeFile::value},
        {18, kGet, L"Rating", &FakeFile::value},     {19, kGet, L"Type", &FakeFile::type},
        {20, kGet, L"Lyrics", &FakeFile::text},      {21, kGet, L"Notes", &FakeFile::text},
        {23, kCall, L"Image", &FakeFile::image},     {25, kCall, L"FileSize", &FakeFile::text},
        {26, kCall, L"FileDate", &FakeFile::text},   {27, kCall, L"DurationText", &FakeFile::text},
    }};
    return kMembers;
}

class FakeFiles final : public Scripted<FakeFiles> {
public:
    using Scripted::Scripted;
    static std::span<const DispatchEntry<FakeFiles>> members()
    {
        static const std::array<DispatchEntry<FakeFiles>, 2> kMembers{{
            {1, DISPATCH_METHOD, L"Count", &FakeFiles::count},
            {2, DISPATCH_METHOD, L"File", &FakeFiles::file},
        }};
        return kMembers;
    }

private:
    Variant count(const DispatchCall&) { return static_cast<std::int32_t>(m_script->tracks.size()); }
    Variant file(const DispatchCall& call)
    {
        const auto index = static_cast<std::size_t>(call.argument(0).number());
        return makeObject<FakeFile>(m_script, m_script->tracks.at(index));
    }
};

class FakePlaylist final : public Scripted<FakePlaylist> {
public:
    using Scripted::Scripted;
    static std::span<const DispatchEntry<FakePlaylist>> members()
    {
        static const std::array<DispatchEntry<FakePlaylist>, 6> kMembers{{
            {1, DISPATCH_PROPERTYPUT, L"Position", &FakePlaylist::setPosition},
            {1, DISPATCH_PROPERTYGET, L"Position", &FakePlaylist::position},
            {4, DISPATCH_METHOD, L"Count", &FakePlaylist::count},
            {5, DISPATCH_METHOD, L"File", &FakePlaylist::file},
            {6, DISPATCH_METHOD, L"Clear", &FakePlaylist::clear},
            {8, DISPATCH_METHOD, L"Add", &FakePlaylist::add},
        }};
        return kMembers;
    }

private:
    Variant noted(const std::string& what, Variant answer = {})
    {
        m_script->note(what);
        return answer;
    }
    Variant setPosition(const DispatchCall& call)
    {
        return noted("position " + std::to_string(call.argument(0).number()));
    }
    Variant position(const DispatchCall&) { return 3; }
    Variant count(const DispatchCall&) { return noted("count", 5); }
    Variant file(const DispatchCall& call)
    {
        const auto index = static_cast<std::size_t>(call.argument(0).number());
        return makeObject<FakeFile>(m_script, m_script->tracks.at(index));
    }
    Variant clear(const DispatchCall&) { return noted("clear"); }
    Variant add(const DispatchCall& call)
    {
        return noted("add " + call.argument(0).text() + " " + std::to_string(call.argument(1).number()),
                     true);
    }
};

class FakePlayback final : public Scripted<FakePlayback> {
public:
    using Scripted::Scripted;
    static std::span<const DispatchEntry<FakePlayback>> members()
    {
        static const std::array<DispatchEntry<FakePlayback>, 3> kMembers{{
            {1, DISPATCH_PROPERTYGET, L"State", &FakePlayback::state},
            {8, DISPATCH_METHOD, L"PlayNow", &FakePlayback::playNow},
            {15, DISPATCH_METHOD, L"Start", &FakePlayback::start},
        }};
        return kMembers;
    }

private:
    Variant state(const DispatchCall&) { return m_script->colours["state"]; }
    Variant playNow(const DispatchCall&)
    {
        m_script->note("play now");
        return {};
    }
    Variant start(const DispatchCall&)
    {
        m_script->note("start");
        return {};
    }
};

class FakeHostObject final : public Scripted<FakeHostObject> {
public:
    using Scripted::Scripted;
    STDMETHODIMP QueryInterface(REFIID id, void** object) override
    {
        if (m_script->onQuery) {
            m_script->onQuery();
        }
        return Scripted::QueryInterface(id, object);
    }
    static std::span<const DispatchEntry<FakeHostObject>> members()
    {
        static const std::array<DispatchEntry<FakeHostObject>, 7> kMembers{{
            {1, DISPATCH_METHOD, L"Playback", &FakeHostObject::playback},
            {2, DISPATCH_METHOD, L"Search", &FakeHostObject::search},
            {3, DISPATCH_METHOD, L"Playlist", &FakeHostObject::playlist},
            {8, DISPATCH_METHOD, L"File", &FakeHostObject::file},
            {9, DISPATCH_METHOD, L"DrawSkin", &FakeHostObject::drawSkin},
            {10, DISPATCH_METHOD, L"Skin", &FakeHostObject::skin},
            {12, DISPATCH_METHOD, L"Colour", &FakeHostObject::colour},
        }};
        return kMembers;
    }

private:
    Variant playback(const DispatchCall&)
    {
        return m_script->givesPlayback ? Variant(makeObject<FakePlayback>(m_script)) : Variant();
    }
    Variant search(const DispatchCall& call)
    {
        m_script->note("search " + call.argument(0).text());
        return makeObject<FakeFiles>(m_script);
    }
    Variant playlist(const DispatchCall&)
    {
        return m_script->givesPlaylist ? Variant(makeObject<FakePlaylist>(m_script)) : Variant();
    }
    Variant file(const DispatchCall& call)
    {
        const std::string name = call.argument(0).text();
        for (const FakeTrack& track : m_script->tracks) {
            if (m_script->knowsFiles && track.fileName == name) {
                return makeObject<FakeFile>(m_script, track);
            }
        }
        return {};
    }
    Variant drawSkin(const DispatchCall& call)
    {
        m_script->note("draw skin " + std::to_string(call.argument(0).number()));
        return {};
    }
    Variant skin(const DispatchCall& call)
    {
        if (call.argument(0).number() == 0) {
            m_script->note("skin query " + std::to_string(call.argument(1).number()));
            return m_script->skinned;
        }
        if (m_script->onSkin) {
            m_script->onSkin(reinterpret_cast<HWND>(static_cast<INT_PTR>(call.argument(0).number())));
        }
        return 0;
    }
    Variant colour(const DispatchCall& call)
    {
        const auto found = m_script->colours.find(call.argument(0).text() + "/" + call.argument(1).text());
        return found == m_script->colours.end() ? -1 : found->second;
    }
};

} // namespace

// Albums of five tracks each.
std::shared_ptr<HostScript> smallLibrary(int tracks)
{
    auto script = std::make_shared<HostScript>();
    for (int i = 0; i < tracks; ++i) {
        const int album = i / 5 + 1;
        script->tracks.push_back({format("C:\\Music\\Album %d\\%02d.mp3", album, i % 5 + 1),
                                  format("Artist %d", album % 3 + 1), format("Album %d", album), i % 5 + 1});
    }
    return script;
}

ComPtr<IDispatch> makeFakeHost(const std::shared_ptr<HostScript>& script)
{
    return ComPtr<IDispatch>(makeObject<FakeHostObject>(script).get());
}

} // namespace tessera
