#include "windowing/Window.h"
#include "system/Border.h"
#include "system/Module.h"
#include "windowing/Controls.h"
#include "windowing/MessageLoop.h"

#include "support/FakeBoxes.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

using namespace tessera;

namespace {

constexpr UINT kList = 3001;
constexpr RECT kPlace{0, 0, 300, 200};
constexpr WindowStyle kHidden{WS_POPUP, 0};

// Writes down what reaches it.
class Recorder : public Mapped<Recorder> {
public:
    static std::span<const MapEntry<Recorder>> messageMap()
    {
        static constexpr MapEntry<Recorder> map[] = {
            {WM_CREATE, &Recorder::onCreate},
            {WM_SIZE, &Recorder::onSize},
            {WM_APP, &Recorder::onFirst},
            {WM_APP, &Recorder::onSecond},
            {WM_APP + 1, &Recorder::onThrow},
            {WM_TIMER, &Recorder::onThrow},
            {WM_DESTROY, &Recorder::onDestroy},
            {57600, &Recorder::onPlay},
            {57601, BN_CLICKED, &Recorder::onClick},
            {IdRange{57610, 57612}, &Recorder::onRange},
            {57700, &Recorder::onCommandThrow},
            {kList, LVN_ITEMCHANGED, &Recorder::onItemChanged},
            {IdRange{0, 0xFFFF}, NM_CUSTOMDRAW, &Recorder::onAnyCustomDraw},
        };
        return map;
    }

    std::vector<std::string> log;
    bool refuseCreation = false;
    int* destroyed = nullptr;

protected:
    WindowClass windowClass() const override { return {.name = "TesseraTestRecorder"}; }
    void afterDestroy() override
    {
        if (destroyed) {
            ++*destroyed;
        }
    }

private:
    Handled onCreate(const Message&)
    {
        log.push_back("create");
        if (refuseCreation) {
            return -1;
        }
        return kDefault;
    }
    Handled onSize(const Message& message)
    {
        log.push_back("size " + std::to_string(LOWORD(message.lParam)));
        return kDefault;
    }
    Handled onFirst(const Message& message)
    {
        log.push_back("first");
        return message.wParam == 1 ? Handled(11) : kDefault;
    }
    Handled onSecond(const Message&)
    {
        log.push_back("second");
        return 22;
    }
    Handled onThrow(const Message&) { throw HostError(E_POINTER); }
    Handled onDestroy(const Message&)
    {
        log.push_back("destroy");
        return kDefault;
    }
    void onPlay(const Command& command) { log.push_back("play " + std::to_string(command.code)); }
    void onClick(const Command&) { log.push_back("click"); }
    void onRange(const Command& command) { log.push_back("range " + std::to_string(command.id)); }
    void onCommandThrow(const Command&) { throw std::runtime_error("command failed"); }
    Handled onItemChanged(NMHDR& header)
    {
        log.push_back("changed " + std::to_string(notificationAs<NMLISTVIEW>(header).iItem));
        return kDefault;
    }
    Handled onAnyCustomDraw(NMHDR& header)
    {
        log.push_back("custom draw " + std::to_string(header.idFrom));
        return CDRF_DODEFAULT;
    }
};

bool classIsRegistered()
{
    WNDCLASSEXA known{};
    known.cbSize = sizeof known;
    return GetClassInfoExA(moduleInstance(), "TesseraTestRecorder", &known) != FALSE;
}

std::vector<std::string> taken(Recorder& recorder)
{
    return std::exchange(recorder.log, {});
}

using Log = std::vector<std::string>;

} // namespace

// Any program can send WM_NCCREATE at any time, with an address of its choice in it.
TEST(Window, ACreationThatIsNotOursIsNotBelieved)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    taken(window);
    std::array<char, 256> victim{};
    CREATESTRUCTA forged{};
    forged.lpCreateParams = victim.data();
    SendMessageA(window.handle(), WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&forged));
    EXPECT_EQ(victim, (std::array<char, 256>{}));
    EXPECT_EQ(SendMessageA(window.handle(), WM_APP, 1, 0), 11);
    EXPECT_EQ(taken(window), (Log{"first"}));
}

