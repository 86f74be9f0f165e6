#pragma once

#include "library/Database.h"
#include "library/KeptDatabases.h"
#include "ports/Log.h"
#include "shell/UiQueue.h"
#include "tokens/TokenParser.h"

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace tessera {

// What a job does to the rest of the plug-in; every call comes on the user-interface thread.
class JobViews {
public:
    virtual ~JobViews() = default;
    // Panes first, then the records, which are left to the caller: freeing many takes a while.
    virtual Library emptyLibrary() = 0;
    // The host's file objects that other threads have let go of.
    virtual void releaseFiles() = 0;
    // First names, then trees and lists from the records that were read, in turns: `stepFill` until
    // it answers false. The log lives as long.
    virtual void beginFill(Log& log) = 0;
    virtual bool stepFill() = 0;
    // The log comes to the front; a creating job disables the control's window.
    virtual void jobStarts(bool creating) = 0;
    // The window is enabled again, and after a load the remembered pane comes back. After a create the
    // kept databases that hold marks are told.
    virtual void jobEnded(bool loaded, std::vector<KeptMarks> kept, int rememberedPane) = 0;
};

// What a job works with; outlives the job's thread.
struct JobParts {
    Database& database;
    Host& host;
    Prompt& prompt;
    UiQueue& queue;
    JobViews& views;
    const TokenParser& tokens;
    const std::atomic<bool>& terminating;
};

// Creates (when asked to) and loads one database, on a thread of its own.
class DatabaseJob : public std::enable_shared_from_this<DatabaseJob> {
public:
    DatabaseJob(JobParts parts, DatabaseSettings settings, bool creating, std::unique_ptr<Log> log);

    bool creating() const { return m_creating; }
    // Records that nobody uses any more; the job frees them before anything else.
    void take(Library old) { m_old = std::move(old); }
    // The whole job. Says itself what went wrong and leaves no records behind then. Throws nothing.
    void run() noexcept;
    // After it: whether a database is loaded, and whether memory was too short to say why not.
    bool loaded() const { return m_loaded; }
    bool untold() const { return m_untold; }
    // After a create: what it left of earlier marks.
    std::vector<KeptMarks> takeKeptMarks() { return std::move(m_kept); }

private:
    bool perform();
    bool createFile(JobContext& context);
    bool loadFile(JobContext& context);
    std::int32_t locateArtwork(Library& library, JobContext& context) const;
    void fillViews();
    void emptyLibrary();
    void lookForMarks();
    void freeOld();
    void report() noexcept;

    JobParts m_parts;
    DatabaseSettings m_settings;
    bool m_creating;
    std::unique_ptr<Log> m_log;
    Library m_old;
    bool m_loaded = false;
    bool m_untold = false;
    std::vector<KeptMarks> m_kept;
};

} // namespace tessera
