#include <memory>

#include "devhost/dealer/host_file.h"
#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/named_files.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"

namespace pxtarvo::devhost {

namespace {

struct InitOptions {
    CommonOptions common;
    bool sample = false;
};

int runInit(const InitOptions& options) {
    const std::string& database = options.common.database;
    if (const auto clash = outputClash(options.common, "")) return leave(exitWrongCommand, *clash);
    if (const auto trouble = newDatabaseTrouble(database)) return leave(exitFailed, *trouble);
    try {
        recorderFor(options.common);  // an empty record: nothing crosses the plug-in's boundary here
        createHostFile(database, clockFor(options.common), options.sample);
    } catch (const RuntimeError& error) {
        return leave(exitFailed, error.description());
    }
    return exitDone;
}

}  // namespace

void addInitCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<InitOptions>();
    CLI::App& command = *program.add_subcommand("init", "Create the host's tables in a new database file");
    addCommonOptions(command, options->common);
    command.add_flag("--sample", options->sample, "add suppliers, brands, articles and stock");
    command.callback([options, &chosen] { chosen = [options] { return runInit(*options); }; });
}

}  // namespace pxtarvo::devhost
