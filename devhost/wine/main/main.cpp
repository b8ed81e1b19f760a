// pxtarvo-winehost: the development host over the real plug-in, for a person or a script.

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>

#include "devhost/wine/objects/object_kind.h"
#include "devhost/wine/wine_host.h"

namespace {

using namespace pxtarvo;
using namespace pxtarvo::devhost;

struct Given {
    DevHostOptions options;
    std::string dll, script, hands, trace, pictures;
};

int run(const Given& given) {
    ScreenSession screen;
    screen.pictures = given.pictures;
    if (!given.script.empty()) {
        std::ifstream file(given.script);
        if (!file) throw std::runtime_error(given.script + " cannot be read");
        screen.script = readScript(file);
        screen.hands = given.hands == "keyboard" ? Hands::Keyboard : Hands::Posted;
    }
    std::ofstream trace;
    if (!given.trace.empty()) {
        trace.open(given.trace, std::ios::binary);
        if (!trace) throw std::runtime_error(given.trace + " cannot be written");
    }
    const PlugIn plugIn(given.dll);
    WineHost host(
        plugIn, given.options, [&](std::string_view line) { trace << line << std::endl; }, std::move(screen));
    host.run();
    for (const std::string& trouble : host.screen().troubles()) std::cerr << trouble << '\n';
    for (const std::string& violation : host.violations()) std::cerr << violation << '\n';
    for (const std::string& violation : objectBook().violations) std::cerr << violation << '\n';
    if (!trace) std::cerr << "the trace cannot be written\n";
    const bool well = trace && host.screen().troubles().empty() && host.violations().empty() &&
                      objectBook().violations.empty();
    return well ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App program(
        "Opens the import window of the plug-in over a database file. Without a script a person works in it.",
        "pxtarvo-winehost");
    Given given;
    std::string cursor;
    program.add_option("DB", given.options.database)->required();
    program.add_option("--dll", given.dll)->required();
    program.add_option("--drive-c", given.options.driveC);
    program.add_option("--script", given.script);
    program.add_option("--hands", given.hands)->check(CLI::IsMember({"posted", "keyboard"}));
    program.add_option("--trace", given.trace);
    program.add_option("--pictures", given.pictures);
    program.add_option("--cursor", cursor)->check(CLI::IsMember({"client", "server"}));
    CLI11_PARSE(program, argc, argv);
    if (cursor == "server") given.options.cursor = CursorLocation::Server;
    CoInitialize(nullptr);
    try {
        return run(given);
    } catch (const RuntimeError& error) {
        std::cerr << "Error '" << error.number() << "': " << error.description() << '\n';
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return 1;
}
