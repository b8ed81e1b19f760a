// pxtarvo-winehost: the development host over the real plug-in, for a person or a script.

#include <fstream>
#include <iostream>
#include <map>

#include "devhost/wine/objects/object_kind.h"
#include "devhost/wine/wine_host.h"

namespace {

using namespace pxtarvo;
using namespace pxtarvo::devhost;

constexpr const char* usage =
    "pxtarvo-winehost DB --dll FILE --drive-c DIR [--script FILE] [--hands posted|keyboard] [--trace FILE]\n"
    "                 [--pictures DIR] [--cursor client|server]\n"
    "Opens the import window of the plug-in over a database file. Without a script a person works in it.\n";

std::string option(const std::map<std::string, std::string>& options, const std::string& name) {
    const auto found = options.find(name);
    return found == options.end() ? std::string() : found->second;
}

int run(const std::map<std::string, std::string>& given) {
    DevHostOptions options;
    options.database = option(given, "DB");
    options.driveC = option(given, "--drive-c");
    if (option(given, "--cursor") == "server") options.cursor = CursorLocation::Server;
    ScreenSession screen;
    screen.pictures = option(given, "--pictures");
    if (const std::string name = option(given, "--script"); !name.empty()) {
        std::ifstream file(name);
        if (!file) throw std::runtime_error(name + " cannot be read");
        screen.script = readScript(file);
        screen.hands = option(given, "--hands") == "keyboard" ? Hands::Keyboard : Hands::Posted;
    }
    std::ofstream trace;
    if (const std::string name = option(given, "--trace"); !name.empty()) {
        trace.open(name, std::ios::binary);
        if (!trace) throw std::runtime_error(name + " cannot be written");
    }
    const PlugIn plugIn(option(given, "--dll"));
    WineHost host(
        plugIn, options, [&](std::string_view line) { trace << line << std::endl; }, std::move(screen));
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
    std::map<std::string, std::string> given;
    for (int at = 1; at < argc; ++at) {
        const std::string name = argv[at];
        if (!name.starts_with("--")) {
            given["DB"] = name;
        } else if (at + 1 < argc) {
            given[name] = argv[++at];
        }
    }
    const std::string cursor = option(given, "--cursor");
    const bool knownCursor = cursor.empty() || cursor == "client" || cursor == "server";
    if (option(given, "DB").empty() || option(given, "--dll").empty() || !knownCursor) {
        std::cerr << usage;
        return 2;
    }
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
