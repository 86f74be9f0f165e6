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
#include <vector>

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
    void clear();
    // Leaves an empty library; the caller frees the records.
    Library takeLibrary();

    // Whole database to a file of this name, by way of a temporary file beside it; the previous
    // file and its marks are kept (planReplacement). False when a message has said why not; the
    // previous file is then as it was. Cancelled and std::bad_alloc pass through, likewise.
    bool write(const std::string& fileName, JobContext& context);

    // Whole database from a file. The library must be empty. `afterLinks` runs once the records are
    // linked and the file's bytes are let go: it reloads the first names, writes the line "Loading
    // treeview" itself, and fills the views. False when a message or an assertion has said why not;
    // records read so far stay for the caller to clear. HostError, Cancelled and std::bad_alloc pass
    // through, the log tidy.
    bool read(const std::string& fileName, Host& host, JobContext& context,
              const std::function<void()>& afterLinks);

    // Rewrites the records of changed albums, and of those that could not be written before, in place
    // in the file that was read, and rebuilds their column texts. False when a message has said why
    // not: they stay unsaved, and the next update writes them too. When the file or one of the
    // records in it is another than was read, nothing is written.
    bool update(const std::string& fileName, std::span<Album* const> changed, FileSystem& files,
                Prompt& prompt);
    // Albums whose changes are in memory only.
    std::size_t unsavedAlbums() const { return m_unsaved.size(); }
    // Before the library goes: tries once more to write what is unsaved. False when a message has
    // said how many albums' changes are lost.
    bool saveUnsaved(const std::string& fileName, FileSystem& files, Prompt& prompt);

    // From the host's library to a written file named `settings.lastUsed`. The library must be
    // empty. False when the build failed; the message has been shown. HostError, Cancelled and
    // std::bad_alloc pass through; the library is then the caller's to clear.
    bool build(Host& host, const DatabaseSettings& settings, const ArtworkPass& artwork, JobContext& context);

private:
    void addUnsaved(std::span<Album* const> changed);
    const char* writeUnsaved(const std::string& fileName, FileSystem& files);

    Library m_library;
    std::uint32_t m_flags = 0;
    std::uint64_t m_fileSize = 0;  // when it was read
    std::vector<Album*> m_unsaved; // ascending ids, and so in the order of the file
};

// "The changes of 3 albums could not be saved and are lost!"
std::string lostChangesText(std::size_t albums);

} // namespace tessera
