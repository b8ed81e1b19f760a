#pragma once

// Runs of the plug-in's code, each compared with the floor's run right before it by processor time, which
// other programs on the machine disturb least; and what the programs that measure have in common.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace pxtarvo::benchmarks {

/// What one run took, and how many rows, lines or articles it met.
struct Run {
    double seconds = 0;
    std::int64_t items = 0;
};

/// What `action`, which returns the items that it met, takes.
Run timed(const std::function<std::int64_t()>& action);

/// One thing done twice: straight on SQLite, and by the plug-in's code.
struct Comparison {
    std::string title;
    std::function<Run()> floor;
    std::function<Run()> plugIn;
};

/// Runs the comparisons in five turns, as the benchmark library's options (already read) let them, and prints
/// the median of each one's ratios and their range.
void compare(std::span<const Comparison> comparisons);

/// Peak memory in MB of one run in a process of its own, which ends the program where the run fails.
double peakMemory(const std::function<void()>& run);

/// A file of this name in a folder of this process's own, which is removed when the process ends.
std::string pathOf(std::string_view name);

/// Ends the program with `what` when something was not done that the figures rest on.
void require(bool done, std::string_view what);

}  // namespace pxtarvo::benchmarks
