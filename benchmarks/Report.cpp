#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <limits>

#ifdef _WIN32
#include <windows.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace tessera::bench {

namespace {

std::string optionalNumber(std::optional<double> value, const char* pattern)
{
    if (!value)
        return {};
    char text[64];
    std::snprintf(text, sizeof text, pattern, *value);
    return text;
}

} // namespace

void report(const Figure& figure, OnWindows meaning)
{
    constexpr const char* kMeanings[] = {"", "needed", "harmless", "helpful"};
    const std::string ratio =
        figure.reference ? optionalNumber(figure.value / *figure.reference, "%.2f") : std::string{};
    std::printf("%s\t%.3f\t%s\t%s\t%s\t%s\t%s\n", figure.name.c_str(), figure.value, figure.unit.c_str(),
                optionalNumber(figure.reference, "%.3f").c_str(), ratio.c_str(),
                optionalNumber(figure.goal, "%.2f").c_str(), kMeanings[static_cast<int>(meaning)]);
    std::fflush(stdout);
}

WorkClock::time_point WorkClock::now()
{
#ifdef _WIN32
    return time_point(std::chrono::duration_cast<duration>(Clock::now().time_since_epoch()));
#else
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time_point(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
#endif
}

Best bestOf(int runs, const std::function<double()>& work, const std::function<double()>& bare, int rounds)
{
    constexpr double kNone = std::numeric_limits<double>::max();
    Best best{kNone, kNone};
    for (int round = 0; round < rounds; ++round) {
        for (int run = 0; run < runs; ++run)
            best.work = std::min(best.work, work());
        for (int run = 0; run < runs; ++run)
            best.bare = std::min(best.bare, bare());
    }
    return best;
}

void settleHeap()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void require(bool condition, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "bench: %s\n", what);
    std::exit(1);
}

std::optional<double> privateMemory()
{
#ifdef _WIN32
    // Counted here: not every system's process counters know it.
    SIZE_T committed = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) == sizeof region;) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            committed += region.RegionSize;
        const char* const next = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
        if (next <= at)
            break;
        at = next;
    }
    return static_cast<double>(committed) / (1024.0 * 1024.0);
#else
    // Only shown natively: the anonymous part of the resident set.
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("RssAnon:"))
            return std::strtod(line.c_str() + 8, nullptr) / 1024.0;
    }
    return std::nullopt;
#endif
}

} // namespace tessera::bench
