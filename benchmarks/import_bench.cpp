// The whole import of a yearly list through the window, beside the floor, in one process and run: a first
// import into an empty dealer's database and a second one over what the first left. What is compared is the
// processor time, which other programs on the machine disturb least, and each import with the floor's run
// right before it.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "benchmarks/floor.h"
#include "benchmarks/pairs.h"
#include "benchmarks/peak_memory.h"
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

/// The first runs and the second ones.
Pairs pairs[2];

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
        kind.took(floor, taken);
    }
    state.SetItemsProcessed(rows * static_cast<std::int64_t>(state.iterations()));
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

    const double memory = peakMemory([] {
        createDealer(databasePath("memory.db"));
        importThroughWindow(databasePath("memory.db"));
    });
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
        pairs[second ? 1 : 0].print(second ? "second run" : "first run");
    }
    std::printf("peak memory of the first run: %.0f MB\n", memory);
    std::filesystem::remove_all(folder);
    return 0;
}
