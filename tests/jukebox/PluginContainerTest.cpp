#include "jukebox/PluginContainer.h"

#include "jukebox/PluginEntry.h"
#include "system/Registry.h"
#include "windowing/Window.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

namespace tessera::jukebox {
namespace {

constexpr CLSID kTestControl = {0x6f1d3c52, 0x9a0b, 0x4a57, {0x8e, 0x21, 0x55, 0x0c, 0x3b, 0x7d, 0x10, 0x9e}};

// What the control below was asked to do, in order.
std::vector<std::string> s_calls;
bool s_refuseVerb = false;

// The smallest control that can be in-place active: its window is a plain child that fills the area.
class TestControl : public DispatchServer<TestControl>, public IOleObject, public IOleInPlaceObject {
public:
    static std::span<const DispatchEntry<TestControl>> members()
    {
        static constexpr std::array kMembers = {
            DispatchEntry<TestControl>{7, DISPATCH_METHOD, L"Init", &TestControl::init},
            DispatchEntry<TestControl>{8, DISPATCH_METHOD, L"Terminate", &TestControl::terminate},
        };
        return kMembers;
    }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override
    {
        if (id == IID_IOleObject) {
            *object = static_cast<IOleObject*>(this);
        } else if (id == IID_IOleInPlaceObject || id == IID_IOleWindow) {
            *object = static_cast<IOleInPlaceObject*>(this);
        } else {
            return DispatchServer<TestControl>::QueryInterface(id, object);
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return DispatchBase::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return DispatchBase::Release(); }

    STDMETHODIMP SetClientSite(IOleClientSite* site) override
    {
        s_calls.push_back(site ? "site" : "no site");
        m_site = ComPtr<IOleClientSite>(site);
        return S_OK;
    }
    STDMETHODIMP GetMiscStatus(DWORD, DWORD* status) override
    {
        *status = OLEMISC_SETCLIENTSITEFIRST;
        return S_OK;
    }
    STDMETHODIMP DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND, LPCRECT) override
    {
        if (verb != OLEIVERB_INPLACEACTIVATE || s_refuseVerb) {
            return E_FAIL;
        }
        s_calls.push_back("activate");
        const auto place = m_site.query<IOleInPlaceSite>();
        HWND parent = nullptr;
        ComPtr<IOleInPlaceUIWindow> document;
        RECT area{};
        RECT clip{};
        OLEINPLACEFRAMEINFO info{sizeof info, FALSE, nullptr, nullptr, 0};
        place->GetWindow(&parent);
        place->GetWindowContext(m_frame.put(), document.put(), &area, &clip, &info);
        m_window.create(parent, 0, area);
        return S_OK;
    }
    STDMETHODIMP Close(DWORD) override
    {
        s_calls.push_back("close");
        m_window.destroy();
        m_frame.reset();
        return S_OK;
    }
    STDMETHODIMP SetObjectRects(LPCRECT place, LPCRECT) override
    {
        MoveWindow(m_window.handle(), place->left, place->top, place->right - place->left,
                   place->bottom - place->top, TRUE);
        return S_OK;
    }
    STDMETHODIMP GetWindow(HWND* window) override
    {
        *window = m_window.handle();
        return S_OK;
    }
    STDMETHODIMP InPlaceDeactivate() override
    {
        s_calls.push_back("deactivate");
        return S_OK;
    }
    STDMETHODIMP UIDeactivate() override { return S_OK; }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP GetClientSite(IOleClientSite**) override { return E_NOTIMPL; }
    STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
    STDMETHODIMP EnumVerbs(IEnumOLEVERB**) override { return E_NOTIMPL; }
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
    STDMETHODIMP SetExtent(DWORD, SIZEL*) override { return S_OK; }
    STDMETHODIMP GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP Unadvise(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

private:
    Variant init(const DispatchCall& call)
    {
        s_calls.push_back(call.argument(0).object() ? "init" : "init without host");
        return {};
    }
    Variant terminate(const DispatchCall&)
    {
        s_calls.push_back("terminate");
        return {};
    }

    ComPtr<IOleClientSite> m_site;
    ComPtr<IOleInPlaceFrame> m_frame;
    Window m_window;
};

class TestFactory : public IClassFactory {
public:
    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = this;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override
    {
        return makeObject<TestControl>()->QueryInterface(id, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
};

class PluginContainerTest : public testing::Test {
protected:
    void SetUp() override
    {
        s_calls.clear();
        s_refuseVerb = false;
        ASSERT_TRUE(m_frame.create(nullptr, 0, {0, 0, 400, 300}, {WS_POPUP | WS_VISIBLE, 0}));
        ASSERT_EQ(CoRegisterClassObject(kTestControl, &m_factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                        &m_registration),
                  S_OK);
    }
    void TearDown() override { CoRevokeClassObject(m_registration); }

    OleInit m_ole;
    TestFactory m_factory;
    DWORD m_registration = 0;
    Window m_frame;
};

TEST_F(PluginContainerTest, AControlLivesFromCreationToClose)
{
    PluginContainer container({m_frame.handle(), m_frame.handle()});
    container.create(kTestControl);
    const HWND window = container.controlWindow();
    ASSERT_TRUE(IsWindow(window));
    EXPECT_EQ(GetParent(window), m_frame.handle());
    container.callInit(makeObject<TestControl>().get());

    MoveWindow(m_frame.handle(), 0, 0, 640, 480, FALSE);
    container.resize();
    RECT place{};
    GetClientRect(window, &place);
    EXPECT_EQ(place.right, 640);
    EXPECT_EQ(place.bottom, 480);

    container.callTerminate();
    EXPECT_EQ(container.close(), 0u);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(container.close(), 0u); // once more does nothing
    const std::vector<std::string> order = {"site",       "activate", "init",   "terminate",
                                            "deactivate", "close",    "no site"};
    EXPECT_EQ(s_calls, order);
}

TEST_F(PluginContainerTest, AFailureLeavesNothingBehind)
{
    PluginContainer container({m_frame.handle(), m_frame.handle()});
    s_refuseVerb = true;
    EXPECT_THROW(container.create(kTestControl), HostError);
    EXPECT_FALSE(container.isCreated());
    EXPECT_EQ(s_calls.back(), "no site");
    EXPECT_THROW(container.create(CLSID_NULL), HostError);
    EXPECT_FALSE(container.isCreated());
    EXPECT_THROW(container.callTerminate(), HostError);
    container.resize();
    EXPECT_EQ(container.controlWindow(), nullptr);
}

TEST_F(PluginContainerTest, AReferenceThatIsKeptIsCounted)
{
    PluginContainer container({m_frame.handle(), m_frame.handle()});
    container.create(kTestControl);
    const ComPtr<IOleObject> kept(container.control());
    EXPECT_EQ(container.close(), 0u); // the control is kept, but it let its site go
    kept->SetClientSite(nullptr);
}

TEST(PluginEntries, ThePreferredEntryElseTheFirstWithAClass)
{
    const std::string path = "Software\\Tessera jukebox test";
    const auto add = [&](const char* name, const char* classId) {
        RegistryKey::create(HKEY_CURRENT_USER, path + "\\" + name).setText("CLSID", classId);
    };
    EXPECT_FALSE(findPlugin("Mine", path));
    add("Broken", "no class");
    EXPECT_FALSE(findPlugin("Mine", path));
    add("Other", "{00000000-0000-0000-0000-000000000001}");
    ASSERT_TRUE(findPlugin("Mine", path));
    EXPECT_EQ(findPlugin("Mine", path)->name, "Other");
    add("Mine", "{00000000-0000-0000-0000-000000000002}");
    EXPECT_EQ(findPlugin("Mine", path)->classId.Data4[7], 2);
    RegistryKey::removeTree(HKEY_CURRENT_USER, path);
}

} // namespace
} // namespace tessera::jukebox
