#include "jukebox/PluginContainer.h"

#include "system/Border.h"

#include <algorithm>
#include <array>
#include <ocidl.h>

namespace tessera::jukebox {

namespace {

constexpr int kHimetricPerInch = 2540;

SIZEL toHimetric(const RECT& place)
{
    const HDC screen = GetDC(nullptr);
    const SIZEL size{MulDiv(place.right, kHimetricPerInch, GetDeviceCaps(screen, LOGPIXELSX)),
                     MulDiv(place.bottom, kHimetricPerInch, GetDeviceCaps(screen, LOGPIXELSY))};
    ReleaseDC(nullptr, screen);
    return size;
}

bool wantsSiteFirst(IOleObject& control)
{
    DWORD status = 0;
    return SUCCEEDED(control.GetMiscStatus(DVASPECT_CONTENT, &status)) &&
           (status & OLEMISC_SETCLIENTSITEFIRST) != 0;
}

} // namespace

void PluginContainer::create(const CLSID& classId)
{
    checkResult(
        CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject, m_control.putVoid()));
    m_site.attach(new ControlSite(m_windows, m_active));
    try {
        attach();
    } catch (...) {
        close();
        throw;
    }
}

void PluginContainer::attach()
{
    const bool siteFirst = wantsSiteFirst(*m_control);
    if (siteFirst) {
        checkResult(m_control->SetClientSite(m_site.get()));
    }
    if (const auto storage = m_control.query<IPersistStreamInit>()) {
        checkResult(storage->InitNew());
    }
    if (!siteFirst) {
        checkResult(m_control->SetClientSite(m_site.get()));
    }
    m_control->SetHostNames(L"Media Jukebox", nullptr);
    const RECT area = place();
    SIZEL extent = toHimetric(area);
    m_control->SetExtent(DVASPECT_CONTENT, &extent);
    checkResult(m_control->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, m_site.get(), 0, m_windows.area, &area));
}

RECT PluginContainer::place() const
{
    RECT area{};
    GetClientRect(m_windows.area, &area);
    return area;
}

Variant PluginContainer::callByName(const wchar_t* name, std::span<const Variant> arguments)
{
    const auto dispatch = m_control.query<IDispatch>();
    if (!dispatch) {
        throw HostError(E_NOINTERFACE);
    }
    std::wstring text(name);
    LPOLESTR names = text.data();
    DISPID id = DISPID_UNKNOWN;
    checkResult(dispatch->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
    return invokeWith(dispatch.get(), id, DISPATCH_METHOD, arguments);
}

void PluginContainer::callInit(IDispatch* host)
{
    const std::array<Variant, 1> arguments{Variant(host)};
    callByName(L"Init", arguments);
}

void PluginContainer::callTerminate()
{
    callByName(L"Terminate", {});
}

void PluginContainer::resize()
{
    if (const auto inPlace = m_control.query<IOleInPlaceObject>()) {
        const RECT area = place();
        inPlace->SetObjectRects(&area, &area);
    }
}

bool PluginContainer::translate(MSG& message)
{
    const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    const ComPtr<IOleInPlaceActiveObject> active = m_active.object; // may change during the call
    if (!isKey || !active || !IsChild(m_windows.area, message.hwnd)) {
        return false;
    }
    return active->TranslateAccelerator(&message) == S_OK;
}

void PluginContainer::focus()
{
    if (m_control) {
        const RECT area = place();
        m_control->DoVerb(OLEIVERB_UIACTIVATE, nullptr, m_site.get(), 0, m_windows.area, &area);
    }
}

HWND PluginContainer::controlWindow() const
{
    HWND window = nullptr;
    if (const auto inPlace = m_control.query<IOleInPlaceObject>()) {
        inPlace->GetWindow(&window);
    }
    return window;
}

ULONG PluginContainer::close() noexcept
{
    if (!m_site) {
        m_control.reset();
        return 0;
    }
    if (m_control) {
        if (const auto inPlace = m_control.query<IOleInPlaceObject>()) {
            inPlace->UIDeactivate();
            inPlace->InPlaceDeactivate();
        }
        m_control->Close(OLECLOSE_NOSAVE);
        m_control->SetClientSite(nullptr);
    }
    m_active.object.reset();
    m_control.reset();
    m_site->disconnect();
    const ULONG left = m_site->references() - 1 + m_site->frameReferences() - 1;
    m_site.reset();
    return left;
}

bool isStillLoaded(const std::string& modulePath)
{
    CoFreeUnusedLibrariesEx(0, 0);
    return !modulePath.empty() && GetModuleHandleA(modulePath.c_str()) != nullptr;
}

} // namespace tessera::jukebox
