#pragma once

#include "GeneratedLibrary.h"
#include "Report.h"

#include <string>

namespace tessera::bench {

// A database in memory, as the program has one.
struct Loaded {
    explicit Loaded(const std::string& file)
    {
        JobContext context = surroundings.context(systemFiles());
        require(database.read(file, host, context, [] {}), "the load failed");
    }

    Surroundings surroundings;
    OneFileHost host;
    Database database;
};

// Ratios of a work to its bare work; the shown rows carry the same.
Best benchLoad(const std::string& file, int runs);
struct SaveResult {
    Best time;           // a new file, flushed and renamed; bare: the same bytes, flushed
    double writer = 0;   // the records alone, to no file
    double replaced = 0; // over a file that is checked and kept under another name
};
SaveResult benchSave(const std::string& file, const std::string& copy);
Best benchUpdate(const std::string& file, int runs); // per album, microseconds
Best benchMarks(const std::string& file, int runs);  // 1,000 albums at once

struct BuildResult {
    Best time;                // outside host calls
    double readsPerTrack = 0; // property reads through the host
};
BuildResult benchBuild(const GeneratedLibrary& library, int runs);

} // namespace tessera::bench
