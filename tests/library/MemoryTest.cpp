#ifndef _WIN32

#include "library/SampleRig.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

// The program's memory, which can be made to run short at the n-th allocation.
namespace {

long g_allocationsLeft = -1; // below 0: without end
bool g_comesBack = false;    // one allocation fails, those behind it do not

void* allocate(std::size_t size)
{
    if (g_allocationsLeft == 0) {
        if (g_comesBack)
            g_allocationsLeft = -1;
        throw std::bad_alloc();
    }
    if (g_allocationsLeft > 0)
        --g_allocationsLeft;
    void* memory = std::malloc(size > 0 ? size : 1);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace tessera::test {
namespace {

// Takes lines without memory of its own, so that only the job's allocations are counted.
class LevelLog : public Log {
public:
    int level = 0;
    void startTimer() override {}
    void indent() override { ++level; }
    void outdent() override { --level; }
    void line(const std::string&) override {}
    void progress(std::uint32_t, std::uint32_t) override {}
};

class SilentPrompt : public Prompt {
public:
    int boxes = 0;
    unsigned long assertedLine = 0;
    void message(Severity, const std::string&) override { ++boxes; }
    void assertion(const std::string&, const std::string&, unsigned long line) override
    {
        ++boxes;
        assertedLine = line;
    }
};

// Far more than a job needs: one that never succeeds ends here.
constexpr long kMostAllocations = 5000;

enum class Outcome { Good, Told, OutOfMemory };

template <class Job>
Outcome runShort(long allocations, SilentPrompt& prompt, Job job)
{
    g_allocationsLeft = allocations;
    Outcome outcome = Outcome::OutOfMemory;
    try {
        outcome = job() ? Outcome::Good : Outcome::Told;
    } catch (const std::bad_alloc&) {
    }
    g_allocationsLeft = -1;
    EXPECT_EQ(prompt.boxes, outcome == Outcome::Told ? 1 : 0);
    return outcome;
}

// At each allocation memory runs short for good, or for a moment: then a picture's is told.
TEST(ShortMemory, LoadEndsTidilyAtEveryAllocation)
{
    for (const bool comesBack : {false, true}) {
        g_comesBack = comesBack;
        long allocations = 0;
        unsigned long assertedLine = 0;
        for (Outcome outcome = Outcome::Told; outcome != Outcome::Good; ++allocations) {
            SCOPED_TRACE(allocations);
            ASSERT_LT(allocations, kMostAllocations);
            SampleRig rig;
            rig.files.files[SampleRig::kName] = sampleDatabase();
            LevelLog log;
            SilentPrompt prompt;
            JobContext context{rig.files, log, prompt, rig.terminating};
            outcome = runShort(allocations, prompt,
                               [&] { return rig.database.read(SampleRig::kName, rig.host, context, {}); });
            EXPECT_EQ(log.level, 0);
            assertedLine = std::max(assertedLine, prompt.assertedLine);
            rig.database.clear();
        }
        EXPECT_EQ(assertedLine, comesBack ? 801u : 0u);
        EXPECT_GT(allocations, 40);
    }
    g_comesBack = false;
}

TEST(ShortMemory, BuildEndsTidilyAtEveryAllocation)
{
    const Bytes old = sampleDatabase();
    long allocations = 0;
    for (Outcome outcome = Outcome::Told; outcome != Outcome::Good; ++allocations) {
        SCOPED_TRACE(allocations);
        ASSERT_LT(allocations, kMostAllocations);
        SampleRig rig;
        for (HostTrack& track : rig.host.tracks)
            track.artist = track.album = track.genre = u"a text that is longer than the string itself";
        rig.files.files[SampleRig::kName] = old;
        LevelLog log;
        SilentPrompt prompt;
        JobContext context{rig.files, log, prompt, rig.terminating};
        DatabaseSettings settings;
        settings.lastUsed = SampleRig::kName;
        outcome = runShort(allocations, prompt, [&] {
            return rig.database.build(
                rig.host, settings, [](Library&, JobContext&) { return 0; }, context);
        });
        EXPECT_EQ(log.level, 0);
        EXPECT_TRUE(outcome == Outcome::Good || rig.files.files[SampleRig::kName] == old);
        rig.database.clear();
    }
    EXPECT_GT(allocations, 100);
}

} // namespace
} // namespace tessera::test

#endif
