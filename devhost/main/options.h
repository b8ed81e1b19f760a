#pragma once

// What the command line says.

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/desktop.h"

namespace pxtarvo::devhost {

/// Common to all commands.
struct CommonOptions {
    std::string database;
    std::string trace;  ///< empty for none
    std::optional<CalendarTime> now;
    MessageAnswer answer = MessageAnswer::Yes;  ///< to every question
    bool inTransaction = false;
    std::string driveC;  ///< empty for none
    bool quiet = false;
};

/// What is not given leaves its field as the window loads it.
struct ImportOptions {
    std::optional<std::string> year;
    std::optional<std::string> list;  ///< "same" or "ama"
    std::optional<std::string> file;
    std::optional<std::string> supplier;
    std::optional<std::string> brand;
};

/// What is not given leaves its field as the window loads it.
struct StockOptions {
    std::optional<std::string> file;
    std::optional<std::string> supplier;
    std::optional<std::string> brand;
    std::optional<std::string> client;
    std::optional<std::string> organisation;
    std::optional<std::string> address;
};

/// What is not given leaves its field as the window loads it.
struct DeleteOptions {
    std::optional<std::string> brand;
    std::optional<std::string> until;
    std::optional<std::string> state;  ///< "todos", "activo" or "baja"
    bool listOnly = false;
};

/// Gives `command` the database's name and the common options.
void addCommonOptions(CLI::App& command, CommonOptions& options);

}  // namespace pxtarvo::devhost
