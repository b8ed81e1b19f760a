#pragma once

// Runs of the plug-in's code, each compared with the floor's run right before it by processor time, which
// other programs on the machine disturb least.

#include <optional>
#include <vector>

namespace pxtarvo::benchmarks {

/// Processor seconds of this process so far.
double processorTime();

class Pairs {
  public:
    /// A run of the floor or of the plug-in's code took this long.
    void took(bool floor, double seconds);
    /// Prints the median of the ratios and their range; nothing where a filter left every pair out.
    void print(const char* title) const;

  private:
    std::optional<double> floorSeconds_;  ///< of the run that the next one is compared with
    std::vector<double> ratios_;
};

}  // namespace pxtarvo::benchmarks