TEST(MessageMap, RoutesMessagesInOrderUntilOneAnswers)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    EXPECT_EQ(taken(window).front(), "create");
    EXPECT_EQ(SendMessageA(window.handle(), WM_APP, 1, 0), 11);
    EXPECT_EQ(taken(window), (Log{"first"}));
    EXPECT_EQ(SendMessageA(window.handle(), WM_APP, 0, 0), 22);
    EXPECT_EQ(taken(window), (Log{"first", "second"}));
    SetWindowPos(window.handle(), nullptr, 0, 0, 123, 50, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(taken(window), (Log{"size 123"}));
    EXPECT_EQ(SendMessageA(window.handle(), WM_APP + 5, 0, 0), 0); // nobody's
}

TEST(MessageMap, RoutesCommandsByIdCodeAndRange)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    taken(window);
    const auto command = [&](UINT id, UINT code) {
        SendMessageA(window.handle(), WM_COMMAND, MAKEWPARAM(id, code), 0);
        return taken(window);
    };
    EXPECT_EQ(command(57600, 0), (Log{"play 0"}));
    EXPECT_EQ(command(57600, 5), (Log{"play 5"}));
    EXPECT_EQ(command(57601, BN_CLICKED), (Log{"click"}));
    EXPECT_EQ(command(57601, BN_DOUBLECLICKED), Log{});
    EXPECT_EQ(command(57610, 0), (Log{"range 57610"}));
    EXPECT_EQ(command(57612, 0), (Log{"range 57612"}));
    EXPECT_EQ(command(57613, 0), Log{});
}

TEST(MessageMap, RoutesNotificationsOfRealControls)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    ListView list;
    ASSERT_TRUE(list.create(window.handle(), kList, kPlace));
    list.addColumn("Column", 100);
    taken(window);
    list.addRow({"one"});
    list.select(0);
    const Log log = taken(window);
    EXPECT_NE(std::find(log.begin(), log.end(), "changed 0"), log.end());
    NMHDR header{list.handle(), 77, static_cast<UINT>(NM_CUSTOMDRAW)};
    SendMessageA(window.handle(), WM_NOTIFY, 77, reinterpret_cast<LPARAM>(&header));
    EXPECT_EQ(taken(window), (Log{"custom draw 77"}));
}

TEST(MessageMap, ErrorsEndAtTheWindowAndOnlyTheUsersOwnAreShown)
{
    FakeBoxes boxes;
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    SendMessageA(window.handle(), WM_TIMER, 1, 0);
    EXPECT_TRUE(boxes.texts.empty());
    SendMessageA(window.handle(), WM_APP + 1, 0, 0);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_NE(boxes.texts.back().find("0x80004003"), std::string::npos);
    SendMessageA(window.handle(), WM_COMMAND, 57700, 0);
    ASSERT_EQ(boxes.texts.size(), 2u);
    EXPECT_EQ(boxes.texts.back(), "command failed");
}

TEST(Window, LivesAndDiesWithItsHandle)
{
    auto parent = std::make_unique<Recorder>();
    ASSERT_TRUE(parent->create(nullptr, 0, kPlace, kHidden));
    int destroyed = 0;
    HWND again = nullptr;
    {
        Recorder child;
        child.destroyed = &destroyed;
        ASSERT_TRUE(child.create(parent->handle(), 2000, kPlace));
        EXPECT_EQ(GetDlgItem(parent->handle(), 2000), child.handle());
        const HWND handle = child.handle();
        parent->destroy(); // takes the child along
        EXPECT_FALSE(IsWindow(handle));
        EXPECT_EQ(child.handle(), nullptr);
        EXPECT_EQ(destroyed, 1);
        child.destroy(); // nothing left to do
        EXPECT_EQ(destroyed, 1);
        ASSERT_TRUE(child.create(nullptr, 0, kPlace, kHidden)); // and once more
        again = child.handle();
    }
    EXPECT_FALSE(IsWindow(again));
    parent.reset();
    EXPECT_FALSE(classIsRegistered());
}

TEST(Window, CreationThatIsRefusedLeavesNothing)
{
    {
        Recorder window;
        window.refuseCreation = true;
        EXPECT_FALSE(window.create(nullptr, 0, kPlace, kHidden));
        EXPECT_EQ(window.handle(), nullptr);
        Recorder orphan;
        EXPECT_FALSE(orphan.create(reinterpret_cast<HWND>(0x12345), 1, kPlace));
    }
    EXPECT_FALSE(classIsRegistered());
}

