#pragma once

#include "shell/DatabaseJob.h"
#include "system/Threads.h"
#include "ui/ActivityLog.h"

#include <atomic>
#include <memory>

namespace tessera {

// Runs create-and-load jobs, one at a time, each on its own thread. User-interface thread only,
// except `busy`.
class DatabaseJobs {
public:
    DatabaseJobs(JobParts parts, ActivityLog& log) : m_parts(parts), m_log(log) {}
    ~DatabaseJobs() { stop(); }
    DatabaseJobs(const DatabaseJobs&) = delete;
    DatabaseJobs& operator=(const DatabaseJobs&) = delete;

    // Any thread.
    bool busy() const { return m_busy; }
    // Does nothing while one runs. The pane is the one to come back to after a load.
    void start(const DatabaseSettings& settings, bool creating, int rememberedPane);
    // Waits for the thread, answering what other threads send meanwhile; the terminating flag is
    // set and the queue closed.
    void stop();

private:
    void launch(const DatabaseSettings& settings, bool creating, int rememberedPane);
    void jobOver(DatabaseJob& job, int rememberedPane);
    void finish(bool loaded, std::vector<KeptMarks> kept, int rememberedPane);

    JobParts m_parts;
    ActivityLog& m_log;
    std::atomic<bool> m_busy{false};
    UiQueue::Prepared m_over; // what the worker posts last
    Thread m_thread;
};

} // namespace tessera
