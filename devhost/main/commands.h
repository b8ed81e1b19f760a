#pragma once

// The commands of pxtarvo-host. Each adds itself to the program's options and, once these are read, gives the
// function that runs it; what that returns is the program's exit status.

#include <CLI/CLI.hpp>
#include <functional>

namespace pxtarvo::devhost {

using Command = std::function<int()>;

/// Sets `chosen` when the user names the command.
void addInitCommand(CLI::App& program, Command& chosen);
void addLoadCommand(CLI::App& program, Command& chosen);
void addSaveCommand(CLI::App& program, Command& chosen);
void addQueryCommand(CLI::App& program, Command& chosen);
void addImportCommand(CLI::App& program, Command& chosen);
void addStockCommand(CLI::App& program, Command& chosen);
void addDeleteCommand(CLI::App& program, Command& chosen);
void addLocationsCommand(CLI::App& program, Command& chosen);
void addFixCodesCommand(CLI::App& program, Command& chosen);
void addCheckCommand(CLI::App& program, Command& chosen);
void addUndoCommand(CLI::App& program, Command& chosen);

}  // namespace pxtarvo::devhost
