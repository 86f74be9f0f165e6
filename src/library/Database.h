#pragma once

#include "base/Errors.h"
#include "base/Files.h"
#include "library/Records.h"
#include "ports/Host.h"
#include "ports/Log.h"
#include "ports/Prompt.h"
#include "settings/Settings.h"

#include <atomic>
#include <functional>
#include <span>
#include <string>
#include <utility>

namespace tessera {

// What a long step needs of its surroundings. `terminating` is looked at in every loop; a step
// that finds it set throws Cancelled.
struct JobContext {
    FileSystem& files;
    Log& log;
    Prompt& prompt;
    const std::atomic<bool>& terminating;

    void stopIfTerminating() const
    {
        if (terminating)
            throw Cancelled();
    }
};

// Finds artwork for every album of the library and answers the count that the build reports.
using ArtworkPass = std::function<std::int32_t(Library&, JobContext&)>;

// The album database: the three collections, and the file that holds them. One thread at a time.
class Database {
public:
    Library& library() { return m_library; }
    const Library& library() const { return m_library; }
    // Bit 0: the file has an image section. Outlives a read, as the next write's flags.
    std::uint32_t flags() const { return m_flags; }
    void clear() { m_library.clear(); }
    // Leaves an empty library; the caller frees the records.
    Library takeLibrary() { return std::exchange(m_library, {}); }

    // Whole database to a file of this name, by way of a temporary file beside it; the previous
    // file stays as NAME.bak when it was a sound one. False when a message has said why not; the
    // previous file is then as it was. Cancelled and std::bad_alloc pass through, likewise.
    bool write(const std::string& fileName, JobContext& context);

    // Whole database from a file. The library must be empty. `afterLinks` runs once the records are
    // linked and the file's bytes are let go: it reloads the first names, writes the line "Loading
    // treeview" itself, and fills the views. False when a message or an assertion has said why not;
    // records read so far stay for the caller to clear. HostError, Cancelled and std::bad_alloc pass
    // through, the log tidy.
    bool read(const std::string& fileName, Host& host, JobContext& context,
              const std::function<void()>& afterLinks);

    // Rewrites the settings of changed albums in place and rebuilds their column texts. When one of
    // the records in the file is not the album's, a message says so and nothing is written.
    void update(const std::string& fileName, std::span<Album* const> changed, FileSystem& files,
                Prompt& prompt);

    // From the host's library to a written file named `settings.lastUsed`. The library must be
    // empty. False when the build failed; the message has been shown. HostError, Cancelled and
    // std::bad_alloc pass through; the library is then the caller's to clear.
    bool build(Host& host, const DatabaseSettings& settings, const ArtworkPass& artwork, JobContext& context);

private:
    Library m_library;
    std::uint32_t m_flags = 0;
};

} // namespace tessera
