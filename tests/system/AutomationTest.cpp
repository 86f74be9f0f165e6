#include "system/Com.h"
#include "system/Threads.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

constexpr HRESULT kOwnFailure = static_cast<HRESULT>(0x80041234);
int g_alive = 0;

// An automation object that remembers and repeats, or fails in the way it is told.
class Echo : public DispatchServer<Echo> {
public:
    Echo() { ++g_alive; }
    ~Echo() override { --g_alive; }
    static std::span<const DispatchEntry<Echo>> members()
    {
        static constexpr DispatchEntry<Echo> table[] = {
            {1, DISPATCH_METHOD, L"Join", &Echo::join},
            {2, DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUT, L"Value", &Echo::value},
            {3, DISPATCH_METHOD, L"Same", &Echo::same},
            {4, DISPATCH_METHOD, L"Fail", &Echo::fail},
            {5, DISPATCH_METHOD, L"Nothing", &Echo::nothing},
            {6, DISPATCH_METHOD | DISPATCH_PROPERTYGET, L"Count", &Echo::count},
        };
        return table;
    }

private:
    Variant join(const DispatchCall& call)
    {
        return call.argument(0).text() + "|" + std::to_string(call.argument(1).number()) + "|" +
               (call.argument(2).boolean() ? "yes" : "no");
    }
    Variant value(const DispatchCall& call)
    {
        if (!call.isPut())
            return m_value;
        m_value = call.argument(0).number();
        return {};
    }
    Variant same(const DispatchCall& call) { return call.argument(0); }
    Variant fail(const DispatchCall& call)
    {
        switch (call.argument(0).number()) {
        case 0:
            throw HostError(kOwnFailure);
        case 1:
            throw std::bad_alloc();
        default:
            throw 42;
        }
    }
    Variant nothing(const DispatchCall&) { return Variant(static_cast<IDispatch*>(nullptr)); }
    Variant count(const DispatchCall& call) { return static_cast<std::int32_t>(call.count()); }

    std::int32_t m_value = 7;
};

// Raises with whatever details it was made with.
class Raiser : public Echo {
public:
    explicit Raiser(SCODE code) : m_code(code) {}
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                        UINT*) override
    {
        exception->bstrDescription = SysAllocString(L"details");
        exception->pfnDeferredFillIn = nullptr;
        exception->scode = m_code;
        return DISP_E_EXCEPTION;
    }

private:
    SCODE m_code;
};

template <class Work>
std::int32_t thrownCode(Work&& work)
{
    try {
        work();
    } catch (const HostError& error) {
        return error.code();
    }
    return S_OK;
}

} // namespace

TEST(Automation, ArgumentsArriveInOrderAndResultsComeBack)
{
    const auto echo = makeObject<Echo>();
    EXPECT_EQ(callMethod(echo.get(), 1, "caf\xE9", 42, true).text(), "caf\xE9|42|yes");
    EXPECT_EQ(callMethod(echo.get(), 1, std::string_view("a\0b", 3), -1, false).text(),
              std::string_view("a\0b|-1|no", 9));
    EXPECT_EQ(getProperty(echo.get(), 2).number(), 7);
    putProperty(echo.get(), 2, -5);
    EXPECT_EQ(getProperty(echo.get(), 2).number(), -5);
    EXPECT_EQ(callMethod(echo.get(), 6, 1, 2, 3, 4, 5, 6).number(), 6); // more than fit the small array
    EXPECT_EQ(callMethod(echo.get(), 3, u"\u65E5").wide(), u"\u65E5");
    EXPECT_EQ(callMethod(echo.get(), 3, u"\u65E5").text(), "?");
}

TEST(Automation, ObjectsTravelAndReferencesBalance)
{
    {
        const auto echo = makeObject<Echo>();
        const auto other = makeObject<Echo>();
        EXPECT_EQ(callMethod(echo.get(), 3, other).object().get(), other.get());
        EXPECT_FALSE(callMethod(echo.get(), 5).object());
        EXPECT_TRUE(echo.query<IDispatch>());
        EXPECT_FALSE(echo.query<IStream>());
        EXPECT_FALSE(ComPtr<IDispatch>().query<IStream>());
        EXPECT_EQ(g_alive, 2);
    }
    EXPECT_EQ(g_alive, 0);
}

TEST(Automation, FailuresCarryTheirCodes)
{
    const auto echo = makeObject<Echo>();
    EXPECT_EQ(thrownCode([] { callMethod(nullptr, 1); }), E_POINTER);
    EXPECT_EQ(thrownCode([&] { callMethod(echo.get(), 99); }), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(thrownCode([&] { getProperty(echo.get(), 1); }), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(thrownCode([&] { callMethod(echo.get(), 1, "too few"); }), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(thrownCode([&] { callMethod(echo.get(), 1, "x", "not a number", true); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(thrownCode([&] { callMethod(echo.get(), 4, 0); }), kOwnFailure);
    EXPECT_EQ(thrownCode([&] { callMethod(echo.get(), 4, 1); }), E_OUTOFMEMORY);
    EXPECT_EQ(thrownCode([&] { callMethod(echo.get(), 4, 2); }), E_FAIL);
    const auto raiser = makeObject<Raiser>(kOwnFailure);
    EXPECT_EQ(thrownCode([&] { callMethod(raiser.get(), 1); }), kOwnFailure);
    const auto vague = makeObject<Raiser>(0);
    EXPECT_EQ(thrownCode([&] { callMethod(vague.get(), 1); }), DISP_E_EXCEPTION);
}

TEST(Automation, CallersThatWantNothingBackAreServed)
{
    const auto echo = makeObject<Echo>();
    DISPPARAMS none{};
    EXPECT_EQ(echo->Invoke(6, IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, nullptr, nullptr,
                           nullptr),
              S_OK);
    EXPECT_EQ(echo->Invoke(4, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(echo->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_POINTER);
    std::wstring name = L"vALUE";
    LPOLESTR names[] = {name.data()};
    DISPID id = 0;
    EXPECT_EQ(echo->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, 2);
    name = L"Missing";
    names[0] = name.data();
    EXPECT_EQ(echo->GetIDsOfNames(IID_NULL, names, 1, 0, &id), DISP_E_UNKNOWNNAME);
}

TEST(Automation, VariantsConvertOrRefuse)
{
    EXPECT_EQ(Variant("12").number(), 12);
    EXPECT_EQ(Variant(12).text(), "12");
    EXPECT_EQ(Variant(true).number(), -1);
    EXPECT_EQ(Variant().number(), 0);
    EXPECT_EQ(Variant().text(), "");
    EXPECT_FALSE(Variant().object());
    EXPECT_EQ(thrownCode([] { (void)Variant("abc").number(); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(thrownCode([] { (void)Variant(5).object(); }), DISP_E_TYPEMISMATCH);
    Variant moved("text");
    const Variant target = std::move(moved);
    EXPECT_EQ(target.text(), "text");
    EXPECT_TRUE(moved.isEmpty()); // NOLINT: what is left behind is the point
}

TEST(Automation, ReferencesAreCountedFromManyThreads)
{
    const auto echo = makeObject<Echo>();
    {
        std::vector<Thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back("caller", [&echo] {
                for (int round = 0; round < 20000; ++round) {
                    const ComPtr<Echo> copy = echo;
                    (void)getProperty(copy.get(), 2);
                }
            });
        }
    }
    EXPECT_EQ(echo->AddRef(), 2u);
    EXPECT_EQ(echo->Release(), 1u);
}
