#pragma once

#include <functional>

namespace pxtarvo::benchmarks {

/// Peak memory in MB of one run in a process of its own, which ends the program where the run fails.
double peakMemory(const std::function<void()>& run);

}  // namespace pxtarvo::benchmarks
