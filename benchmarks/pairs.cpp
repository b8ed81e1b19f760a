#include "benchmarks/pairs.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace pxtarvo::benchmarks {

namespace {

/// The middle one, of the two middle ones the greater.
double median(std::vector<double> numbers) {
    std::ranges::sort(numbers);
    return numbers[numbers.size() / 2];
}

}  // namespace

double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void Pairs::took(bool floor, double seconds) {
    if (floor) {
        floorSeconds_ = seconds;
    } else if (floorSeconds_) {
        ratios_.push_back(seconds / *floorSeconds_);
        floorSeconds_.reset();
    }
}

void Pairs::print(const char* title) const {
    if (ratios_.empty()) return;
    std::printf("%s: %.2f times the floor (%.2f to %.2f in %zu turns)\n", title, median(ratios_),
                std::ranges::min(ratios_), std::ranges::max(ratios_), ratios_.size());
}

}  // namespace pxtarvo::benchmarks
