#include "shell/UiQueue.h"

#include <array>
#include <exception>

namespace tessera {

namespace {

constexpr UINT kTaskMessage = WM_APP + 1;
// Looks for tasks whose message was lost: a thread's queue takes no more than a number of messages.
constexpr UINT_PTR kLostTimer = 1;
constexpr UINT kLostInterval = 250; // milliseconds

struct Request {
    UiQueue::Task task;
    std::exception_ptr failure;
    Event done;
};

class DepthScope {
public:
    explicit DepthScope(int& depth) : m_depth(depth) { ++m_depth; }
    ~DepthScope() { --m_depth; }
    DepthScope(const DepthScope&) = delete;
    DepthScope& operator=(const DepthScope&) = delete;

private:
    int& m_depth;
};

void perform(Request& request)
{
    try {
        request.task();
    } catch (...) {
        request.failure = std::current_exception();
    }
    request.task = nullptr;
    request.done.set();
}

} // namespace

std::span<const MapEntry<UiQueue>> UiQueue::messageMap()
{
    static constexpr std::array<MapEntry<UiQueue>, 2> kMap{
        {{kTaskMessage, &UiQueue::onTask}, {WM_TIMER, &UiQueue::onTask}}};
    return kMap;
}

UiQueue::~UiQueue()
{
    close();
    destroy();
}

void UiQueue::open()
{
    if (!create(HWND_MESSAGE, 0, {}, {0, 0}) || !SetTimer(handle(), kLostTimer, kLostInterval, nullptr)) {
        throw std::bad_alloc();
    }
}

UiQueue::Prepared UiQueue::prepare(Task task)
{
    Prepared prepared;
    prepared.push_back(std::move(task));
    return prepared;
}

void UiQueue::post(Prepared task) noexcept
{
    const ScopedLock lock(m_lock);
    if (m_closed) {
        return;
    }
    m_tasks.splice(m_tasks.end(), task);
    PostMessageA(handle(), kTaskMessage, 0, 0);
}

bool UiQueue::ask(Task task)
{
    const auto request = std::make_shared<Request>();
    request->task = std::move(task);
    post([request] { perform(*request); });
    const std::array<HANDLE, 2> handles{request->done.handle(), m_closing.handle()};
    WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE, INFINITE);
    if (!request->done.isSet()) {
        return false;
    }
    if (request->failure) {
        std::rethrow_exception(request->failure);
    }
    return true;
}

void UiQueue::close()
{
    std::list<Task> dropped;
    {
        const ScopedLock lock(m_lock);
        m_closed = true;
        dropped.swap(m_tasks);
    }
    m_closing.set();
}

UiQueue::Task UiQueue::takeNext()
{
    const ScopedLock lock(m_lock);
    if (m_tasks.empty()) {
        return {};
    }
    Task task = std::move(m_tasks.front());
    m_tasks.pop_front();
    return task;
}

Handled UiQueue::onTask(const Message&)
{
    const DepthScope scope(m_depth);
    if (const Task task = takeNext()) {
        task();
    }
    return 0;
}

} // namespace tessera
