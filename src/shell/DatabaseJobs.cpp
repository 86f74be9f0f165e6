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
    m_over = UiQueue::prepare([this, job, rememberedPane] { jobOver(*job, rememberedPane); });
    m_thread = Thread("Tessera database", [this, job] {
        job->run();
        m_parts.queue.post(std::move(m_over));
    });
}

void DatabaseJobs::jobOver(DatabaseJob& job, int rememberedPane)
{
    const bool untold = job.untold();
    finish(job.loaded(), job.takeKeptMarks(), rememberedPane);
    if (untold && !m_parts.terminating) {
        m_parts.prompt.message(Severity::Exclamation, "There is not enough memory.");
    }
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
