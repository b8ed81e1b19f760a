// The whole import of a yearly list through the window, beside the floor, in one process and run: a first
// import into an empty dealer's database and a second one over what the first left. What is compared is the
// processor time, which other programs on the machine disturb least, and each import with the floor's run
// right before it.

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
#include <string>
#include <vector>

#include "benchmarks/floor.h"
#include "devhost/dev_host.h"
#include "devhost/schema.h"
#include "import/frm_imp_tarifas.h"
#include "platform/portable/clocks.h"
#include "platform/portable/sqlite_connection.h"

namespace pxtarvo::benchmarks {

namespace {

constexpr int turns = 5;

std::string listPath;
std::filesystem::path folder;

std::string databasePath(std::string_view name) {
    return (folder / name).string();
}

void createDealer(const std::string& database) {
    std::filesystem::remove(database);
    const portable::SystemClock clock;
    const auto connection = portable::SqliteConnection::create(database, clock);
    devhost::createSchema(*connection);
    connection->Execute("INSERT INTO Pro (Pro_ID,Pro_COD,Pro_NOM,Pro_TIPDOC) VALUES (4,24,'RECAMBIOS',0)",
                        -1);
    connection->Execute("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (1,'Same','SAME')",
                        -1);
}

std::int64_t importThroughWindow(const std::string& database) {
    devhost::DevHostOptions options;
    options.database = database;
    devhost::DevHost host(options);
    std::int64_t rows = 0;
    host.user().onWindowShown = [&](Window& window) {
        auto& tarifas = dynamic_cast<frmImpTarifas&>(window);
        host.desktop().type(tarifas.Text1[0], listPath);
        host.desktop().click(tarifas.XPButton1);
        rows = static_cast<std::int64_t>(tarifas.ProgressBar1.value());
    };
    host.run();
    if (!host.user().lastMessageIs("Proceso finalizado con exito")) {
        std::cerr << host.user().messages().back().message.text << '\n';
        std::exit(1);
    }
    return rows;
}

std::int64_t importOnFloorOf(const std::string& database) {
    return importOnFloor(database, listPath);
}

using Import = std::int64_t (*)(const std::string& database);

/// The runs of one kind, first or second, turn by turn.
struct Pairs {
    std::optional<double> floorSeconds;  ///< of the floor's run that the next import is compared with
    std::vector<double> ratios;
};
Pairs pairs[2];

/// Processor seconds of this process so far.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void measure(benchmark::State& state, bool floor, bool second) {
    const Import import = floor ? importOnFloorOf : importThroughWindow;
    const std::string database = databasePath("dealer.db");
    Pairs& kind = pairs[second ? 1 : 0];
    std::int64_t rows = 0;
    for (auto _ : state) {
        createDealer(database);
        if (second) import(database);
        const double start = processorTime();
        rows = import(database);
        const double taken = processorTime() - start;
        state.SetIterationTime(taken);
        if (floor) {
            kind.floorSeconds = taken;
        } else if (kind.floorSeconds) {
            kind.ratios.push_back(taken / *kind.floorSeconds);
            kind.floorSeconds.reset();
        }
    }
    state.SetItemsProcessed(rows * static_cast<std::int64_t>(state.iterations()));
}

/// Peak memory of one import in a process of its own, in MB.
double peakMemory() {
    createDealer(databasePath("memory.db"));
    const pid_t child = fork();
    if (child == 0) {
        importThroughWindow(databasePath("memory.db"));
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        std::cerr << "The import in a process of its own failed.\n";
        std::exit(1);
    }
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// The middle one, of the two middle ones the greater.
double median(std::vector<double> numbers) {
    std::ranges::sort(numbers);
    return numbers[numbers.size() / 2];
}

}  // namespace

}  // namespace pxtarvo::benchmarks

int main(int argc, char** argv) {
    using namespace pxtarvo::benchmarks;
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::cerr << "usage: pxtarvo-bench LIST [--benchmark_...]\n";
        return 2;
    }
    listPath = argv[1];
    folder = std::filesystem::temp_directory_path() / ("pxtarvo-bench-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);

    const double memory = peakMemory();
    for (int turn = 0; turn < turns; ++turn) {
        for (const bool second : {false, true}) {
            for (const bool floor : {true, false}) {
                const std::string title =
                    std::string(floor ? "floor, " : "import, ") + (second ? "second run" : "first run");
                benchmark::RegisterBenchmark(title.c_str(),
                                             [=](benchmark::State& state) { measure(state, floor, second); })
                    ->UseManualTime()
                    ->Iterations(1)
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    for (const bool second : {false, true}) {
        const std::vector<double>& ratios = pairs[second ? 1 : 0].ratios;
        if (ratios.empty()) continue;  // a filter left it out
        std::printf("%s: %.2f times the floor (%.2f to %.2f in %zu turns)\n",
                    second ? "second run" : "first run", median(ratios), std::ranges::min(ratios),
                    std::ranges::max(ratios), ratios.size());
    }
    std::printf("peak memory of the first run: %.0f MB\n", memory);
    std::filesystem::remove_all(folder);
    return 0;
}
