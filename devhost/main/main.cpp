// pxtarvo-host: the plug-in's windows without a screen, over an embedded database file.

#include <exception>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"

int main(int argc, char** argv) {
    using namespace pxtarvo::devhost;

    CLI::App program("Runs the plug-in's windows without a screen, over an embedded database file.",
                     "pxtarvo-host");
    program.require_subcommand(1);
    Command command;
    addInitCommand(program, command);
    addImportCommand(program, command);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return program.exit(error);  // --help
        return leave(exitWrongCommand, error.what());
    }
    try {
        return command();
    } catch (const std::exception& error) {
        return leave(exitFailed, error.what());
    }
}
