#include <memory>
#include <string>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"
#include "devhost/window_controls.h"
#include "fields/window_texts.h"

namespace pxtarvo::devhost {

namespace {

// What the window shows when it opens.
constexpr std::string_view windowYear = "2012";
constexpr std::string_view windowList = "same";

/// Lists that the window has no procedure for yet.
struct MissingList {
    std::string_view list;
    std::string_view year;
    std::string_view reason;
};

constexpr MissingList missingLists[] = {
    {"same", "2006", "the list of 2006 cannot be imported yet"},
    {"ama", "2008", "the barcode list of 2008 cannot be imported yet"},
};

int positionOf(std::string_view list) {
    return list == windowList ? 0 : 1;
}

/// Fills the window in; a text says which field did not take what it was given.
std::optional<std::string> fillIn(DevHost& host, Window& window, const ImportOptions& options) {
    portable::SimulatedDesktop& desktop = host.desktop();
    if (options.year) desktop.choose(control<ComboBox>(window, "Combo1"), *options.year);
    if (options.year || options.list) {
        const int list = positionOf(options.list.value_or(std::string(windowList)));
        desktop.click(control<OptionButton>(window, "Option1", list));
    }
    const FieldText fields[] = {
        {"--file", 0, options.file}, {"--supplier", 1, options.supplier}, {"--brand", 3, options.brand}};
    return typeFields(host, window, fields);
}

int runImport(const CommonOptions& common, const ImportOptions& options) {
    const std::string year = options.year.value_or(std::string(windowYear));
    const std::string list = options.list.value_or(std::string(windowList));
    for (const MissingList& missing : missingLists) {
        if (missing.list == list && missing.year == year) return leave(exitWrongCommand, missing.reason);
    }
    const std::string nothingHappened =
        "nothing was imported: the list " + list + " has no import for " + year;
    WindowCommand command;
    command.actions = [&](DevHost& host, Window& window) {
        auto refused = fillIn(host, window, options);
        if (!refused) press(host, control<PushButton>(window, "XPButton1"));
        return refused;
    };
    command.successMessage = sExito;
    command.nothingHappened = nothingHappened;
    command.nothingHappens = list != windowList;
    command.file = options.file.value_or("");
    return runInWindow(common, command);
}

}  // namespace

void addImportCommand(CLI::App& program, Command& chosen) {
    struct Both {
        CommonOptions common;
        ImportOptions import;
    };
    const auto options = std::make_shared<Both>();
    CLI::App& command = *program.add_subcommand("import", "Import a price list through the import window");
    addCommonOptions(command, options->common);
    command.add_option("--year", options->import.year, "the list's year")
        ->check(CLI::IsMember({"2006", "2007", "2008", "2009", "2010", "2011", "2012"}));
    command
        .add_option("--list", options->import.list, "which supplier's list: same (yearly) or ama (barcodes)")
        ->check(CLI::IsMember({"same", "ama"}));
    command.add_option("--file", options->import.file, "the list's file")->type_name("PATH");
    command.add_option("--supplier", options->import.supplier, "the supplier's code");
    command.add_option("--brand", options->import.brand, "the brand's code");
    command.callback(
        [options, &chosen] { chosen = [options] { return runImport(options->common, options->import); }; });
}

}  // namespace pxtarvo::devhost
