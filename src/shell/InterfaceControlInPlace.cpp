// The control in its container's window: in-place and user-interface activation, and keys. The container
// may close the control inside any call that it gets, so what is called is held here meanwhile.

#include "shell/InterfaceControl.h"
#include "shell/OwnKeys.h"
#include "shell/TabStops.h"
#include "shell/TesseraMain.h"
#include "system/Border.h"

namespace tessera {

STDMETHODIMP InterfaceControl::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT)
{
    const ComPtr<InterfaceControl> alive(this);
    return comBorder([&]() -> HRESULT {
        switch (verb) {
        case OLEIVERB_INPLACEACTIVATE:
            return activateInPlace();
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_OPEN:
        case OLEIVERB_UIACTIVATE: {
            const HRESULT result = activateInPlace();
            if (SUCCEEDED(result)) {
                activateUi();
            }
            return result;
        }
        case OLEIVERB_HIDE:
            deactivateUi(true);
            ShowWindow(m_window.handle(), SW_HIDE);
            return S_OK;
        case OLEIVERB_DISCARDUNDOSTATE:
            return S_OK;
        default:
            return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
        }
    });
}

HRESULT InterfaceControl::activateInPlace()
{
    if (m_window) {
        ShowWindow(m_window.handle(), SW_SHOWNA);
        return S_OK;
    }
    const ComPtr<IOleClientSite> client = m_site;
    const ComPtr<IOleInPlaceSite> site = client.query<IOleInPlaceSite>();
    if (!site) {
        return E_FAIL;
    }
    if (site->CanInPlaceActivate() != S_OK || !m_site) {
        return OLE_E_NOT_INPLACEACTIVE;
    }
    m_inPlaceSite = site;
    if (const HRESULT allowed = site->OnInPlaceActivate(); FAILED(allowed)) {
        m_inPlaceSite.reset();
        return allowed;
    }
    const HRESULT created = createWindow();
    if (FAILED(created)) {
        InPlaceDeactivate();
        return created;
    }
    client->ShowObject();
    return m_window ? S_OK : E_FAIL;
}

HRESULT InterfaceControl::createWindow()
{
    const ComPtr<IOleInPlaceSite> site = m_inPlaceSite;
    HWND parent = nullptr;
    if (const HRESULT found = site ? site->GetWindow(&parent) : E_FAIL; FAILED(found)) {
        return found;
    }
    RECT place{};
    RECT clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof info;
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> uiWindow;
    site->GetWindowContext(frame.put(), uiWindow.put(), &place, &clip, &info);
    if (!m_inPlaceSite) {
        return E_FAIL;
    }
    m_frame = std::move(frame);
    m_uiWindow = std::move(uiWindow);
    return m_window.createAt(parent, place) ? S_OK : E_FAIL;
}

void InterfaceControl::activateUi()
{
    if (m_uiActive || !m_inPlaceSite) {
        return;
    }
    m_uiActive = true;
    const ComPtr<InterfaceControl> alive(this);
    const ComPtr<IOleInPlaceSite> site = m_inPlaceSite;
    const ComPtr<IOleInPlaceUIWindow> windows[] = {ComPtr<IOleInPlaceUIWindow>(m_frame.get()), m_uiWindow};
    site->OnUIActivate();
    for (const auto& window : windows) {
        if (window && m_uiActive) {
            window->SetActiveObject(this, L"Tessera 2.0");
        }
        if (window && m_uiActive) {
            window->SetBorderSpace(nullptr);
        }
    }
    if (m_uiActive && !m_window.holdsFocus()) {
        SetFocus(m_window.handle());
    }
}

void InterfaceControl::deactivateUi(bool telling)
{
    if (!m_uiActive) {
        return;
    }
    m_uiActive = false;
    const ComPtr<InterfaceControl> alive(this);
    const ComPtr<IOleInPlaceSite> site = m_inPlaceSite;
    const ComPtr<IOleInPlaceUIWindow> windows[] = {m_uiWindow, ComPtr<IOleInPlaceUIWindow>(m_frame.get())};
    for (const auto& window : windows) {
        if (window) {
            window->SetActiveObject(nullptr, nullptr);
        }
    }
    if (telling && site) {
        site->OnUIDeactivate(FALSE);
    }
}

