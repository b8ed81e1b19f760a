// The whole import of a yearly list through the window, beside the floor, in one process and run: a first
// import into an empty dealer's database and a second one over what the first left. What is compared is the
// processor time, which other programs on the machine disturb least, and each import with the floor's run
// right before it.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "benchmarks/import/floor.h"
#include "benchmarks/measure/comparison.h"
#include "benchmarks/measure/peak_memory.h"
#include "devhost/dealer/schema.h"
#include "devhost/dev_host.h"
#include "fields/window_texts.h"
#include "import/frm_imp_tarifas.h"
#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::benchmarks {

namespace {

std::string listPath;

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
    require(host.user().lastMessageIs(sExito), "the import did not come to its end");
    return rows;
}

std::int64_t importOnFloorOf(const std::string& database) {
    return importOnFloor(database, listPath);
}

using Import = std::int64_t (*)(const std::string& database);

/// The second of two runs, or the first one.
Run timed(Import import, bool second) {
    const std::string database = pathOf("dealer.db");
    createDealer(database);
    if (second) import(database);
    const double start = processorTime();
    const std::int64_t rows = import(database);
    return {processorTime() - start, rows};
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
    const std::string database = pathOf("memory.db");
    const double memory = peakMemory([&] {
        createDealer(database);
        importThroughWindow(database);
    });
    std::vector<Comparison> comparisons;
    for (const bool second : {false, true}) {
        comparisons.push_back({second ? "second run" : "first run",
                               [=] { return timed(importOnFloorOf, second); },
                               [=] { return timed(importThroughWindow, second); }});
    }
    compare(comparisons);
    std::printf("peak memory of the first run: %.0f MB\n", memory);
    return 0;
}
