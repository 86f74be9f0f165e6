#include "shell/DatabaseJob.h"

#include "artwork/Decoder.h"
#include "artwork/Locator.h"
#include "base/Errors.h"
#include "system/Border.h"
#include "system/ComPtr.h"

namespace tessera {

DatabaseJob::DatabaseJob(JobParts parts, DatabaseSettings settings, bool creating, std::unique_ptr<Log> log)
    : m_parts(parts), m_settings(std::move(settings)), m_creating(creating), m_log(std::move(log))
{
}

bool DatabaseJob::run() noexcept
{
    const bool loaded = quietBorder(false, [&] {
        try {
            return perform();
        } catch (...) {
            report();
            return false;
        }
    });
    if (!loaded) {
        leaveLog();
        quietBorder(0, [&] {
            emptyLibrary();
            return 0;
        });
    }
    return loaded;
}

// Back at the left edge, however deep the failed step was.
void DatabaseJob::leaveLog()
{
    constexpr int kDeepest = 4;
    for (int level = 0; level < kDeepest; ++level) {
        m_log->outdent();
    }
}

bool DatabaseJob::perform()
{
    const ComInit com;
    JobContext context{systemFiles(), *m_log, m_parts.prompt, m_parts.terminating};
    if (m_creating) {
        if (!createFile(context)) {
            return false;
        }
        emptyLibrary(); // what was built is read back from the file
    }
    return loadFile(context);
}

bool DatabaseJob::createFile(JobContext& context)
{
    context.log.startTimer();
    context.log.line("Creating Database");
    context.log.indent();
    const auto artwork = [this](Library& library, JobContext& job) { return locateArtwork(library, job); };
    if (!m_parts.database.build(m_parts.host, m_settings, artwork, context)) {
        return false;
    }
    context.log.line("Finished");
    context.log.outdent();
    return true;
}

bool DatabaseJob::loadFile(JobContext& context)
{
    context.log.startTimer();
    context.log.line("Loading Database");
    context.log.indent();
    if (!m_parts.database.read(m_settings.lastUsed, m_parts.host, context, [this] { fillViews(); })) {
        return false;
    }
    context.log.line("Finished");
    context.log.outdent();
    return true;
}

std::int32_t DatabaseJob::locateArtwork(Library& library, JobContext& context) const
{
    return locateAllArtwork(library, m_parts.tokens, m_settings.artworkDirectories, isPictureFile, context);
}

// A request owns the job, and with it the log, for the time that nobody waits for it any more.
// Between the turns the user's messages and timers are handled.
void DatabaseJob::fillViews()
{
    const auto more = std::make_shared<bool>(true);
    bool answered =
        m_parts.queue.ask([job = shared_from_this()] { job->m_parts.views.beginFill(*job->m_log); });
    while (answered && *more) {
        Sleep(1);
        answered =
            m_parts.queue.ask([job = shared_from_this(), more] { *more = job->m_parts.views.stepFill(); });
    }
    if (!answered) {
        throw Cancelled();
    }
}

void DatabaseJob::emptyLibrary()
{
    if (!m_parts.queue.ask([job = shared_from_this()] { job->m_parts.views.emptyLibrary(); })) {
        throw Cancelled();
    }
}

void DatabaseJob::report() noexcept
{
    const std::string text = caughtMessage();
    if (text.empty()) {
        return;
    }
    quietBorder(0, [&] {
        m_parts.prompt.message(Severity::Exclamation, text);
        return 0;
    });
}

} // namespace tessera
