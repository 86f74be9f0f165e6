#pragma once

#include "base/Files.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace tessera {

// What new databases replaced is kept beside them: the last one as NAME.bak, and earlier ones whose marks
// are in no later one as NAME.2.bak, NAME.3.bak and so on.

// A kept database that holds marks, and of how many albums.
struct KeptMarks {
    std::string fileName;
    std::size_t albums = 0;
};

// Those that hold marks, the earliest first. Cancelled passes through.
std::vector<KeptMarks> keptMarks(const std::string& fileName, FileSystem& files,
                                 const std::atomic<bool>& terminating);

std::string previousDatabase(const std::string& fileName);
// A name under which a new one is written, NAME.01234567.tmp; another one each time.
std::string temporaryDatabase(const std::string& fileName);
// The files of such names that hold (the beginning of) a database, or nothing: a crash left them, or the
// end of a build that could not take the name.
std::vector<std::string> leftDatabases(const std::string& fileName, FileSystem& files);

// What becomes of a file when a new one takes its place.
struct Replacement {
    std::string previous;  // the name that it gets; empty: it goes
    std::string earlier;   // the name that the holder of that name gets first; empty: that one goes
    std::string spare;     // another name for it, when one of these cannot be given
    bool mustStay = false; // rather no new file than none of these names
    std::vector<std::string> superseded; // kept and left ones that go when it has its name
};

// Only what is unsound goes: what cannot be read just now may hold marks. What holds marks is not pushed
// out by what holds none, nor by what lacks a marked album of it or more than a tenth of its marks; where
// no name is free for it, the new file does not take its place. Cancelled passes through.
// `written` is the new one's name until then.
Replacement planReplacement(const std::string& fileName, const std::string& written, FileSystem& files,
                            const std::atomic<bool>& terminating);

} // namespace tessera
