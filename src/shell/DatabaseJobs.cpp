#include "shell/DatabaseJobs.h"

namespace tessera {

void DatabaseJobs::start(const DatabaseSettings& settings, bool creating, int rememberedPane)
{
    if (m_busy.exchange(true)) {
        return;
    }
    try {
        launch(settings, creating, rememberedPane);
    } catch (...) {
        finish(false, {}, rememberedPane);
        throw;
    }
}

void DatabaseJobs::launch(const DatabaseSettings& settings, bool creating, int rememberedPane)
{
    m_parts.views.jobStarts(creating);
    const auto job = std::make_shared<DatabaseJob>(m_parts, settings, creating, m_log.newJob());
    job->take(m_parts.views.emptyLibrary());
    m_thread = Thread("Tessera database", [this, job, rememberedPane] {
        const bool loaded = job->run();
        m_parts.queue.post([=, this] { finish(loaded, job->takeKeptMarks(), rememberedPane); });
    });
}

void DatabaseJobs::finish(bool loaded, std::vector<KeptMarks> kept, int rememberedPane)
{
    stop();
    m_busy = false;
    m_parts.views.jobEnded(loaded, std::move(kept), rememberedPane);
}

void DatabaseJobs::stop()
{
    m_thread.join();
}

} // namespace tessera
