// What brings a dealer's data in and out: the tables as CSV files, and any one statement.

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "devhost/dealer/host_file.h"
#include "devhost/exchange/load_tables.h"
#include "devhost/exchange/save_tables.h"
#include "devhost/main/commands.h"
#include "devhost/main/exchange_progress.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/named_files.h"
#include "devhost/main/scratch_folder.h"
#include "devhost/main/value_text.h"
#include "platform/portable/clocks.h"

namespace pxtarvo::devhost {

namespace {

struct ExchangeOptions {
    std::string database;
    std::string folder;
    bool quiet = false;
    bool dryRun = false;
};

struct QueryOptions {
    std::string database;
    std::string statement;
    bool dryRun = false;
};

void print(const std::vector<ExchangedTable>& tables) {
    for (const ExchangedTable& table : tables) std::cout << table.file << ": " << table.rows << " rows\n";
    std::cout << std::flush;
}

int runLoad(const ExchangeOptions& options) {
    if (const auto trouble = newDatabaseTrouble(options.database)) return leave(exitFailed, *trouble);
    std::vector<ExchangedTable> loaded;
    {
        ExchangeDisplay display(options.quiet);
        const ExchangeWatcher watcher = display.watcher();
        const ScratchFolder scratch;
        const std::string made = options.dryRun ? scratch.file("dealer.db") : options.database;
        createFilledHostFile(made, std::make_shared<portable::SystemClock>(),
                             [&](portable::SqliteConnection& connection) {
                                 loaded = loadTables(connection, options.folder, watcher);
                             });
    }
    print(loaded);
    return exitDone;
}

int runSave(const ExchangeOptions& options) {
    if (const auto missing = missingDatabase(options.database)) return leave(exitFailed, *missing);
    const auto connection = openHostFile(options.database, std::make_shared<portable::SystemClock>());
    std::vector<ExchangedTable> saved;
    {
        ExchangeDisplay display(options.quiet);
        saved = saveTables(*connection, options.folder, display.watcher());
    }
    print(saved);
    return exitDone;
}

int runQuery(const QueryOptions& options) {
    if (const auto missing = missingDatabase(options.database)) return leave(exitFailed, *missing);
    const auto clock = std::make_shared<portable::SystemClock>();
    const auto connection =
        options.dryRun ? openHostCopy(options.database, clock) : openHostFile(options.database, clock);
    const ObjectRef<Recordset> result = connection->Execute(options.statement, adOptionUnspecified);
    if (result->State() == adStateClosed) return exitDone;
    const std::int32_t columns = result->FieldCount();
    const auto line = [&](const auto& cell) {
        for (std::int32_t at = 0; at < columns; ++at) std::cout << (at > 0 ? "\t" : "") << cell(at);
        std::cout << '\n';
    };
    line([&](std::int32_t at) { return inOneLine(result->FieldName(at)); });
    for (; !result->Eof(); result->MoveNext()) {
        line([&](std::int32_t at) { return valueText(result->Fields(at)); });
    }
    return exitDone;
}

CLI::App& addExchangeCommand(CLI::App& program, Command& chosen,
                             const std::shared_ptr<ExchangeOptions>& options, const char* name,
                             const char* purpose, const char* folder, bool mustBeThere,
                             int (*run)(const ExchangeOptions&)) {
    CLI::App& command = *program.add_subcommand(name, purpose);
    addDatabaseOption(command, options->database);
    auto* const option = command.add_option("FOLDER", options->folder, folder)->required();
    if (mustBeThere) option->check(CLI::ExistingDirectory);
    command.add_flag("--quiet", options->quiet, "show no progress");
    command.callback([=, &chosen] { chosen = [=] { return run(*options); }; });
    return command;
}

}  // namespace

void addLoadCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<ExchangeOptions>();
    addExchangeCommand(program, chosen, options, "load",
                       "Create a new database file from CSV files, one a table",
                       "where the files are: Art.csv, ArtPro.csv, Exis.csv and so on", true, runLoad)
        .add_flag("--dry-run", options->dryRun, "read and check the files, and make no database");
}

void addSaveCommand(CLI::App& program, Command& chosen) {
    addExchangeCommand(program, chosen, std::make_shared<ExchangeOptions>(), "save",
                       "Write the tables as CSV files, as load reads them",
                       "where to write the files; made where it is missing", false, runSave);
}

void addQueryCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<QueryOptions>();
    CLI::App& command =
        *program.add_subcommand("query", "Run one statement in the dialect of the host's server");
    addDatabaseOption(command, options->database);
    command
        .add_option("SQL", options->statement, "the statement; rows are printed with tabs between the values")
        ->required();
    command.add_flag("--dry-run", options->dryRun, "run it over a copy in memory: nothing is kept");
    command.callback([options, &chosen] { chosen = [options] { return runQuery(*options); }; });
}

}  // namespace pxtarvo::devhost
