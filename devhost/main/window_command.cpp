#include "devhost/main/window_command.h"

#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <utility>

#include "devhost/main/exit_status.h"
#include "devhost/main/named_files.h"
#include "devhost/main/progress_display.h"
#include "devhost/main/run_keeping.h"
#include "devhost/window_controls.h"
#include "platform/portable/clocks.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// A message's text as lines of the terminal.
std::string asLines(std::string_view text) {
    return replaced(text, "\r\n", "\n");
}

void print(const ShownMessage& shown) {
    std::cout << asLines(shown.message.text) << '\n';
    if (shown.message.buttons == MessageButtons::YesNo) {
        std::cout << (shown.answer == MessageAnswer::Yes ? "> Sí\n" : "> No\n");
    }
    std::cout << std::flush;
}

/// Ends the host's own transaction, where the run has not ended it. The error of a commit.
std::optional<std::string> endTransaction(Connection& connection, bool well) {
    try {
        well ? connection.CommitTrans() : connection.RollbackTrans();
    } catch (const RuntimeError& error) {
        if (well && !error.is(ErrorNumber::NoTransactionOpen)) return described(error);
    }
    return std::nullopt;
}

/// What a host and its run leave the program with.
int report(const DevHost& host, const RunEnding& ending) {
    const RefusedWrites& refused = host.state().refused;
    const std::size_t count = refused.count();
    if (count > 0) {
        tell(joined({std::to_string(count),
                     count == 1 ? " write was refused: " : " writes were refused, the first: ",
                     asOneLine(refused.first())}));
    }
    int status = count > 0 ? exitRefused : exitDone;
    if (ending.notTaken) {
        status = leave(ending.notTaken->status, ending.notTaken->reason);
    } else if (ending.failure) {
        status = leave(exitFailed, ending.lastLine);
    }
    for (const std::string& violation : host.violations()) {
        status = leave(exitFailed, "against the rules of the host's library: " + violation);
    }
    return status;
}

/// The last line on standard error for a run that `failure` ended: what a window has said (`told`) is not
/// said again.
std::string lastLine(DevHost& host, const WindowCommand& command, const std::string& failure,
                     const std::string& told) {
    if (std::string words = command.ownWords ? command.ownWords(host, told) : ""; !words.empty())
        return words;
    if (told.empty() || failure.find(told) == failure.npos) return failure;
    return joined({"the run did not end with '", asOneLine(command.successMessage), "'"});
}

int runInHost(DevHost& host, const CommonOptions& options, const WindowCommand& command,
              RunKeeping& keeping) {
    DevUser& user = host.user();
    std::optional<RunProgress> progress;
    user.onMessage = [&](const ShownMessage& shown) {
        if (progress) progress->clear();
        print(shown);
    };
    user.onYielded = [&] {
        if (progress) progress->yielded();
    };
    keeping.begin(host);
    const RunEnding ending = runOnce(host, options, command, [&](Window* window) {
        progress.reset();
        if (window && !options.quiet) progress.emplace(*window, command.rows);
        keeping.window(window);
    });
    progress.reset();
    const int status = report(host, ending);
    keeping.finish(host, ending);
    return status;
}

}  // namespace

void tell(std::string_view line) {
    std::cerr << "pxtarvo-host: " << line << std::endl;
}

int leave(ExitStatus status, std::string_view reason) {
    tell(reason);
    return status;
}

std::string asOneLine(std::string_view text) {
    return replaced(replaced(text, "\r\n\r\n", " "), "\r\n", " ");
}

std::string described(const RuntimeError& error) {
    return joined(
        {"Error '", plainNumber(error.number()), "' en tiempo de ejecución: ", error.description()});
}

std::optional<std::string> outputClash(const CommonOptions& options, std::string_view file) {
    const std::pair<std::string_view, const std::string&> outputs[] = {
        {"--trace", options.trace}, {"--report", options.report}, {"--changes", options.changes}};
    const std::string list = portable::DrivePaths(options.driveC).resolve(file);
    for (const auto& [option, output] : outputs) {
        for (const std::string& read : {options.database, list}) {
            std::error_code missing;  // what is not there cannot be overwritten
            if (!output.empty() && std::filesystem::equivalent(output, read, missing)) {
                return joined({option, ": '", output, "' would overwrite what the command reads"});
            }
        }
    }
    return std::nullopt;
}

