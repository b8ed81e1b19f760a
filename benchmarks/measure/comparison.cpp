#include "benchmarks/measure/comparison.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <optional>
#include <vector>

namespace pxtarvo::benchmarks {

namespace {

constexpr int turns = 5;

/// The middle one, of the two middle ones the greater.
double median(std::vector<double> numbers) {
    std::ranges::sort(numbers);
    return numbers[numbers.size() / 2];
}

/// Processor seconds of this process so far.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

class Pairs {
  public:
    void took(bool floor, double seconds) {
        if (floor) {
            floorSeconds_ = seconds;
        } else if (floorSeconds_) {
            ratios_.push_back(seconds / *floorSeconds_);
            floorSeconds_.reset();
        }
    }
    /// Nothing where a filter left every pair out.
    void print(const std::string& title) const {
        if (ratios_.empty()) return;
        std::printf("%s: %.2f times the floor (%.2f to %.2f in %zu turns)\n", title.c_str(), median(ratios_),
                    std::ranges::min(ratios_), std::ranges::max(ratios_), ratios_.size());
    }

  private:
    std::optional<double> floorSeconds_;  ///< of the run that the next one is compared with
    std::vector<double> ratios_;
};

class OwnFolder {
  public:
    OwnFolder()
        : path_(std::filesystem::temp_directory_path() / ("pxtarvo-bench-" + std::to_string(getpid()))) {
        std::filesystem::create_directory(path_);
    }
    ~OwnFolder() {
        std::error_code left;  // is the system's to remove
        std::filesystem::remove_all(path_, left);
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace

Run timed(const std::function<std::int64_t()>& action) {
    const double start = processorTime();
    const std::int64_t items = action();
    return {processorTime() - start, items};
}

void compare(std::span<const Comparison> comparisons) {
    std::vector<Pairs> pairs(comparisons.size());
    const auto measure = [&](benchmark::State& state, std::size_t at, bool floor) {
        std::int64_t items = 0;
        for (auto _ : state) {
            const Run run = floor ? comparisons[at].floor() : comparisons[at].plugIn();
            state.SetIterationTime(run.seconds);
            pairs[at].took(floor, run.seconds);
            items += run.items;
        }
        state.SetItemsProcessed(items);
    };
    for (int turn = 0; turn < turns; ++turn) {
        for (std::size_t at = 0; at < comparisons.size(); ++at) {
            for (const bool floor : {true, false}) {
                const std::string title = (floor ? "floor, " : "plug-in, ") + comparisons[at].title;
                benchmark::RegisterBenchmark(title.c_str(),
                                             [=](benchmark::State& state) { measure(state, at, floor); })
                    ->UseManualTime()
                    ->Iterations(1)
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    for (std::size_t at = 0; at < comparisons.size(); ++at) pairs[at].print(comparisons[at].title);
}

double peakMemory(const std::function<void()>& run) {
    const pid_t child = fork();
    if (child == 0) {
        run();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        std::cerr << "The run in a process of its own failed.\n";
        std::exit(1);
    }
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

std::string pathOf(std::string_view name) {
    static const OwnFolder folder;
    return (folder.path() / name).string();
}

void require(bool done, std::string_view what) {
    if (done) return;
    std::cerr << what << '\n';
    std::exit(1);
}

}  // namespace pxtarvo::benchmarks
