#include <algorithm>
#include <filesystem>
#include <memory>

#include "devhost/main/commands.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/named_files.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"
#include "devhost/window_controls.h"
#include "fields/window_texts.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// What a file that cannot be written is reported as.
constexpr ErrorNumber fileErrors[] = {ErrorNumber::PermissionDenied, ErrorNumber::PathFileAccess,
                                      ErrorNumber::PathNotFound};

/// Says that the stock file would overwrite the database or the trace, if so.
std::optional<std::string> fileClash(const StockOptions& options) {
    if (!options.file) return std::nullopt;
    std::error_code unknown;
    const auto whole = [&](std::string_view path) {
        const std::string place = portable::DrivePaths(options.common.driveC).resolve(path);
        return std::filesystem::weakly_canonical(std::filesystem::absolute(place, unknown), unknown);
    };
    // The window writes to the path without the blanks around it.
    const std::filesystem::path written = whole(trimBlanks(*options.file));
    for (const std::string& kept : {options.common.database, options.common.trace}) {
        if (kept.empty()) continue;
        const std::filesystem::path one = whole(kept);
        if (one == written || std::filesystem::equivalent(one, written, unknown)) {
            return "--file: the stock file would overwrite '" + kept + "'";
        }
    }
    return std::nullopt;
}

int runStock(const StockOptions& options) {
    if (const auto clash = fileClash(options)) return leave(exitWrongCommand, *clash);
    WindowCommand command;
    command.opener = "cmdStock";
    std::string file;
    command.actions = [&](DevHost& host, Window& window) {
        const FieldText fields[] = {
            {"--client", 5, options.client},     {"--organisation", 6, options.organisation},
            {"--address", 7, options.address},   {"--file", 0, options.file},
            {"--supplier", 1, options.supplier}, {"--brand", 3, options.brand},
        };
        auto refused = typeFields(host, window, fields);
        file = control<TextBox>(window, "Text1", 0).text();
        if (!refused) press(host, control<PushButton>(window, "XPButton1"));
        return refused;
    };
    command.successMessage = sExito;
    const auto ofTheFile = [](const std::string& told) {
        return std::ranges::any_of(fileErrors, [&](ErrorNumber number) {
            return told.starts_with("Error '" + plainNumber(static_cast<std::int32_t>(number)) + "'");
        });
    };
    command.reason = [&](DevHost&, std::string told) {
        return ofTheFile(told) ? joined({told, " (", file, ")"}) : told;
    };
    command.ownWords = [&](DevHost&, const std::string& told) -> std::string {
        if (!ofTheFile(told)) return "";
        const auto trouble = unwritableFile("stock file", trimBlanks(file), options.common.driveC);
        return trouble.value_or(joined({"the stock file '", file, "' cannot be written"}));
    };
    return runInWindow(options.common, command);
}

}  // namespace

void addStockCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<StockOptions>();
    CLI::App& command = addCommand(program, chosen, "stock", "Write the stock file through the stock window",
                                   options, runStock);
    command.add_option("--file", options->file, "the file to write")->type_name("PATH");
    command.add_option("--supplier", options->supplier, "the supplier's code");
    command.add_option("--brand", options->brand, "the brand's code");
    command.add_option("--client", options->client, "the dealer's client code");
    command.add_option("--organisation", options->organisation, "the supplier's sales organisation");
    addDryRun(command, options->common);
    command.add_option("--address", options->address, "the code of the shipping address");
}

}  // namespace pxtarvo::devhost
