#include "system/Threads.h"

#include "base/Text.h"
#include "system/Border.h"
#include "system/Variant.h"

#include <algorithm>
#include <exception>
#include <new>
#include <process.h>

namespace tessera {

Event::Event() : m_handle(CreateEventA(nullptr, TRUE, FALSE, nullptr))
{
    if (!m_handle) {
        throw std::bad_alloc();
    }
}

bool Event::wait(DWORD milliseconds) const
{
    return WaitForSingleObject(m_handle.get(), milliseconds) == WAIT_OBJECT_0;
}

namespace {

// The window by which COM hands this thread the calls of other threads; null without COM.
HWND comWindow()
{
    HWND window = nullptr;
    do {
        window = FindWindowExA(HWND_MESSAGE, window, "OleMainThreadWndClass", nullptr);
    } while (window && GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId());
    return window;
}

// The quit message comes whatever window is asked for once nothing else is posted, and would be
// gone with the wait: it is posted again behind it.
class QuitKeeper {
public:
    QuitKeeper() = default;
    ~QuitKeeper()
    {
        if (m_met) {
            PostQuitMessage(m_code);
        }
    }
    QuitKeeper(const QuitKeeper&) = delete;
    QuitKeeper& operator=(const QuitKeeper&) = delete;

    bool keep(const MSG& message)
    {
        if (message.message != WM_QUIT) {
            return false;
        }
        m_met = true;
        m_code = static_cast<int>(message.wParam);
        return true;
    }

private:
    bool m_met = false;
    int m_code = 0;
};

void answerCalls(QuitKeeper& quit)
{
    MSG message; // looking at the queue is what delivers sent messages
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    const HWND window = comWindow();
    while (window && PeekMessageA(&message, window, 0, 0, PM_REMOVE)) {
        if (!quit.keep(message)) {
            DispatchMessageA(&message);
        }
    }
}

} // namespace

bool waitAnsweringSentMessages(HANDLE handle, DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    QuitKeeper quit;
    answerCalls(quit); // what came before the wait wakes nobody
    for (;;) {
        const DWORD passed = GetTickCount() - start;
        const DWORD left =
            milliseconds == INFINITE ? INFINITE : milliseconds - std::min(passed, milliseconds);
        const DWORD answer =
            MsgWaitForMultipleObjects(1, &handle, FALSE, left, QS_SENDMESSAGE | QS_POSTMESSAGE);
        if (answer != WAIT_OBJECT_0 + 1) {
            return answer == WAIT_OBJECT_0;
        }
        answerCalls(quit);
    }
}

namespace {

struct Start {
    std::string name;
    std::function<void()> work;
};

// Null where the system is too old for the function.
template <class Function>
Function kernelFunction(const char* name)
{
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), name)));
}

void nameThisThread(const std::string& name)
{
    using SetDescription = HRESULT(WINAPI*)(HANDLE, PCWSTR);
    if (const auto set = kernelFunction<SetDescription>("SetThreadDescription")) {
        set(GetCurrentThread(), systemWide(toWide(name)));
    }
}

// "There is no disk in the drive" would wait for the user, and with it the plug-in's end. The mode of the
// whole process is the host's.
void keepDriveBoxesAway()
{
    using SetErrorMode = BOOL(WINAPI*)(DWORD, DWORD*);
    if (const auto set = kernelFunction<SetErrorMode>("SetThreadErrorMode")) {
        set(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
    }
}

// As much as most programs reserve. By default it is the host's choice, and some systems commit all of it.
constexpr unsigned kStackSize = 1024 * 1024;

// The runtime takes memory for a thread's exceptions at its first one, and ends the process when there is
// none: when that first one says that memory is short.
void prepareExceptions()
{
    (void)std::uncaught_exceptions();
}

unsigned __stdcall runThread(void* argument) noexcept
{
    prepareExceptions();
    threadBorder([argument] {
        const std::unique_ptr<Start> start(static_cast<Start*>(argument));
        quietBorder(0, [&] { return nameThisThread(start->name), 0; }); // the work is done without a name
        keepDriveBoxesAway();
        start->work();
    });
    return 0;
}

} // namespace

Thread::Thread(const std::string& name, std::function<void()> work)
{
    auto start = std::make_unique<Start>(Start{name, std::move(work)});
    unsigned id = 0;
    m_handle.reset(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, kStackSize, &runThread, start.get(),
                                                           STACK_SIZE_PARAM_IS_A_RESERVATION, &id)));
    if (!m_handle) {
        throw std::bad_alloc();
    }
    (void)start.release(); // the thread's from here
    m_id = id;
}

Thread& Thread::operator=(Thread&& other) noexcept
{
    if (this != &other) {
        join();
        m_handle = std::move(other.m_handle);
        m_id = std::exchange(other.m_id, 0);
    }
    return *this;
}

bool Thread::running() const
{
    return m_handle && WaitForSingleObject(m_handle.get(), 0) == WAIT_TIMEOUT;
}

bool Thread::waitAnsweringSentMessages(DWORD milliseconds) const
{
    return !m_handle || tessera::waitAnsweringSentMessages(m_handle.get(), milliseconds);
}

void Thread::join()
{
    waitAnsweringSentMessages();
    m_handle.reset();
}

} // namespace tessera
