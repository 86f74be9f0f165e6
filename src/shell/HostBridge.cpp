#include "shell/HostBridge.h"

#include "base/Errors.h"
#include "shell/HostCalls.h"

namespace tessera {

namespace {

namespace hostId {
constexpr DISPID kPlayback = 1;
constexpr DISPID kSearch = 2;
constexpr DISPID kPlaylist = 3;
constexpr DISPID kFile = 8;
constexpr DISPID kDrawSkin = 9;
constexpr DISPID kSkin = 10;
constexpr DISPID kColour = 12;
} // namespace hostId

constexpr const char* kUnit = "HostBridge";

IID hostInterface()
{
    IID id = IID_IDispatch;
    IIDFromString(const_cast<LPOLESTR>(TESSERA_HOST_IID), &id);
    return id;
}

} // namespace

HostBridge::HostBridge() : m_calls(std::make_shared<HostCalls>()) {}

HostBridge::~HostBridge()
{
    release();
}

HRESULT HostBridge::attach(IDispatch* object)
{
    m_host.reset();
    if (!object) {
        return E_POINTER;
    }
    ComPtr<IDispatch> host;
    const HRESULT result = object->QueryInterface(hostInterface(), host.putVoid());
    if (SUCCEEDED(result)) {
        m_host = std::move(host);
    } else {
        host.detach();
    }
    return result;
}

void HostBridge::release()
{
    m_calls->releaseDropped();
    m_host.reset();
}

void HostBridge::releaseDropped()
{
    m_calls->releaseDropped();
}

bool HostBridge::inCall() const
{
    return m_calls->inCall();
}

std::unique_ptr<HostPlayback> HostBridge::playback()
{
    return wrapPlayback(m_calls, m_calls->method(m_host, hostId::kPlayback).object());
}

std::unique_ptr<HostFiles> HostBridge::search(const std::string& criteria)
{
    auto files = wrapFiles(m_calls, m_calls->method(m_host, hostId::kSearch, criteria).object());
    if (!files) {
        throw HostError(kErrorPointer);
    }
    return files;
}

std::unique_ptr<HostPlaylist> HostBridge::playlist()
{
    return wrapPlaylist(m_calls, m_calls->method(m_host, hostId::kPlaylist).object());
}

HostFilePtr HostBridge::file(const std::string& fileName)
{
    return wrapFile(m_calls, m_calls->method(m_host, hostId::kFile, fileName).object());
}

void HostBridge::drawSkin(std::int32_t on)
{
    m_calls->method(m_host, hostId::kDrawSkin, on);
}

std::int32_t HostBridge::skin(std::int32_t window, std::int32_t mode)
{
    return m_calls->method(m_host, hostId::kSkin, window, mode).number();
}

std::int32_t HostBridge::colour(std::string_view section, std::string_view key)
{
    const Variant colour = m_calls->method(m_host, hostId::kColour, section, key);
    return colour.isEmpty() ? -1 : colour.number();
}

namespace {

void startPlayback(HostPlayback& playback, bool playNow)
{
    const std::int32_t state = playback.state();
    if (state == 0) {
        playback.start();
    } else if (state == 1 && playNow) {
        playback.playNow();
    }
}

} // namespace

// An object that is missing shows the assertion box; when the user goes on, the call that needs it
// fails as one on a missing object.
std::unique_ptr<HostPlaylist> HostBridge::neededPlaylist()
{
    std::unique_ptr<HostPlaylist> pMJCurrentPlaylist = playlist();
    TESSERA_ASSERT(pMJCurrentPlaylist != 0, kUnit); // NOLINT(modernize-use-nullptr): shown as it stands
    if (!pMJCurrentPlaylist) {
        throw HostError(kErrorPointer);
    }
    return pMJCurrentPlaylist;
}

std::unique_ptr<HostPlayback> HostBridge::neededPlayback()
{
    std::unique_ptr<HostPlayback> pMJPlayback = playback();
    TESSERA_ASSERT(pMJPlayback != 0, kUnit); // NOLINT(modernize-use-nullptr)
    if (!pMJPlayback) {
        throw HostError(kErrorPointer);
    }
    return pMJPlayback;
}

void HostBridge::playFiles(const PlayRequest& request)
{
    const ScopedLock lock(m_hostLock);
    const std::unique_ptr<HostPlaylist> playlist = neededPlaylist();
    if (!request.append) {
        playlist->clear();
    }
    const std::int32_t base = playlist->count();
    for (const std::string& file : request.files) {
        playlist->add(file, request.place);
    }
    const std::unique_ptr<HostPlayback> playback = neededPlayback();
    if (!request.append) {
        playlist->setPosition(base + request.start);
        startPlayback(*playback, request.playNow);
    }
}

void HostBridge::playEntry(std::int32_t entry)
{
    const ScopedLock lock(m_hostLock);
    const std::unique_ptr<HostPlaylist> playlist = neededPlaylist();
    const std::unique_ptr<HostPlayback> playback = neededPlayback();
    playlist->setPosition(entry);
    startPlayback(*playback, true);
}

} // namespace tessera
