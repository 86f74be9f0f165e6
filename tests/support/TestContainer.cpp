#include "TestContainer.h"

namespace tessera {

namespace {

bool isContainerKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN) {
        return false;
    }
    return message.wParam == VK_RETURN || message.wParam == VK_ESCAPE || message.wParam == VK_TAB ||
           (message.wParam >= VK_PRIOR && message.wParam <= VK_DOWN);
}

} // namespace

TestContainer::TestContainer()
{
    create(nullptr, 0, {50, 50, 850, 650}, {WS_POPUP | WS_CLIPCHILDREN, 0}, "Container");
    ShowWindow(handle(), SW_SHOWNOACTIVATE);
}

TestContainer::~TestContainer()
{
    drop();
}

bool TestContainer::host(const ComPtr<IDispatch>& control)
{
    m_object = control.query<IOleObject>();
    if (!m_object || FAILED(m_object->SetClientSite(this))) {
        return false;
    }
    if (const auto persist = control.query<IPersistStreamInit>()) {
        persist->InitNew();
    }
    const RECT place = clientRect();
    return m_object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, handle(), &place) == S_OK;
}

void TestContainer::drop()
{
    if (const ComPtr<IOleObject> object = std::move(m_object)) {
        object->Close(OLECLOSE_NOSAVE);
        object->SetClientSite(nullptr);
    }
    activeObject.reset();
}

HWND TestContainer::controlWindow() const
{
    HWND window = nullptr;
    if (const auto place = m_object.query<IOleInPlaceObject>()) {
        place->GetWindow(&window);
    }
    return window;
}

void TestContainer::resize(int width, int height)
{
    const RECT place{0, 0, width, height};
    if (const auto object = m_object.query<IOleInPlaceObject>()) {
        object->SetObjectRects(&place, &place);
    }
}

Handled TestContainer::route(const Message& message)
{
    if (message.id == WM_DESTROY && quitsWithFrame) {
        PostQuitMessage(0);
    }
    return kDefault;
}

void TestContainer::handleOne(MSG& message)
{
    if (message.message == WM_QUIT) {
        quit = true;
        return;
    }
    const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    const ComPtr<IOleInPlaceActiveObject> active = activeObject;
    if (isKey && active && active->TranslateAccelerator(&message) == S_OK) {
        return;
    }
    if (isContainerKey(message)) {
        ++eaten;
        return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

bool TestContainer::pump(const std::function<bool()>& condition, DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    while (!condition()) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            handleOne(message);
            if (condition()) {
                return true;
            }
        }
        if (GetTickCount() - start > milliseconds) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return true;
}

void TestContainer::pumpFor(DWORD milliseconds)
{
    pump([] { return false; }, milliseconds);
}

STDMETHODIMP TestContainer::QueryInterface(REFIID id, void** object)
{
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IOleClientSite) {
        *object = static_cast<IOleClientSite*>(this);
    } else if (id == IID_IOleInPlaceSite || id == IID_IOleWindow) {
        *object = static_cast<IOleInPlaceSite*>(this);
    } else if (id == IID_IOleInPlaceFrame || id == IID_IOleInPlaceUIWindow) {
        *object = static_cast<IOleInPlaceFrame*>(this);
    } else if (id == IID_IOleControlSite) {
        *object = static_cast<IOleControlSite*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP TestContainer::GetWindow(HWND* window)
{
    called("GetWindow");
    *window = handle();
    return handle() ? S_OK : E_FAIL;
}

STDMETHODIMP TestContainer::OnUIActivate()
{
    ++uiActivations;
    return called("OnUIActivate");
}

STDMETHODIMP TestContainer::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                             LPRECT place, LPRECT clip, LPOLEINPLACEFRAMEINFO info)
{
    called("GetWindowContext");
    *frame = ComPtr<IOleInPlaceFrame>(this).detach();
    *document = nullptr;
    *place = clientRect();
    *clip = clientRect();
    info->fMDIApp = FALSE;
    info->hwndFrame = handle();
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

STDMETHODIMP TestContainer::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR)
{
    activeObject = ComPtr<IOleInPlaceActiveObject>(object);
    return called("SetActiveObject");
}

STDMETHODIMP TestContainer::TranslateAccelerator(MSG* message, DWORD)
{
    if (message->wParam != VK_TAB) {
        return S_FALSE;
    }
    ++tabsOffered;
    return S_OK;
}

} // namespace tessera
