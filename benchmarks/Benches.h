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
Best benchSave(const std::string& file, const std::string& copy, int runs);
Best benchUpdate(const std::string& file, int runs); // per album, microseconds
Best benchMarks(const std::string& file, int runs);  // 1,000 albums at once

struct BuildResult {
    Best time;                // outside host calls
    double readsPerTrack = 0; // property reads through the host
};
BuildResult benchBuild(const GeneratedLibrary& library, int runs);

} // namespace tessera::bench