std::shared_ptr<const Clock> clockFor(const CommonOptions& options) {
    if (options.now) return std::make_shared<portable::FixedClock>(*options.now);
    return std::make_shared<portable::SystemClock>();
}

std::shared_ptr<Recorder> recorderFor(const CommonOptions& options) {
    if (options.trace.empty()) return nullptr;
    return Recorder::toFile(options.trace);
}

RunEnding runOnce(DevHost& host, const CommonOptions& options, const WindowCommand& command,
                  const std::function<void(Window*)>& onWindow) {
    DevUser& user = host.user();
    RunEnding ending;
    user.yesNo = options.answer;
    const std::size_t toldBefore = user.messages().size();
    bool opened = command.opener.empty();
    user.onWindowShown = [&](Window& window) {
        if (!std::exchange(opened, true)) {
            press(host, control<PushButton>(window, command.opener));
            return;
        }
        if (onWindow) onWindow(&window);
        ending.notTaken = command.actions(host, window);
        if (onWindow) onWindow(nullptr);
    };
    if (options.inTransaction) host.connection()->BeginTrans();
    try {
        host.run();
    } catch (const RuntimeError& error) {
        ending.failure = ending.told = described(error);
    }
    user.onWindowShown = nullptr;
    const bool said = user.messages().size() > toldBefore;
    if (!ending.failure && !(said && user.lastMessageIs(command.successMessage)) &&
        !(command.endedWell && command.endedWell())) {
        if (said) ending.told = asOneLine(user.messages().back().message.text);
        std::string failure = ending.told.empty() ? "nothing was said" : ending.told;
        ending.failure = command.reason ? command.reason(host, std::move(failure)) : std::move(failure);
        ending.lastLine = lastLine(host, command, *ending.failure, ending.told);
    } else if (ending.failure) {
        ending.lastLine = *ending.failure;
    }
    if (options.inTransaction) {
        if (auto notCommitted = endTransaction(*host.connection(), ending.well())) {
            ending.lastLine = ending.told = *notCommitted;
            ending.failure = std::move(notCommitted);
        }
    }
    return ending;
}

int runInWindow(const CommonOptions& options, const WindowCommand& command) {
    if (const auto clash = outputClash(options, command.file)) return leave(exitWrongCommand, *clash);
    if (const auto missing = missingDatabase(options.database)) return leave(exitFailed, *missing);
    DevHostOptions hostOptions;
    hostOptions.database = options.database;
    hostOptions.cursor = options.cursor;
    hostOptions.driveC = options.driveC;
    hostOptions.articleFile = command.articleFile;
    hostOptions.clock = clockFor(options);
    std::shared_ptr<Recorder> recorder;
    try {
        hostOptions.recorder = recorder = recorderFor(options);
    } catch (const RuntimeError& error) {
        return leave(exitFailed, error.description());
    }
    RunKeeping keeping(options, command);
    keeping.prepare(hostOptions);
    int status = exitFailed;
    try {
        DevHost host(std::move(hostOptions));
        status = runInHost(host, options, command, keeping);
    } catch (const RuntimeError& error) {
        tell(described(error));
    }
    try {
        if (recorder) recorder->finish();
    } catch (const RuntimeError& error) {
        return leave(exitFailed, error.description());
    }
    return status;
}

std::optional<Refusal> typeFields(DevHost& host, const Window& window, std::span<const FieldText> fields) {
    for (const FieldText& field : fields) {
        if (!field.text) continue;
        const std::size_t told = host.user().messages().size();
        auto& box = control<TextBox>(window, "Text1", field.index);
        host.desktop().type(box, *field.text);
        const bool taken = box.text() == *field.text;
        host.desktop().press(vkReturn);
        if (!taken) {
            return Refusal{exitWrongCommand,
                           joined({field.option, ": the field does not take '", *field.text, "'"})};
        }
        if (host.user().messages().size() > told) {
            return Refusal{exitFailed, joined({field.option, ": the window refused '", *field.text, "'"})};
        }
    }
    return std::nullopt;
}

void press(DevHost& host, PushButton& button) {
    if (!host.desktop().click(button)) host.desktop().click(button);
}

}  // namespace pxtarvo::devhost
