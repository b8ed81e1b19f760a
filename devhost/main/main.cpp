// pxtarvo-host: the plug-in's windows without a screen, over an embedded database file.

#include <exception>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"

int main(int argc, char** argv) {
    using namespace pxtarvo::devhost;

    CLI::App program("Runs the plug-in's windows without a screen, over an embedded database file.",
                     "pxtarvo-host");
    program.require_subcommand(1);
    program.allow_extras();  // so that a wrong word can be named
    Command command;
    addInitCommand(program, command);
    addImportCommand(program, command);
    addStockCommand(program, command);
    addDeleteCommand(program, command);
    addLocationsCommand(program, command);
    addFixCodesCommand(program, command);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return program.exit(error);  // --help
        const std::vector<std::string> extras = program.remaining();
        return leave(exitWrongCommand, extras.empty() ? error.what() : "unknown: " + extras.front());
    }
    if (const std::vector<std::string> extras = program.remaining(true); !extras.empty()) {
        return leave(exitWrongCommand, "unknown: " + extras.front());
    }
    try {
        return command();
    } catch (const std::exception& error) {
        return leave(exitFailed, error.what());
    }
}
