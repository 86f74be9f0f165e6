#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace tessera::bench {

struct Figure {
    std::string name;
    double value = 0;
    std::string unit;
    std::optional<double> reference = std::nullopt; // what the bare work costs in the same run
    std::optional<double> goal = std::nullopt;      // for value / reference, else for the value
};

// What was done under Wine for the sake of a figure, and means on Windows.
enum class OnWindows { Unsaid, Needed, Harmless, Helpful };

// One line: name, value, unit, reference, ratio, goal, what it means on Windows; tabs between, nothing
// where there is none.
void report(const Figure& figure, OnWindows meaning = OnWindows::Unsaid);

using Clock = std::chrono::steady_clock;

// For work that waits for nothing: time of this process alone where the system tells it finely
// enough, so that neighbours on a busy machine do not count.
struct WorkClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<WorkClock>;
    static constexpr bool is_steady = true;
    static time_point now();
};

template <class Clock>
double millisecondsSince(std::chrono::time_point<Clock> start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The best of some rounds of several runs of each way. In a round the runs of one way follow each
// other, so that each finds the heap as its own kind leaves it; the rounds meet the same machine.
// Each function times one run itself, in milliseconds, and leaves set-up and clearing out.
struct Best {
    double work = 0;
    double bare = 0;
    double ratio() const { return work / bare; }
};
Best bestOf(int runs, const std::function<double()>& work, const std::function<double()>& bare,
            int rounds = 3);

// Gives freed memory back to the system where the heap would else do so within the next run.
void settleHeap();

// Ends the program with a message: a figure of wrong work is worth nothing.
void require(bool condition, const char* what);

// Private memory of this process in megabytes; none where the system does not say.
std::optional<double> privateMemory();

} // namespace tessera::bench
