// The maintenance runs of the import window, each behind a button of its own.

#include <memory>
#include <string>

#include "devhost/main/commands.h"
#include "devhost/main/named_files.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"
#include "devhost/window_controls.h"
#include "import/article_file.h"
#include "import/run_texts.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

struct LocationsOptions {
    CommonOptions common;
    std::string file;
};

struct FixCodesOptions {
    CommonOptions common;
};

WindowCommand pressing(std::string_view button) {
    WindowCommand command;
    command.actions = [button](DevHost& host, Window& window) -> std::optional<Refusal> {
        press(host, control<PushButton>(window, button));
        return std::nullopt;
    };
    return command;
}

int runLocations(const LocationsOptions& options) {
    const std::string success = textoUbicacionesLeidas();
    WindowCommand command = pressing("XPButton4");
    command.successMessage = success;
    command.file = options.file.empty() ? std::string(sFicheroArticulos) : options.file;
    command.articleFile = options.file;
    command.words = locationWords;
    command.readsArticleFile = true;
    command.reason = [&](DevHost& host, std::string told) {
        // The run leaves the file open at the line that stopped it.
        const std::int32_t line = host.platform().textFiles().linesRead(nFicheroArticulos);
        told.append(" (").append(command.file);
        if (line > 0) told.append(", line ").append(plainNumber(line));
        return told.append(")");
    };
    command.ownWords = [&](DevHost& host, const std::string&) -> std::string {
        if (auto trouble = unreadableFile("article file", command.file, options.common.driveC))
            return *trouble;
        const std::int32_t line = host.platform().textFiles().linesRead(nFicheroArticulos);
        return line > 0 ? joined({"the run stopped at line ", plainNumber(line), " of ", command.file}) : "";
    };
    return runInWindow(options.common, command);
}

int runFixCodes(const FixCodesOptions& options) {
    WindowCommand command = pressing("XPButton3");
    command.successMessage = sCorreccionConcluida;
    command.words = correctionWords;
    command.reason = [](DevHost& host, std::string told) -> std::string {
        const auto& messages = host.user().messages();
        const bool refused = !messages.empty() && messages.back().answer == MessageAnswer::No;
        return refused ? "nothing was corrected: the question was answered no" : told;
    };
    return runInWindow(options.common, command);
}

}  // namespace

void addLocationsCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<LocationsOptions>();
    CLI::App& command =
        addCommand(program, chosen, "locations", "Give articles without a place the one of the article file",
                   options, runLocations);
    command
        .add_option("--file", options->file, "stands for the article file, " + std::string(sFicheroArticulos))
        ->type_name("PATH");
    addReportOptions(command, options->common);
}

void addFixCodesCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<FixCodesOptions>();
    CLI::App& command = addCommand(program, chosen, "fix-codes",
                                   "Move the stock of codes without a leading zero to the same codes with it",
                                   options, runFixCodes);
    addReportOptions(command, options->common);
}

}  // namespace pxtarvo::devhost
