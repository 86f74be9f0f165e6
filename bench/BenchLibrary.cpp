// Figures of the library room. One argument at most: the folder for its files.

#include "Benches.h"

#include <filesystem>

using namespace tessera;
using namespace tessera::bench;

namespace {

constexpr const char* kBits = sizeof(void*) == 4 ? ", 32-bit" : "";
constexpr bool kIs32Bit = sizeof(void*) == 4;

// Before everything else, so that no memory of earlier work is used again.
void memoryRow(const std::string& file)
{
    const std::optional<double> before = privateMemory();
    Surroundings surroundings;
    OneFileHost host;
    JobContext context = surroundings.context(systemFiles());
    Database database;
    require(database.read(file, host, context, [] {}), "the load failed");
    const std::optional<double> after = privateMemory();
    if (before && after)
        report({std::string("memory of 100,000 tracks") + kBits, *after - *before, "MB", 1.0,
                kIs32Bit ? std::optional(40.0) : std::nullopt});
}

void timeRow(const char* name, const Best& best, const char* unit, std::optional<double> goal)
{
    report({std::string(name) + kBits, best.work, unit, best.bare, goal});
}

void scaleRow(const char* name, const Best& small, const Best& large)
{
    report({std::string(name) + kBits, large.ratio(), "x", small.ratio(), 1.25});
}

} // namespace

int main(int count, char** arguments)
{
    const std::filesystem::path folder = count > 1 ? arguments[1] : std::filesystem::temp_directory_path();
    const auto path = [&](const char* name) { return (folder / name).string(); };
    const std::string small = path("bench-10000.ts2");
    const std::string file = path("bench-100000.ts2");
    const std::string large = path("bench-300000.ts2");

    GeneratedLibrary(shapeOf(100000)).writeFile(file);
    memoryRow(file);
    GeneratedLibrary(shapeOf(10000)).writeFile(small);
    GeneratedLibrary(shapeOf(300000)).writeFile(large);

    // The goal of the load is for native builds; the 32-bit figure is shown.
    timeRow("load", benchLoad(file, 9), "ms", kIs32Bit ? std::nullopt : std::optional(1.5));
    timeRow("save", benchSave(file, path("bench-saved.ts2"), 7), "ms", 1.5);
    timeRow("update of one album in place", benchUpdate(file, 7), "us", 1.5);
    const BuildResult build = benchBuild(GeneratedLibrary(shapeOf(100000)), 5);
    timeRow("build without covers, outside the host", build.time, "ms", 2.0);
    report({std::string("property reads of a build") + kBits, build.readsPerTrack, "per track", 1.0, 10.0});

    scaleRow("scale of the load, 300,000 to 10,000", benchLoad(small, 25), benchLoad(large, 5));
    scaleRow("scale of the build, 300,000 to 10,000", benchBuild(GeneratedLibrary(shapeOf(10000)), 15).time,
             benchBuild(GeneratedLibrary(shapeOf(300000)), 3).time);
    for (const std::string& made : {small, file, large})
        systemFiles().remove(made);
    return 0;
}