namespace {

// Listens to a control and may answer in its place.
template <class Base>
class ListenerOf : public Base {
public:
    explicit ListenerOf(std::string name, Log& log) : m_name(std::move(name)), m_log(log) {}
    Handled route(const Message& message) override
    {
        if (message.id != WM_APP) {
            return kDefault;
        }
        m_log.push_back(m_name);
        return message.wParam == 1 ? Handled(5) : kDefault;
    }

private:
    std::string m_name;
    Log& m_log;
};
using Listener = ListenerOf<Subclass>;
using DirectListener = ListenerOf<DirectSubclass>;

} // namespace

TEST(Subclass, TwoSitOnOneControlAndEitherMayLeave)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    Edit edit;
    ASSERT_TRUE(edit.create(window.handle(), 10, kPlace));
    Log log;
    Listener first("first", log);
    {
        Listener second("second", log);
        ASSERT_TRUE(first.attach(edit.handle()));
        ASSERT_TRUE(second.attach(edit.handle()));
        edit.send(WM_APP);
        EXPECT_EQ(std::exchange(log, {}), (Log{"second", "first"}));
        EXPECT_EQ(edit.send(WM_APP, 1), 5);
        EXPECT_EQ(std::exchange(log, {}), (Log{"second"}));
    }
    edit.send(WM_APP);
    EXPECT_EQ(log, (Log{"first"}));
    edit.destroy();
    EXPECT_EQ(first.handle(), nullptr); // the control is gone, the listener knows
    EXPECT_FALSE(first.attach(nullptr));
}

TEST(DirectSubclass, SeveralSitBelowOthersAndAnyMayLeave)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    Edit edit;
    ASSERT_TRUE(edit.create(window.handle(), 10, kPlace));
    const bool unicode = IsWindowUnicode(edit.handle()) != FALSE;
    Log log;
    Listener above("above", log);
    DirectListener first("first", log);
    EXPECT_FALSE(first.attach(nullptr));
    ASSERT_TRUE(first.attach(edit.handle()));
    EXPECT_EQ(IsWindowUnicode(edit.handle()) != FALSE, unicode);
    {
        DirectListener second("second", log);
        ASSERT_TRUE(second.attach(edit.handle()));
        ASSERT_TRUE(above.attach(edit.handle()));
        DirectListener third("third", log);
        ASSERT_TRUE(third.attach(edit.handle()));
        log.clear();
        edit.send(WM_APP);
        EXPECT_EQ(std::exchange(log, {}), (Log{"above", "third", "second", "first"}));
        second.detach();
        edit.send(WM_APP);
        EXPECT_EQ(std::exchange(log, {}), (Log{"above", "third", "first"}));
    }
    above.detach();
    EXPECT_EQ(edit.send(WM_APP, 1), 5);
    EXPECT_EQ(std::exchange(log, {}), (Log{"first"}));
    first.detach();
    edit.setText("still an edit box");
    EXPECT_EQ(edit.text(), "still an edit box");
    EXPECT_EQ(log, Log{});
    ASSERT_TRUE(first.attach(edit.handle()));
    edit.destroy(); // the listener lives longer, and knows
    EXPECT_EQ(first.handle(), nullptr);
}

namespace {

WNDPROC s_below = nullptr;

LRESULT CALLBACK skinProcedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept
{
    return CallWindowProcA(s_below, window, id, wParam, lParam);
}

} // namespace

// The host skins our controls: it sits above with a procedure and user data of its own, and may leave or
// stay until the end.
TEST(DirectSubclass, SharesItsControlWithAForeignSkin)
{
    Recorder window;
    ASSERT_TRUE(window.create(nullptr, 0, kPlace, kHidden));
    for (const bool stays : {false, true}) {
        Edit edit;
        ASSERT_TRUE(edit.create(window.handle(), 10, kPlace));
        Log log;
        DirectListener first("first", log);
        ASSERT_TRUE(first.attach(edit.handle()));
        SetWindowLongPtrA(edit.handle(), GWLP_USERDATA, 77);
        const auto put = [&](WNDPROC procedure) {
            return reinterpret_cast<WNDPROC>(
                SetWindowLongPtrA(edit.handle(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
        };
        s_below = put(skinProcedure);
        {
            DirectListener second("second", log);
            ASSERT_TRUE(second.attach(edit.handle()));
            edit.send(WM_APP);
            EXPECT_EQ(std::exchange(log, {}), (Log{"second", "first"}));
        }
        EXPECT_EQ(GetWindowLongPtrA(edit.handle(), GWLP_USERDATA), 77);
        if (!stays)
            put(s_below);
        edit.send(WM_APP);
        EXPECT_EQ(log, Log{"first"});
        edit.destroy();
        EXPECT_EQ(first.handle(), nullptr);
    }
}
