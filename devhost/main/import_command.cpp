#include <memory>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/import_run.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"
#include "import/frm_imp_tarifas.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

int runImport(const ImportOptions& options) {
    if (options.supplier && trimBlanks(*options.supplier).empty()) {
        tell("--supplier is empty: the run goes with supplier 0");
    }
    ImportRun run(options);
    return runInWindow(options.common, run.command());
}

}  // namespace

void addImportCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<ImportOptions>();
    CLI::App& command = addCommand(program, chosen, "import", "Import a price list through the import window",
                                   options, runImport);
    command.add_option("--year", options->year, "the list's year")
        ->check(CLI::IsMember(frmImpTarifas::anios()));
    command.add_option("--list", options->list, "which supplier's list: same (yearly) or ama (barcodes)")
        ->check(CLI::IsMember({"same", "ama"}));
    command.add_option("--file", options->file, "the list's file")->type_name("PATH");
    command.add_option("--supplier", options->supplier, "the supplier's code");
    command.add_option("--brand", options->brand, "the brand's code");
    addReportOptions(command, options->common);
}

}  // namespace pxtarvo::devhost
