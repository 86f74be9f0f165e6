#pragma once

#include "system/Threads.h"
#include "windowing/Window.h"

#include <functional>
#include <list>
#include <memory>

namespace tessera {

// Work for the user-interface thread, done one piece a message. Made and closed on that thread.
class UiQueue final : public Mapped<UiQueue> {
public:
    using Task = std::function<void()>;
    // A task with all that posting it needs.
    using Prepared = std::list<Task>;
    static std::span<const MapEntry<UiQueue>> messageMap();

    UiQueue() = default;
    ~UiQueue() override;

    // Throws std::bad_alloc when the system refuses.
    void open();
    // Any thread. What comes after `close` is dropped.
    void post(Task task) { post(prepare(std::move(task))); }
    // Where a task must not be lost for want of memory.
    static Prepared prepare(Task task);
    void post(Prepared task) noexcept;
    // From another thread: does the task over there and waits until it is done; what it throws is
    // thrown here. False when the queue was closed before or meanwhile: the task has not been done,
    // or nobody waits for its end any more. Tasks therefore own what they use.
    bool ask(Task task);
    // Drops what waits and lets every asker go.
    void close();
    // True while a task is being done.
    bool working() const { return m_depth > 0; }

private:
    WindowClass windowClass() const override { return {.name = "TesseraQueue"}; }
    Handled onTask(const Message& message);
    Task takeNext();

    CriticalSection m_lock; // guards the two below
    std::list<Task> m_tasks;
    bool m_closed = false;
    Event m_closing;
    int m_depth = 0; // user-interface thread only
};

} // namespace tessera
