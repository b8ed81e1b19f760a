#pragma once

// What the command line says.

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "devhost/host_stage.h"
#include "devhost/main/commands.h"
#include "platform/desktop.h"
#include "platform/values/clock.h"

namespace pxtarvo::devhost {

/// Common to all commands.
struct CommonOptions {
    std::string database;
    std::string trace;  ///< empty for none
    std::optional<CalendarTime> now;
    MessageAnswer answer = MessageAnswer::Yes;  ///< to every question
    CursorLocation cursor = CursorLocation::Client;
    bool inTransaction = false;
    std::string driveC;  ///< empty for none
    bool quiet = false;
    bool dryRun = false;    ///< of commands that write
    std::string changes;    ///< file in which they are kept, empty for none
    std::string report;     ///< page to write, empty for none
    std::string csvFolder;  ///< for the report's tables, empty for none
};

/// What is not given leaves its field as the window loads it.
struct ImportOptions {
    CommonOptions common;
    std::optional<std::string> year;
    std::optional<std::string> list;  ///< "same" or "ama"
    std::optional<std::string> file;
    std::optional<std::string> supplier;
    std::optional<std::string> brand;
};

/// What is not given leaves its field as the window loads it.
struct StockOptions {
    CommonOptions common;
    std::optional<std::string> file;
    std::optional<std::string> supplier;
    std::optional<std::string> brand;
    std::optional<std::string> client;
    std::optional<std::string> organisation;
    std::optional<std::string> address;
};

/// What is not given leaves its field as the window loads it.
struct DeleteOptions {
    CommonOptions common;
    std::optional<std::string> brand;
    std::optional<std::string> until;
    std::optional<std::string> state;  ///< "todos", "activo" or "baja"
    bool listOnly = false;
};

/// Gives `command` the database's name and the common options.
void addCommonOptions(CLI::App& command, CommonOptions& options);

/// For a command that writes: --dry-run.
void addDryRun(CLI::App& command, CommonOptions& options);
/// For a run in the database: --changes, --report and --csv, beside --dry-run.
void addReportOptions(CLI::App& command, CommonOptions& options);

/// Adds a command with the common options, which `options` holds beside its own; these are the caller's to
/// add. Where the user names the command, `run` is what the program does.
template <class Options>
CLI::App& addCommand(CLI::App& program, Command& chosen, const std::string& name, const std::string& purpose,
                     const std::shared_ptr<Options>& options, int (*run)(const Options&)) {
    CLI::App& command = *program.add_subcommand(name, purpose);
    addCommonOptions(command, options->common);
    command.callback([=, &chosen] { chosen = [=] { return run(*options); }; });
    return command;
}

}  // namespace pxtarvo::devhost
