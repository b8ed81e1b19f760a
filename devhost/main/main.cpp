// pxtarvo-host: the plug-in's windows without a screen, over an embedded database file.

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t nameWidth = 12;  ///< of the longest command, and a gap

/// Gives standard input, output and error a file each where the program was started without: no file that it
/// opens may get their place, and with it what is meant for them. Writing to them fails as before.
void fillStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1) continue;
        // The lowest free descriptor is the one that is missing.
        if (open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) != descriptor)
            _exit(exitFailed);
    }
}

/// The commands with their purposes, a line each.
void printCommands(const CLI::App& program) {
    std::cerr << "Commands:\n";
    for (const CLI::App* command : program.get_subcommands({})) {
        std::cerr << "  " << paddedRight(command->get_name(), nameWidth) << command->get_description()
                  << '\n';
    }
}

int runCommandLine(int argc, char** argv) {
    CLI::App program("Runs the plug-in's windows without a screen, over an embedded database file.",
                     "pxtarvo-host");
    program.require_subcommand(0, 1);
    program.set_version_flag("--version", "pxtarvo-host " PXTARVO_VERSION);
    program.allow_extras();  // so that a wrong word can be named
    Command command;
    for (const auto add :
         {addInitCommand, addLoadCommand, addSaveCommand, addQueryCommand, addImportCommand, addStockCommand,
          addDeleteCommand, addLocationsCommand, addFixCodesCommand, addCheckCommand, addUndoCommand}) {
        add(program, command);
    }
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return program.exit(error);  // --help, --version
        const std::vector<std::string> extras = program.remaining();
        return leave(exitWrongCommand, extras.empty() ? error.what() : "unknown: " + extras.front());
    }
    if (const std::vector<std::string> extras = program.remaining(true); !extras.empty()) {
        return leave(exitWrongCommand, "unknown: " + extras.front());
    }
    if (!command) {
        printCommands(program);
        return leave(exitWrongCommand, "a command is missing; --help after one tells more");
    }
    try {
        return command();
    } catch (const std::exception& error) {
        return leave(exitFailed, error.what());
    }
}

}  // namespace

}  // namespace pxtarvo::devhost

int main(int argc, char** argv) {
    using namespace pxtarvo::devhost;

    // A broken pipe or a file at its limit is an error like others, not the end of a run halfway.
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
    fillStandardDescriptors();
    const int status = runCommandLine(argc, argv);
    std::cout.flush();
    return std::cout ? status : leave(exitFailed, "standard output cannot be written");
}
