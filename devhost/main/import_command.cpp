#include <memory>
#include <string>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/named_files.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"
#include "devhost/window_controls.h"
#include "fields/window_texts.h"
#include "import/run_texts.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

// What the window shows when it opens.
constexpr std::string_view windowYear = "2012";
constexpr std::string_view windowList = "same";

/// The only year of the barcode list that the window imports.
constexpr std::string_view barcodeYear = "2008";

int positionOf(std::string_view list) {
    return list == windowList ? 0 : 1;
}

std::optional<Refusal> fillIn(DevHost& host, Window& window, const ImportOptions& options) {
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

int runImport(const ImportOptions& options) {
    const std::string year = options.year.value_or(std::string(windowYear));
    const std::string list = options.list.value_or(std::string(windowList));
    WindowCommand command;
    bool closed = false;
    std::string file;
    if (options.supplier && trimBlanks(*options.supplier).empty()) {
        tell("--supplier is empty: the run goes with supplier 0");
    }
    command.actions = [&](DevHost& host, Window& window) {
        auto refused = fillIn(host, window, options);
        file = control<TextBox>(window, "Text1", 0).text();
        if (!refused) press(host, control<PushButton>(window, "XPButton1"));
        closed = window.unloaded();
        return refused;
    };
    command.successMessage = sExito;
    command.reason = [&](DevHost&, std::string told) -> std::string {
        if (list == windowList) return told;
        if (year != barcodeYear)
            return "nothing was imported: the list " + list + " has no import for " + year;
        if (!closed || told.starts_with(sRegistro)) return told;
        return "the host refused to insert a row; the run ended there, without a message";
    };
    command.ownWords = [&](DevHost&, const std::string&) -> std::string {
        if (list != windowList && year != barcodeYear) return "";
        return unreadableFile("list", trimBlanks(file), options.common.driveC).value_or("");
    };
    command.file = options.file.value_or("");
    return runInWindow(options.common, command);
}

}  // namespace

void addImportCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<ImportOptions>();
    CLI::App& command = addCommand(program, chosen, "import", "Import a price list through the import window",
                                   options, runImport);
    command.add_option("--year", options->year, "the list's year")
        ->check(CLI::IsMember({"2006", "2007", "2008", "2009", "2010", "2011", "2012"}));
    command.add_option("--list", options->list, "which supplier's list: same (yearly) or ama (barcodes)")
        ->check(CLI::IsMember({"same", "ama"}));
    command.add_option("--file", options->file, "the list's file")->type_name("PATH");
    command.add_option("--supplier", options->supplier, "the supplier's code");
    command.add_option("--brand", options->brand, "the brand's code");
}

}  // namespace pxtarvo::devhost
