#include "TestContainer.h"

namespace tessera {

namespace {

constexpr WORD kFirstCommand = 100;

std::vector<ACCEL> containerKeys()
{
    std::vector<ACCEL> keys;
    const auto add = [&](int modifiers, WORD key) {
        keys.push_back(
            {static_cast<BYTE>(FVIRTKEY | modifiers), key, static_cast<WORD>(kFirstCommand + keys.size())});
    };
    for (const WORD key : {VK_RETURN, VK_ESCAPE, VK_TAB, VK_F6, VK_PRIOR, VK_NEXT, VK_END, VK_HOME, VK_LEFT,
                           VK_UP, VK_RIGHT, VK_DOWN})
        add(0, key);
    for (WORD key = '0'; key <= 'Z'; ++key) {
        if (key <= '9' || key >= 'A') {
            add(FCONTROL, key);
            add(FCONTROL | FSHIFT, key);
        }
    }
    for (const WORD key : {VK_RETURN, VK_BACK, VK_TAB, VK_HOME, VK_END, VK_UP, VK_DOWN})
        add(FCONTROL, key);
    add(FCONTROL | FSHIFT, VK_TAB);
    add(FSHIFT, VK_TAB);
    add(FSHIFT, VK_F10);
    return keys;
}

std::string keyName(const ACCEL& key)
{
    std::string name;
    name += (key.fVirt & FCONTROL) != 0 ? "Ctrl+" : "";
    name += (key.fVirt & FSHIFT) != 0 ? "Shift+" : "";
    const bool isCharacter = key.key >= '0' && key.key <= 'Z';
    return isCharacter ? name + static_cast<char>(key.key) : name + "#" + std::to_string(key.key);
}

} // namespace

TestContainer::TestContainer()
{
    create(nullptr, 0, {50, 50, 850, 650}, {WS_POPUP | WS_CLIPCHILDREN, 0}, "Container");
    ShowWindow(handle(), SW_SHOWNOACTIVATE);
    m_keys = containerKeys();
    m_accelerators = CreateAcceleratorTableA(m_keys.data(), static_cast<int>(m_keys.size()));
}

TestContainer::~TestContainer()
{
    drop();
    DestroyAcceleratorTable(m_accelerators);
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
    if (::TranslateAcceleratorA(handle(), m_accelerators, &message) != 0) {
        return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

Handled TestContainer::route(const Message& message)
{
    if (message.id == WM_DESTROY && quitsWithFrame) {
        PostQuitMessage(0);
    }
    const unsigned place = LOWORD(message.wParam) - kFirstCommand;
    if (message.id != WM_COMMAND || HIWORD(message.wParam) != 1 || place >= m_keys.size()) {
        return kDefault;
    }
    eaten.push_back(keyName(m_keys[place]));
    return 0;
}

// The key before its release, as between two strokes of a hand.
void TestContainer::press(std::initializer_list<BYTE> keys)
{
    for (const BYTE key : keys) {
        keybd_event(key, 0, 0, 0);
        pumpFor(0);
    }
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) {
        keybd_event(*key, 0, KEYEVENTF_KEYUP, 0);
        pumpFor(0);
    }
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

STDMETHODIMP TestContainer::TranslateAccelerator(MSG* message, DWORD modifiers)
{
    constexpr DWORD kControl = 2;
    if (message->message != WM_KEYDOWN || message->wParam != VK_TAB || (modifiers & kControl) != 0) {
        return S_FALSE;
    }
    ++tabsOffered;
    return S_OK;
}

} // namespace tessera
