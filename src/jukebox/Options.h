#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tessera::jukebox {

// What the command line asks for.
struct Options {
    std::wstring library;
    bool skin = false;
    std::optional<std::wstring> walk; // folder for what the walk writes
    std::wstring database;            // of the new database; empty: what the wizard proposes
    std::wstring open;                // an existing database, instead of a new one
    std::wstring checkMarks;          // what an earlier walk marked: read back instead of walking; `open` is
                                      // opened when the plug-in opens nothing by itself
};

inline constexpr const char* kUsage =
    "Usage: jukebox --library LIBRARY.tsv [--skin]\n"
    "               [--walk FOLDER [--database FILE.ts2 | [--check-marks FILE.tsv] [--open FILE.ts2]]]\n";

// None when the arguments make no sense; `problem` says why.
std::optional<Options> parseOptions(const std::vector<std::wstring>& arguments, std::string& problem);

} // namespace tessera::jukebox
