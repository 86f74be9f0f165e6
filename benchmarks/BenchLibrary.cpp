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
        report({std::string("memory of 100,000 tracks") + kBits, *after - *before, "MB", std::nullopt,
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

struct Files {
    std::string small;
    std::string middle;
    std::string large;
    std::string saved;
};

void loadRows(const Files& files)
{
    // The goal is for native builds; the 32-bit figure is shown.
    timeRow("load", benchLoad(files.middle, 10), "ms", kIs32Bit ? std::nullopt : std::optional(1.5));
    scaleRow("scale of the load, 300,000 to 10,000", benchLoad(files.small, 30), benchLoad(files.large, 4));
}

void saveRows(const Files& files)
{
    const SaveResult save = benchSave(files.middle, files.saved);
    timeRow("save to a new file", save.time, "ms", 1.5);
    report({std::string("  the records alone, to no file") + kBits, save.writer, "ms"});
    report({std::string("  over a file, which is checked and kept") + kBits, save.replaced, "ms"});
    timeRow("update of one album in place", benchUpdate(files.middle, 8), "us", 1.5);
    timeRow("marking 1,000 albums, written to disk", benchMarks(files.middle, 20), "ms", 1.5);
}

void buildRows(const Files&)
{
    const BuildResult build = benchBuild(GeneratedLibrary(shapeOf(100000)), 3);
    timeRow("build without covers, outside the host", build.time, "ms", 2.0);
    report({std::string("property reads of a build") + kBits, build.readsPerTrack, "per track", std::nullopt,
            10.0});
    scaleRow("scale of the build, 300,000 to 10,000", benchBuild(GeneratedLibrary(shapeOf(10000)), 10).time,
             benchBuild(GeneratedLibrary(shapeOf(300000)), 2).time);
}

constexpr struct {
    std::string_view name;
    void (*rows)(const Files&);
} kParts[] = {{"load", loadRows}, {"save", saveRows}, {"build", buildRows}};

} // namespace

// bench_library [FOLDER [PART]]: all parts, or one of load, save and build.
int main(int count, char** arguments)
{
    const std::filesystem::path folder =
        count > 1 ? std::filesystem::path(arguments[1]) : std::filesystem::temp_directory_path();
    const std::string_view only = count > 2 ? arguments[2] : "";
    const auto path = [&](const char* name) { return (folder / name).string(); };
    const Files files{path("bench-10000.ts2"), path("bench-100000.ts2"), path("bench-300000.ts2"),
                      path("bench-saved.ts2")};

    GeneratedLibrary(shapeOf(100000)).writeFile(files.middle);
    if (only.empty())
        memoryRow(files.middle);
    GeneratedLibrary(shapeOf(10000)).writeFile(files.small);
    GeneratedLibrary(shapeOf(300000)).writeFile(files.large);
    for (const auto& part : kParts) {
        if (only.empty() || only == part.name)
            part.rows(files);
    }
    for (const std::string& made : {files.small, files.middle, files.large})
        systemFiles().remove(made);
    return 0;
}
