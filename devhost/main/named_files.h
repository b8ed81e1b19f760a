#pragma once

// The files that a command line names, and what is wrong with them in the program's own words.

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace pxtarvo::devhost {

/// Adds the database's name, which must be given.
void addDatabaseOption(CLI::App& command, std::string& database);

/// Says that there is no such database and what makes one, if so.
std::optional<std::string> missingDatabase(const std::string& path);
/// Says why no new database can be made there, if so.
std::optional<std::string> newDatabaseTrouble(const std::string& path);

/// Says why a command cannot read this file, which it calls `what` ("list"): it is missing, a folder, or may
/// not be read. nullopt where it can be read. `path` is as the plug-in names it, `driveC` the folder that
/// stands for drive C:, empty for none.
std::optional<std::string> unreadableFile(std::string_view what, std::string_view path,
                                          const std::string& driveC);
/// Says that the folder of a file to be written is missing, or that there is a folder of the file's own name,
/// if so.
std::optional<std::string> unwritableFile(std::string_view what, std::string_view path,
                                          const std::string& driveC);

}  // namespace pxtarvo::devhost
