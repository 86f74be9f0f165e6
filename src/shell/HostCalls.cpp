#include "shell/HostCalls.h"

#include "base/Text.h"

namespace tessera {

void HostCalls::drop(ComPtr<IDispatch> object) noexcept
{
    if (!object || onUiThread()) {
        return;
    }
    try {
        const ScopedLock lock(m_droppedLock);
        m_dropped.push_back(std::move(object));
    } catch (...) { // memory is short: released here after all
    }
}

void HostCalls::releaseDropped() noexcept
{
    std::vector<ComPtr<IDispatch>> dropped;
    {
        const ScopedLock lock(m_droppedLock);
        dropped.swap(m_dropped);
    }
}

namespace {

// Common to the objects that the host hands out.
class HostObject {
public:
    HostObject(std::shared_ptr<HostCalls> calls, ComPtr<IDispatch> object)
        : m_calls(std::move(calls)), m_object(std::move(object))
    {
    }

protected:
    ~HostObject() { m_calls->drop(std::move(m_object)); }
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    template <class... Arguments>
    Variant method(DISPID id, const Arguments&... arguments) const
    {
        return m_calls->method(m_object, id, arguments...);
    }
    Variant get(DISPID id) const { return m_calls->get(m_object, id); }
    void put(DISPID id, std::int32_t value) const { m_calls->put(m_object, id, value); }

    std::shared_ptr<HostCalls> m_calls;
    ComPtr<IDispatch> m_object;
};

namespace fileId {
constexpr DISPID kImage = 23;
}

class File final : public HostFile, private HostObject {
public:
    using HostObject::HostObject;
    std::string text(FileText field) override { return read(field).text(); }
    std::u16string wideText(FileText field) override { return read(field).wide(); }
    std::int32_t number(FileNumber field) override { return get(static_cast<DISPID>(field)).number(); }
    std::string image(ImageKind kind) override
    {
        const Variant name = method(fileId::kImage, static_cast<std::int32_t>(kind));
        return toCodePageExactly(name.wide()).value_or("");
    }

private:
    static bool isMethod(FileText field) { return field >= FileText::FileSize; }
    Variant read(FileText field) const
    {
        const auto id = static_cast<DISPID>(field);
        return isMethod(field) ? method(id) : get(id);
    }
};

namespace filesId {
constexpr DISPID kCount = 1;
constexpr DISPID kFile = 2;
} // namespace filesId

class Files final : public HostFiles, private HostObject {
public:
    using HostObject::HostObject;
    std::int32_t count() override { return method(filesId::kCount).number(); }
    HostFilePtr file(std::int32_t index) override
    {
        return wrapFile(m_calls, method(filesId::kFile, index).object());
    }
};

namespace playlistId {
constexpr DISPID kPosition = 1;
constexpr DISPID kCount = 4;
constexpr DISPID kFile = 5;
constexpr DISPID kClear = 6;
constexpr DISPID kAdd = 8;
} // namespace playlistId

class Playlist final : public HostPlaylist, private HostObject {
public:
    using HostObject::HostObject;
    std::int32_t position() override { return get(playlistId::kPosition).number(); }
    void setPosition(std::int32_t index) override { put(playlistId::kPosition, index); }
    std::int32_t count() override { return method(playlistId::kCount).number(); }
    HostFilePtr file(std::int32_t index) override
    {
        return wrapFile(m_calls, method(playlistId::kFile, index).object());
    }
    void clear() override { method(playlistId::kClear); }
    bool add(const std::string& fileName, std::int32_t argument) override
    {
        return method(playlistId::kAdd, fileName, argument).boolean();
    }
};

namespace playbackId {
constexpr DISPID kState = 1;
constexpr DISPID kPlayNow = 8;
constexpr DISPID kStart = 15;
} // namespace playbackId

class Playback final : public HostPlayback, private HostObject {
public:
    using HostObject::HostObject;
    std::int32_t state() override { return get(playbackId::kState).number(); }
    void playNow() override { method(playbackId::kPlayNow); }
    void start() override { method(playbackId::kStart); }
};

template <class Wrapper>
std::unique_ptr<Wrapper> wrap(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object)
{
    return object ? std::make_unique<Wrapper>(calls, std::move(object)) : nullptr;
}

} // namespace

HostFilePtr wrapFile(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object)
{
    return object ? std::make_shared<File>(calls, std::move(object)) : nullptr;
}

std::unique_ptr<HostFiles> wrapFiles(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object)
{
    return wrap<Files>(calls, std::move(object));
}

std::unique_ptr<HostPlaylist> wrapPlaylist(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object)
{
    return wrap<Playlist>(calls, std::move(object));
}

std::unique_ptr<HostPlayback> wrapPlayback(const std::shared_ptr<HostCalls>& calls, ComPtr<IDispatch> object)
{
    return wrap<Playback>(calls, std::move(object));
}

} // namespace tessera
