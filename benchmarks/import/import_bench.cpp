// The whole import of a yearly list through the window, beside the floor, in one process and run: a first
// import into an empty dealer's database and a second one over what the first left. What is compared is the
// processor time, which other programs on the machine disturb least, and each import with the floor's run
// right before it.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "benchmarks/import/floor.h"
#include "benchmarks/measure/dealer.h"
#include "benchmarks/measure/peak_memory.h"
#include "devhost/dev_host.h"
#include "fields/window_texts.h"
#include "import/frm_imp_tarifas.h"

namespace pxtarvo::benchmarks {

namespace {

std::string listPath;

std::int64_t importThroughWindow(const std::string& database) {
    devhost::DevHost host({.database = database});
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

/// Of the second of two runs, or of the first one.
Run runOf(Import import, bool second) {
    const std::string database = freshDealer();
    if (second) import(database);
    return timed([&] { return import(database); });
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
    createDealer();
    const double memory = peakMemory([] { importThroughWindow(freshDealer()); });
    std::vector<Comparison> comparisons;
    for (const bool second : {false, true}) {
        comparisons.push_back({second ? "second run" : "first run",
                               [=] { return runOf(importOnFloorOf, second); },
                               [=] { return runOf(importThroughWindow, second); }});
    }
    compare(comparisons);
    std::printf("peak memory of the first run: %.0f MB\n", memory);
    return 0;
}