// The focus that leaves for a dialog or another window of the container's leaves the control
// active: the container says when it activates something else.
void InterfaceControl::focusChanged(bool inside)
{
    const ComPtr<InterfaceControl> alive(this);
    if (inside) {
        activateUi();
    }
    if (const ComPtr<IOleControlSite> site = m_site.query<IOleControlSite>()) {
        site->OnFocus(inside);
    }
}

STDMETHODIMP InterfaceControl::GetWindow(HWND* window)
{
    if (!window) {
        return E_POINTER;
    }
    *window = m_window.handle();
    return *window ? S_OK : E_FAIL;
}

STDMETHODIMP InterfaceControl::InPlaceDeactivate()
{
    const ComPtr<InterfaceControl> alive(this);
    return comBorder([&] {
        deactivateUi(true);
        m_window.destroy();
        const ComPtr<IOleInPlaceSite> site = std::move(m_inPlaceSite);
        m_frame.reset();
        m_uiWindow.reset();
        if (site) {
            site->OnInPlaceDeactivate();
        }
        return S_OK;
    });
}

STDMETHODIMP InterfaceControl::UIDeactivate()
{
    return comBorder([&] {
        deactivateUi(true);
        return S_OK;
    });
}

STDMETHODIMP InterfaceControl::SetObjectRects(LPCRECT place, LPCRECT)
{
    if (!place) {
        return E_POINTER;
    }
    if (!m_window) {
        return S_OK;
    }
    const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE;
    SetWindowPos(m_window.handle(), nullptr, place->left, place->top, place->right - place->left,
                 place->bottom - place->top, flags);
    return S_OK;
}

// Tab walks through the controls and leaves at the ends; the keys that controls work with go to the
// one with the focus; all others are the container's.
STDMETHODIMP InterfaceControl::TranslateAccelerator(LPMSG message)
{
    if (!message) {
        return E_POINTER;
    }
    const bool isKey = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
    if (!isKey || !m_window.holdsFocus()) {
        return S_FALSE;
    }
    return comBorder([&]() -> HRESULT {
        const bool plainTab = message->wParam == VK_TAB && (keyModifiers() & ~kShiftKey) == 0;
        if (plainTab && message->message == WM_KEYDOWN) {
            return translateTab(*message);
        }
        if (!isOwnKey(GetFocus(), *message)) {
            const ComPtr<IOleControlSite> site = m_site.query<IOleControlSite>();
            return site && site->TranslateAccelerator(message, keyModifiers()) == S_OK ? S_OK : S_FALSE;
        }
        TranslateMessage(message);
        DispatchMessageA(message);
        return S_OK;
    });
}

HRESULT InterfaceControl::translateTab(MSG& message)
{
    const std::vector<HWND> stops = tabStops(m_window.handle());
    const int current = focusedStop(stops, GetFocus());
    const bool back = (keyModifiers() & kShiftKey) != 0;
    const int last = static_cast<int>(stops.size()) - 1;
    const int next = current < 0 ? (back ? last : 0) : current + (back ? -1 : 1);
    if (next < 0 || next > last) {
        return leaveByTab(message);
    }
    // The system shows where the focus is from the first key on that moves it.
    SendMessageA(m_window.handle(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetFocus(stops[static_cast<std::size_t>(next)]);
    return S_OK;
}

HRESULT InterfaceControl::leaveByTab(MSG& message)
{
    const ComPtr<IOleControlSite> site = m_site.query<IOleControlSite>();
    if (!site) {
        return S_FALSE;
    }
    return site->TranslateAccelerator(&message, keyModifiers()) == S_OK ? S_OK : S_FALSE;
}

} // namespace tessera
