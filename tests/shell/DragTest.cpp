// The plug-in ends while the user drags albums out of it, the button still down.

#include "MarksFixture.h"

#include "support/DropTarget.h"

#include <ole2.h>
#include <thread>

namespace tessera {
namespace {

// Drags from one place to another, and lets the button go when it is told to, or after three seconds.
class Hand {
public:
    Hand(POINT from, POINT to)
        : m_thread([this, from, to] {
              step(from, MOUSEEVENTF_LEFTDOWN);
              for (int part = 1; part <= 8; ++part)
                  step({from.x + (to.x - from.x) * part / 8, from.y + (to.y - from.y) * part / 8},
                       MOUSEEVENTF_MOVE);
              letGo.wait(3000);
              holds = false;
              step(to, MOUSEEVENTF_LEFTUP);
          })
    {
    }
    ~Hand()
    {
        letGo.set();
        m_thread.join();
    }
    Hand(const Hand&) = delete;
    Hand& operator=(const Hand&) = delete;

    Event letGo;
    std::atomic<bool> holds{true};

private:
    static void step(POINT place, DWORD button)
    {
        SetCursorPos(static_cast<int>(place.x), static_cast<int>(place.y));
        mouse_event(MOUSEEVENTF_MOVE, 1, 0, 0, 0);
        mouse_event(button, 0, 0, 0, 0);
        Sleep(60);
    }

    std::thread m_thread;
};

std::function<void()> g_onTick;

void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_onTick)
        g_onTick();
}

enum class Moment { InTheLoop, OverATarget, InTheDrop };

class DragTest : public MarksTest {
protected:
    void endAt(Moment moment)
    {
        start();
        plugin->container.resize(800, 400);
        const HWND below = CreateWindowExA(0, "LISTBOX", "", WS_CHILD | WS_VISIBLE, 0, 400, 800, 200,
                                           plugin->container.frame(), nullptr, nullptr, nullptr);
        test::DropTarget target;
        ASSERT_EQ(RegisterDragDrop(below, &target), S_OK);
        chooseRows({"Album 2"});
        const auto end = [&] {
            plugin->stop();
            plugin->container.drop();
            plugin->control.reset();
            plugin->container.pumpFor(60); // time for what frees the controller
            EXPECT_FALSE(plugin->module.canUnload()) << "the drag is below on the stack";
        };
        RECT row{LVIR_BOUNDS, 0, 0, 0};
        SendMessageA(list().handle(), LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&row));
        POINT from{row.left + 60, (row.top + row.bottom) / 2};
        ClientToScreen(list().handle(), &from);
        POINT to{400, 500};
        ClientToScreen(plugin->container.frame(), &to);
        SetForegroundWindow(plugin->container.frame());
        settle();
        {
            Hand hand(from, to);
            (moment == Moment::InTheDrop ? target.onDrop : target.onOver) = end;
            if (moment == Moment::InTheLoop) {
                target.onOver = [&] { g_onTick = [&] { std::exchange(g_onTick, nullptr), end(); }; };
            }
            if (moment == Moment::InTheDrop)
                target.onOver = [&] { hand.letGo.set(); };
            const UINT_PTR timer = SetTimer(nullptr, 0, 20, &tick);
            EXPECT_TRUE(plugin->container.pump([&] { return target.over; }, 5000));
            KillTimer(nullptr, timer);
            EXPECT_EQ(hand.holds, moment != Moment::InTheDrop) << "the end cancels the drag";
        }
        ASSERT_TRUE(target.data);
        plugin->container.pumpFor(100);
        EXPECT_EQ(target.files().size(), 5u);
        EXPECT_FALSE(plugin->module.canUnload()) << "the target holds what was dragged";
        target.data.reset();
        EXPECT_TRUE(plugin->module.canUnload());
        EXPECT_EQ(plugin->script->live, 1);
        EXPECT_FALSE(GetCapture());
        RevokeDragDrop(below);
        plugin.reset();
    }

    OleInit ole;
};

TEST_F(DragTest, IsCancelledByTheEndAndKeepsTheModuleAsLongAsItLasts)
{
    for (const Moment moment : {Moment::InTheLoop, Moment::OverATarget, Moment::InTheDrop}) {
        SCOPED_TRACE(static_cast<int>(moment));
        endAt(moment);
    }
}

} // namespace
} // namespace tessera
