// The whole import of a yearly list through the window, beside the floor, in one process and run: a first
// import into an empty dealer's database and a second one over what the first left.

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
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

constexpr int repetitions = 3;

std::string listPath;
std::filesystem::path folder;
std::map<std::string, std::vector<double>> seconds;

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

void measure(benchmark::State& state, const std::string& name, Import import, bool second) {
    const std::string database = databasePath("dealer.db");
    std::int64_t rows = 0;
    for (auto _ : state) {
        createDealer(database);
        if (second) import(database);
        const auto start = std::chrono::steady_clock::now();
        rows = import(database);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(taken.count());
        seconds[name].push_back(taken.count());
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
    wait4(child, &status, 0, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

double best(const std::string& name) {
    return *std::ranges::min_element(seconds[name]);
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
    // Import and floor take turns, so that a disturbance of the machine meets both.
    for (int turn = 0; turn < repetitions; ++turn) {
        for (const bool second : {false, true}) {
            const std::string run = second ? "second run" : "first run";
            for (const auto& [name, import] :
                 {std::pair<std::string, Import>{"floor", importOnFloorOf},
                  std::pair<std::string, Import>{"import", importThroughWindow}}) {
                const std::string title = name + ", " + run;
                benchmark::RegisterBenchmark(
                    title.c_str(),
                    [=, import = import](benchmark::State& state) { measure(state, title, import, second); })
                    ->UseManualTime()
                    ->Iterations(1)
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    for (const char* run : {"first run", "second run"}) {
        if (!seconds.contains(std::string("import, ") + run) ||
            !seconds.contains(std::string("floor, ") + run))
            continue;
        std::printf("%s: %.2f times the floor\n", run,
                    best(std::string("import, ") + run) / best(std::string("floor, ") + run));
    }
    std::printf("peak memory of the first run: %.0f MB\n", memory);
    std::filesystem::remove_all(folder);
    return 0;
}
