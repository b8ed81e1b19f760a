// What brings a dealer's data in and out: the tables as CSV files, and any one statement.

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "devhost/dealer/host_file.h"
#include "devhost/exchange/table_exchange.h"
#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/named_files.h"
#include "devhost/main/progress_display.h"
#include "devhost/main/scratch_folder.h"
#include "platform/portable/clocks.h"
#include "platform/portable/dialect/column_types.h"
#include "platform/values/clock.h"
#include "platform/values/decimal_number.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

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

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

/// The text with "\t", "\n", "\r" and "\\" in place of the characters that end a cell or a line, and of the
/// backslash.
std::string inOneLine(std::string_view text) {
    constexpr std::string_view special = "\t\n\r\\";
    constexpr std::string_view letters = "tnr\\";
    std::string line;
    for (const char c : text) {
        const std::size_t which = special.find(c);
        if (which != special.npos) line += '\\';
        line += which != special.npos ? letters[which] : c;
    }
    return line;
}

/// A value for other programs to read: NULL, numbers with a point, 0 or 1, dates as YYYY-MM-DD HH:MM:SS,
/// texts in one line.
std::string valueText(const Variant& value) {
    return value.visit(Overloaded{
        [](Empty) { return std::string(); },
        [](Null) { return std::string("NULL"); },
        [](bool yes) { return std::string(yes ? "1" : "0"); },
        [](float number) { return plainNumber(number); },
        [](double number) { return plainNumber(number); },
        [](Currency amount) { return decimalText(decimalOf(amount), "."); },
        [](const Decimal& number) { return decimalText(number, "."); },
        [](Date date) {
            const portable::StoredDate stored = portable::storedDate(toCalendar(date));
            return std::string(stored.data(), stored.size());
        },
        [](const std::string& text) { return inOneLine(text); },
        [](ErrorValue error) { return std::to_string(error.code); },
        [](auto whole) { return plainNumber(static_cast<std::int32_t>(whole)); },
    });
}

/// Remarks go to standard error as lines, progress too unless it is to be quiet.
ExchangeWatcher telling(ProgressLine& line, bool quiet) {
    ExchangeWatcher watcher;
    watcher.remarked = [&line](const std::string& remark) {
        line.clear();
        tell(remark);
    };
    if (quiet) return watcher;
    watcher.progressed = [&line](const ExchangeProgress& progress) {
        if (!line.due()) return;
        const int percent = static_cast<int>(std::clamp(progress.share, 0.0, 1.0) * 100);
        line.show(percent, joined({std::to_string(percent), " % ", progress.file, " ",
                                   std::to_string(progress.rows), " rows"}));
    };
    return watcher;
}

void print(const std::vector<ExchangedTable>& tables) {
    for (const ExchangedTable& table : tables) std::cout << table.file << ": " << table.rows << " rows\n";
    std::cout << std::flush;
}

int runLoad(const ExchangeOptions& options) {
    if (const auto trouble = newDatabaseTrouble(options.database)) return leave(exitFailed, *trouble);
    std::vector<ExchangedTable> loaded;
    {
        ProgressLine line;
        const ExchangeWatcher watcher = telling(line, options.quiet);
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
        ProgressLine line;
        saved = saveTables(*connection, options.folder, telling(line, options.quiet));
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
