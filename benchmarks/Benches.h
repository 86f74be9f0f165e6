#pragma once

#include "GeneratedLibrary.h"
#include "Report.h"

#include <string>

namespace tessera::bench {

// Ratios of a work to its bare work; the shown rows carry the same.
Best benchLoad(const std::string& file, int runs);
Best benchSave(const std::string& file, const std::string& copy, int runs);
Best benchUpdate(const std::string& file, int runs); // per album, microseconds

struct BuildResult {
    Best time;                // outside host calls
    double readsPerTrack = 0; // property reads through the host
};
BuildResult benchBuild(const GeneratedLibrary& library, int runs);

} // namespace tessera::bench
