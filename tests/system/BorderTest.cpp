#include "system/Border.h"
#include "system/ActivationContext.h"
#include "system/Com.h"
#include "system/Module.h"
#include "system/Threads.h"

#include "support/FakeBoxes.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

struct Thrower {
    const char* name;
    void (*raise)();
    HRESULT code;
    const char* told; // a part of what the user sees; "" when nothing
};

constexpr Thrower kThrowers[] = {
    {"host", [] { throw HostError(static_cast<std::int32_t>(0x80041234)); }, static_cast<HRESULT>(0x80041234),
     "0x80041234"},
    {"host with a good code", [] { throw HostError(0); }, E_FAIL, "0x00000000"},
    {"memory", [] { throw std::bad_alloc(); }, E_OUTOFMEMORY, "memory"},
    {"cancelled", [] { throw Cancelled(); }, E_ABORT, ""},
    {"standard", [] { throw std::runtime_error("the reason"); }, E_FAIL, "the reason"},
    {"anything", [] { throw 42; }, E_FAIL, ""},
};

} // namespace

TEST(Border, NothingEscapesAndTheUserIsToldWhatHeStarted)
{
    for (const Thrower& thrower : kThrowers) {
        SCOPED_TRACE(thrower.name);
        FakeBoxes boxes;
        EXPECT_EQ(comBorder([&] { return thrower.raise(), S_OK; }), thrower.code);
        EXPECT_EQ(quietBorder(5, [&] { return thrower.raise(), 6; }), 5);
        threadBorder(thrower.raise);
        EXPECT_TRUE(boxes.texts.empty());
        EXPECT_EQ(userBorder(nullptr, 5, [&] { return thrower.raise(), 6; }), 5);
        EXPECT_EQ(boxes.texts.size(), *thrower.told ? 1u : 0u);
        if (!boxes.texts.empty()) {
            EXPECT_NE(boxes.texts.front().find(thrower.told), std::string::npos) << boxes.texts.front();
            EXPECT_EQ(boxes.lastCaption, "Tessera 2.0");
        }
    }
    EXPECT_EQ(comBorder([] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(quietBorder(5, [] { return 6; }), 6);
}

TEST(Boxes, AssertionNamesWhatFailedAndYesEndsTheProcess)
{
    for (const int answer : {IDYES, IDNO}) {
        FakeBoxes boxes(answer);
        showAssertion(nullptr, "pTrack", "Artwork", 77);
        ASSERT_EQ(boxes.texts.size(), 1u);
        EXPECT_EQ(boxes.texts.front(), "Assertion Failed!\n\n\npTrack\n\n\nProgram: " + programPath() +
                                           "\nFile: Artwork\nLine: 77\n\n\n"
                                           "Press YES to abort the application or NO to continue");
        EXPECT_EQ(boxes.lastFlags, static_cast<UINT>(MB_YESNO | MB_ICONSTOP));
        EXPECT_EQ(boxes.ends, answer == IDYES ? 1 : 0);
    }
}

TEST(Module, KnowsItsPathAndItsVersionTexts)
{
    EXPECT_EQ(modulePath(moduleInstance()), programPath()); // a test program is its own module
    EXPECT_NE(programPath().find("test_system"), std::string::npos);
    EXPECT_EQ(versionString("ProductName"), "Caf\xE9");
    EXPECT_EQ(versionString("Missing"), "");
}

TEST(ActivationContext, WithoutAManifestEverythingGoesOn)
{
    const ActivationContext context = ActivationContext::ofModule();
    EXPECT_FALSE(context);
    const ActivationScope outer(context);
    const ActivationScope inner(ActivationContext::current());
}

namespace {

LRESULT CALLBACK countingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const counts = reinterpret_cast<int*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (message >= WM_APP && message <= WM_APP + 1 && counts) {
        ++counts[message - WM_APP];
        return 7;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

TEST(Thread, WaitingAnswersSentMessagesAndLeavesPostedOnes)
{
    int counts[2] = {};
    const HWND window =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window);
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(counts));
    SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&countingProcedure));
    LRESULT answer = 0;
    Thread thread("sender", [&] {
        PostMessageA(window, WM_APP + 1, 0, 0);
        answer = SendMessageA(window, WM_APP, 0, 0);
        answer += SendMessageA(window, WM_APP, 0, 0);
    });
    EXPECT_TRUE(thread.waitAnsweringSentMessages(5000));
    EXPECT_EQ(answer, 14);
    EXPECT_EQ(counts[0], 2);
    EXPECT_EQ(counts[1], 0);
    DestroyWindow(window);
}

TEST(Thread, WaitingAnswersComCallsOfOtherThreads)
{
    class Server : public DispatchServer<Server> {
    public:
        static std::span<const DispatchEntry<Server>> members()
        {
            static constexpr DispatchEntry<Server> table[] = {
                {1, DISPATCH_METHOD, L"Thread", &Server::thread}};
            return table;
        }

    private:
        Variant thread(const DispatchCall&) { return static_cast<std::int32_t>(GetCurrentThreadId()); }
    };
    const ComInit com;
    const auto server = makeObject<Server>();
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, server.get(), &stream), S_OK);
    std::int32_t answer = 0;
    Thread caller("caller", [&] {
        const ComInit own;
        ComPtr<IDispatch> proxy;
        if (SUCCEEDED(CoGetInterfaceAndReleaseStream(stream, IID_IDispatch, proxy.putVoid())))
            answer = callMethod(proxy.get(), 1).number();
    });
    EXPECT_TRUE(caller.waitAnsweringSentMessages(5000));
    EXPECT_EQ(answer, static_cast<std::int32_t>(GetCurrentThreadId()));
}

TEST(Thread, EndsQuietlyWhateverItsWorkThrowsAndTimeoutsAreTold)
{
    Thread failing("failing", [] { throw std::runtime_error("lost"); });
    failing.join();
    EXPECT_FALSE(failing.started());

    Event go;
    Thread waiting("waiting", [&] { go.wait(20000); });
    EXPECT_TRUE(waiting.running());
    EXPECT_FALSE(waiting.waitAnsweringSentMessages(20));
    go.set();
    EXPECT_TRUE(waiting.waitAnsweringSentMessages(5000));
    EXPECT_FALSE(waiting.running());
    EXPECT_TRUE(Thread().waitAnsweringSentMessages(0)); // nothing to wait for
}

TEST(Thread, AsksTheUserForNoDiskInADrive)
{
    const UINT ofTheProcess = GetErrorMode();
    UINT inside = 0;
    Thread("asking", [&] { inside = GetThreadErrorMode(); }).join();
    EXPECT_TRUE(inside & SEM_FAILCRITICALERRORS);
    EXPECT_EQ(GetErrorMode(), ofTheProcess);
}
