#pragma once

// The files that a command line names.

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace pxtarvo::devhost {

/// Adds the database's name, which must be given.
void addDatabaseOption(CLI::App& command, std::string& database);

/// Says that there is no such database and what makes one, if so.
std::optional<std::string> missingDatabase(const std::string& path);

/// Says why the file cannot be read, as in "'list.mdb' is a folder"; nullopt where it can.
std::optional<std::string> fileTrouble(const std::string& path);

}  // namespace pxtarvo::devhost
