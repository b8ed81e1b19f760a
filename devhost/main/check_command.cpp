#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/import_run.h"
#include "devhost/main/options.h"
#include "devhost/main/run_keeping.h"
#include "devhost/main/window_command.h"
#include "import/frm_imp_tarifas.h"
#include "import/list_2006.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

struct CheckOptions {
    CommonOptions common;
    std::string list;
    std::string year;
    std::string kind = "same";
};

std::string_view titleOf(WarningKind kind) {
    switch (kind) {
        case WarningKind::RepeatedCode:
            return "the code stands twice";
        case WarningKind::BlanksAroundCode:
            return "blanks around the code";
        case WarningKind::ApostropheInCode:
            return "an apostrophe in the code";
        case WarningKind::UnknownGroup:
            return "unknown group";
        case WarningKind::PriceNotPositive:
            return "price of zero or below";
        case WarningKind::LongText:
            return "text longer than the column";
    }
    return {};
}

std::string lineOf(const ListFault& fault) {
    std::string line = joined({"row ", plainNumber(fault.row), ", code '", fault.code, "'"});
    if (!fault.column.empty()) line += joined({", column ", fault.column, ", value '", fault.value, "'"});
    return joined({line, ": ", asOneLine(fault.reason)});
}

std::string lineOf(const ListWarning& warning) {
    std::string line =
        joined({"row ", plainNumber(warning.row), ", code '", warning.code, "': ", titleOf(warning.kind)});
    switch (warning.kind) {
        case WarningKind::RepeatedCode:
            line += joined({", also in row ", plainNumber(warning.otherRow)});
            if (!warning.value.empty()) line += joined({": ", warning.otherValue, " and ", warning.value});
            break;
        case WarningKind::UnknownGroup:
            line += joined({" '", warning.value, "'"});
            if (warning.otherRow > 0) line += ", takes the text of row " + plainNumber(warning.otherRow);
            break;
        default:
            line += joined({": '", warning.value, "'"});
            break;
    }
    return line;
}

/// The list's faults and warnings on standard output; the exit status.
int tellAll(const RunReport& report) {
    for (const ListFault& fault : report.faults) std::cout << "stops: " << lineOf(fault) << '\n';
    for (const ListWarning& warning : report.warnings) std::cout << "warning: " << lineOf(warning) << '\n';
    std::cout << plainNumber(report.list ? report.list->rows : 0) << " rows, " << report.faults.size()
              << " would stop the import, " << report.warnings.size()
              << (report.warnings.size() == 1 ? " warning" : " warnings") << std::endl;
    if (!report.endedWell || !report.faults.empty()) {
        return leave(exitFailed, report.faults.empty() ? report.reason : lineOf(report.faults.front()));
    }
    const bool strange = report.list && report.list->look && !report.list->look->faults.empty();
    return report.warnings.empty() && !strange ? exitDone : exitRefused;
}

int runCheck(const CheckOptions& options) {
    if (std::filesystem::is_directory(options.list)) {
        return leave(exitFailed, "'" + options.list + "' is a folder, not a list");
    }
    ImportOptions import;
    import.common = options.common;
    import.common.inTransaction = options.year == sAnio2006;  // the transaction that this import ends
    import.year = options.year;
    import.list = options.kind;
    import.file = options.list;
    ImportRun run(import);
    if (!run.command().list) {
        return leave(exitWrongCommand,
                     joined({"the window has no import for the list ", options.kind, " of ", options.year}));
    }
    run.command().words = checkWords;
    DevHostOptions hostOptions;
    hostOptions.data = HostData::Empty;
    hostOptions.clock = clockFor(options.common);
    RunKeeping keeping(import.common, run.command(), RunKeeping::Purpose::Check);
    keeping.prepare(hostOptions);
    DevHost host(std::move(hostOptions));
    keeping.begin(host);
    const RunEnding ending =
        runOnce(host, import.common, run.command(), [&](Window* window) { keeping.window(window); });
    keeping.finish(host, ending);
    return tellAll(keeping.report());
}

}  // namespace

void addCheckCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *program.add_subcommand(
        "check",
        "Read a list without any database and name its faults; 0 clean, 3 warnings only, 1 would stop");
    command.add_option("LIST", options->list, "the list's file")->required();
    command.add_option("--year", options->year, "the list's year")
        ->required()
        ->check(CLI::IsMember(frmImpTarifas::anios()));
    command.add_option("--list", options->kind, "which supplier's list: same (yearly) or ama (barcodes)")
        ->check(CLI::IsMember({"same", "ama"}));
    command.add_option("--report", options->common.report, "write the faults and warnings as a page")
        ->type_name("FILE.html");
    command.add_option("--csv", options->common.csvFolder, "write the report's tables into this folder")
        ->type_name("FOLDER");
    command.add_option("--drive-c", options->common.driveC, "the folder that stands for drive C:")
        ->type_name("DIR")
        ->check(CLI::ExistingDirectory);
    command.callback([options, &chosen] { chosen = [options] { return runCheck(*options); }; });
}

}  // namespace pxtarvo::devhost
