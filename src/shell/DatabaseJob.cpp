#include "shell/DatabaseJob.h"

#include "artwork/CoverSource.h"
#include "artwork/Locator.h"
#include "base/Errors.h"
#include "base/PatientFiles.h"
#include "library/LogSection.h"
#include "system/Border.h"
#include "system/ComPtr.h"

namespace tessera {

DatabaseJob::DatabaseJob(JobParts parts, DatabaseSettings settings, bool creating, std::unique_ptr<Log> log)
    : m_parts(parts), m_settings(std::move(settings)), m_creating(creating), m_log(std::move(log))
{
}

void DatabaseJob::run() noexcept
{
    m_loaded = quietBorder(false, [&] {
        try {
            return perform();
        } catch (...) {
            report();
            return false;
        }
    });
    if (!m_loaded) {
        quietBorder(0, [&] {
            emptyLibrary();
            return 0;
        });
    }
    m_old.clear(); // where it could not be emptied in order
}

bool DatabaseJob::perform()
{
    const ComInit com;
    freeOld();
    JobContext context{systemFiles(), *m_log, m_parts.prompt, m_parts.terminating};
    if (m_creating) {
        if (!createFile(context)) {
            return false;
        }
        emptyLibrary(); // what was built is read back from the file
        lookForMarks();
    }
    return loadFile(context);
}

bool DatabaseJob::createFile(JobContext& context)
{
    context.log.startTimer();
    context.log.line("Creating Database");
    const LogLevel level(context.log);
    const auto artwork = [this](Library& library, JobContext& job) { return locateArtwork(library, job); };
    if (!m_parts.database.build(m_parts.host, m_settings, artwork, context)) {
        return false;
    }
    context.log.line("Finished");
    return true;
}

bool DatabaseJob::loadFile(JobContext& context)
{
    context.log.startTimer();
    context.log.line("Loading Database");
    if (!m_parts.database.read(m_settings.lastUsed, m_parts.host, context, [this] { fillViews(); })) {
        return false;
    }
    context.log.line("Finished");
    return true;
}

std::int32_t DatabaseJob::locateArtwork(Library& library, JobContext& context) const
{
    const auto isPicture = [](const std::string& path) { return readCoverFile(path).has_value(); };
    return locateAllArtwork(library, m_parts.tokens, m_settings.artworkDirectories, isPicture, context);
}

// A request owns the job, and with it the log, for the time that nobody waits for it any more.
// Behind each turn the user's messages, paint and timers are handled: they come last in the queue.
void DatabaseJob::fillViews()
{
    constexpr DWORD kPause = 5; // milliseconds
    const auto more = std::make_shared<bool>(true);
    const auto turn = [&](auto work) {
        if (!m_parts.queue.ask([job = shared_from_this(), work] { work(*job); })) {
            throw Cancelled();
        }
        Sleep(kPause);
    };
    turn([](DatabaseJob& job) { job.m_parts.views.beginFill(*job.m_log); });
    while (*more) {
        turn([more](DatabaseJob& job) { *more = job.m_parts.views.stepFill(); });
    }
}

void DatabaseJob::emptyLibrary()
{
    if (!m_parts.queue.ask([job = shared_from_this()] { job->m_old = job->m_parts.views.emptyLibrary(); })) {
        throw Cancelled();
    }
    freeOld();
}

// Without memory for it there is no offer; the marks are still there.
void DatabaseJob::lookForMarks()
{
    try {
        PatientFiles files(systemFiles(), m_parts.terminating);
        m_kept = keptMarks(m_settings.lastUsed, files, m_parts.terminating);
    } catch (const std::bad_alloc&) {
        m_kept.clear();
    }
}

// On this thread, so that the user interface does not wait for it; the file objects that came with
// the records are the other thread's to release.
void DatabaseJob::freeOld()
{
    if (m_old.empty()) {
        return;
    }
    m_old.clear();
    m_parts.queue.post([job = shared_from_this()] { job->m_parts.views.releaseFiles(); });
}

void DatabaseJob::report() noexcept
{
    const std::string text = caughtMessage();
    if (text.empty()) {
        return;
    }
    m_untold = quietBorder(true, [&] {
        m_parts.prompt.message(Severity::Exclamation, text);
        return false;
    });
}

} // namespace tessera
