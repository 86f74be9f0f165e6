// Keys posted through the loops of two containers reach the control that has the focus.

#include "RunningPlugin.h"

#include "base/Text.h"
#include "shell/Identifiers.h"
#include "ui/ids.h"
#include "windowing/MessageLoop.h"
#include "windowing/Window.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

// Hears the keys that reach a control.
class KeyListener final : public Subclass {
public:
    Handled route(const Message& message) override
    {
        if (message.id == WM_KEYDOWN) {
            keys.push_back(message.wParam);
        }
        return kDefault;
    }
    std::vector<WPARAM> keys;
};

const std::vector<WPARAM> kKeys{VK_DOWN,   VK_UP,     VK_LEFT,  VK_RIGHT, VK_HOME,
                                VK_RETURN, VK_ESCAPE, VK_SPACE, 'A'};

void postKeys(HWND window)
{
    for (const WPARAM key : kKeys) {
        PostMessageA(window, WM_KEYDOWN, key, 1);
        PostMessageA(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    }
}

TEST(Keys, GoToTheFocusedControlInAContainerWithAccelerators)
{
    forgetSettings();
    RunningPlugin plugin;
    plugin.start();
    const HWND list = GetDlgItem(plugin.pane(paneId::kLog), controlId::kLogList);
    SetForegroundWindow(plugin.container.frame());
    SetFocus(plugin.window());
    EXPECT_EQ(GetFocus(), list); // the control hands it on
    EXPECT_EQ(plugin.container.uiActivations, 1);
    ASSERT_TRUE(plugin.container.activeObject);

    KeyListener listener;
    listener.attach(list);
    postKeys(list);
    plugin.container.pumpFor(100);
    EXPECT_EQ(listener.keys, kKeys);
    EXPECT_EQ(plugin.container.eaten, 0);

    // The focus elsewhere: the container has its keys back.
    SetFocus(plugin.container.frame());
    plugin.container.pumpFor(30);
    PostMessageA(plugin.container.frame(), WM_KEYDOWN, VK_RETURN, 1);
    plugin.container.pumpFor(30);
    EXPECT_EQ(plugin.container.eaten, 1);
}

TEST(Keys, TabWalksThroughThePlugInAndLeavesAtItsEnds)
{
    forgetSettings();
    RunningPlugin plugin;
    plugin.start();
    SetForegroundWindow(plugin.container.frame());
    SetFocus(plugin.window());
    std::vector<HWND> visited;
    while (plugin.container.tabsOffered == 0 && visited.size() < 20) {
        visited.push_back(GetFocus());
        PostMessageA(GetFocus(), WM_KEYDOWN, VK_TAB, 1);
        plugin.container.pumpFor(20);
    }
    EXPECT_EQ(plugin.container.tabsOffered, 1);
    EXPECT_EQ(plugin.container.eaten, 0);
    for (const HWND window : visited) {
        EXPECT_TRUE(IsChild(plugin.window(), window));
    }
    // Backwards through everything, and out at the other end.
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_SHIFT] = 0x80;
    SetKeyboardState(keys);
    std::vector<HWND> back;
    while (plugin.container.tabsOffered == 1 && back.size() < 20) {
        back.push_back(GetFocus());
        MSG message{GetFocus(), WM_KEYDOWN, VK_TAB, 1, 0, {0, 0}};
        plugin.container.activeObject->TranslateAccelerator(&message);
    }
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys);
    EXPECT_EQ(plugin.container.tabsOffered, 2);
    EXPECT_GE(back.size(), visited.size());
    EXPECT_GT(back.size(), 2U); // the main pane's controls and the list
}

// The system's own container; a dialog loop outside of it takes Tab, arrows, Enter and Escape
// unless the control wants them.
TEST(Keys, GoToTheFocusedControlInTheSystemsContainer)
{
    forgetSettings();
    const ModuleHandle atl(LoadLibraryA("atl.dll"));
    ASSERT_TRUE(atl);
    using InitHosting = BOOL(WINAPI*)();
    using CreateControl =
        HRESULT(WINAPI*)(LPCOLESTR, HWND, IStream*, IUnknown**, IUnknown**, REFIID, IUnknown*);
    const auto find = [&](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(atl.get(), name));
    };
    ASSERT_TRUE(reinterpret_cast<InitHosting>(find("AtlAxWinInit"))());

    const PluginModule module;
    ASSERT_EQ(module.call("DllRegisterServer"), S_OK);
    const HWND frame = CreateWindowExA(0, "AtlAxWin", "", WS_POPUP | WS_CLIPCHILDREN, 50, 50, 500, 400,
                                       nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(frame);
    ShowWindow(frame, SW_SHOWNOACTIVATE);
    {
        const auto script = smallLibrary();
        const ComPtr<IDispatch> host = makeFakeHost(script);
        ComPtr<IUnknown> container;
        ComPtr<IUnknown> unknown;
        ASSERT_EQ(
            reinterpret_cast<CreateControl>(find("AtlAxCreateControlEx"))(
                L"Tessera2.Interface", frame, nullptr, container.put(), unknown.put(), IID_NULL, nullptr),
            S_OK);
        const ComPtr<IDispatch> control = unknown.query<IDispatch>();
        init(control, host.get());
        const HWND window = GetWindow(frame, GW_CHILD);
        const HWND list = GetDlgItem(GetDlgItem(window, paneId::kLog), controlId::kLogList);
        ASSERT_TRUE(list);
        RECT place{};
        GetClientRect(window, &place);
        EXPECT_EQ(place.right, 500);
        EXPECT_EQ(place.bottom, 400);
        MoveWindow(frame, 50, 50, 600, 300, TRUE);
        pumpWaiting();
        GetClientRect(window, &place);
        EXPECT_EQ(place.right, 600);

        SetForegroundWindow(frame);
        SetFocus(window);
        EXPECT_EQ(GetFocus(), list);
        KeyListener listener;
        listener.attach(list);
        postKeys(list);
        const auto active = control.query<IOleInPlaceActiveObject>();
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
            const bool taken = isKey && active->TranslateAccelerator(&message) == S_OK;
            if (!taken && !IsDialogMessageA(frame, &message)) {
                TranslateMessage(&message);
                DispatchMessageA(&message);
            }
        }
        EXPECT_EQ(listener.keys, kKeys);
        terminate(control);
    }
    DestroyWindow(frame);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_TRUE(module.canUnload());
    EXPECT_EQ(module.call("DllUnregisterServer"), S_OK);
}

} // namespace
} // namespace tessera
