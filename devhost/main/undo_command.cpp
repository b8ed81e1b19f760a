#include <memory>
#include <string>

#include "devhost/changes/changes_file.h"
#include "devhost/changes/undo.h"
#include "devhost/dealer/host_file.h"
#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"

namespace pxtarvo::devhost {

namespace {

struct UndoOptions {
    std::string database;
    std::string file;
    bool dryRun = false;
};

int runUndo(const UndoOptions& options) {
    const std::string changes = readChangesFile(options.file);
    try {
        const auto clock = clockFor({});
        const auto database =
            options.dryRun ? openHostCopy(options.database, clock) : openHostFile(options.database, clock);
        const UndoOutcome outcome = undoChanges(*database, changes);
        for (const std::string& conflict : outcome.conflicts) tell(conflict);
        if (!outcome.conflicts.empty()) {
            return leave(exitFailed, "nothing was undone: " + std::to_string(outcome.conflicts.size()) +
                                         (outcome.conflicts.size() == 1 ? " row was" : " rows were") +
                                         " changed since");
        }
        tell(std::to_string(outcome.rows) + (outcome.rows == 1 ? " row " : " rows ") +
             (options.dryRun ? "would be put back" : "put back"));
        return exitDone;
    } catch (const RuntimeError& error) {
        return leave(exitFailed, described(error));
    }
}

}  // namespace

void addUndoCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<UndoOptions>();
    CLI::App& command = *program.add_subcommand(
        "undo", "Take back what a run changed, all or nothing, from what --changes kept");
    command.add_option("DB", options->database, "the database file")->required();
    command.add_option("FILE", options->file, "the file that --changes wrote")->required();
    command.add_flag("--dry-run", options->dryRun, "say whether it can be done, and do nothing");
    command.callback([options, &chosen] { chosen = [options] { return runUndo(*options); }; });
}

}  // namespace pxtarvo::devhost
