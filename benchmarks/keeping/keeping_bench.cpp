// The command line's import with its report and its changes kept, beside the same import without: what a
// dealer waits for, so the elapsed time of the whole program, at its least disturbed on a quiet machine.
// "Floor" is the import without.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "benchmarks/measure/comparison.h"
#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::benchmarks {

namespace {

/// Runs the program, whose messages go nowhere; its elapsed seconds.
double elapsed(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), PXTARVO_HOST);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t quietly;
    posix_spawn_file_actions_init(&quietly);
    posix_spawn_file_actions_addopen(&quietly, 1, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    int status = -1;
    require(posix_spawn(&process, PXTARVO_HOST, &quietly, nullptr, pointers.data(), environ) == 0 &&
                waitpid(process, &status, 0) == process && status == 0,
            "the import did not come to its end");
    posix_spawn_file_actions_destroy(&quietly);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// One import into a copy of `dealer`.
Run import(const std::string& dealer, const std::string& list, bool keeps) {
    const std::string database = pathOf("dealer.db");
    std::filesystem::copy_file(dealer, database, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::remove(pathOf("changes"));
    std::vector<std::string> arguments{"import", database, "--year", "2012", "--file", list, "--quiet"};
    if (keeps) {
        arguments.insert(arguments.end(),
                         {"--changes", pathOf("changes"), "--report", pathOf("informe.html")});
    }
    return {elapsed(std::move(arguments)), 1};
}

/// As the import left it, and a quarter of the prices others than the list's.
void change(const std::string& imported) {
    const portable::SystemClock clock;
    portable::SqliteConnection::open(imported, clock)
        ->runNative("UPDATE Art SET ART_PVE = ART_PVE * 0.93 WHERE Art_Id % 4 = 0");
}

}  // namespace

}  // namespace pxtarvo::benchmarks

int main(int argc, char** argv) {
    using namespace pxtarvo::benchmarks;
    benchmark::Initialize(&argc, argv);
    if (argc != 3) {
        std::cerr << "usage: pxtarvo-keeping-bench LIST SHORTLIST [--benchmark_...]\n";
        return 2;
    }
    const std::string list = argv[1];
    const std::string shortList = argv[2];
    const std::string sample = pathOf("sample.db");
    const std::string imported = pathOf("imported.db");
    elapsed({"init", sample, "--sample"});
    std::filesystem::copy_file(sample, imported);
    elapsed({"import", imported, "--year", "2012", "--file", list, "--quiet"});
    change(imported);
    const auto comparison = [](std::string_view title, const std::string& dealer, const std::string& rows) {
        return Comparison{std::string(title), [&] { return import(dealer, rows, false); },
                          [&] { return import(dealer, rows, true); }};
    };
    const Comparison comparisons[] = {comparison("first import, report and changes kept", sample, list),
                                      comparison("next year's, report and changes kept", imported, list),
                                      comparison("2,000 rows, report and changes kept", sample, shortList)};
    compare(comparisons);
}
