#pragma once

// What the commands that work in a window have in common.

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "devhost/dev_host.h"
#include "devhost/main/exit_status.h"
#include "devhost/main/options.h"
#include "devhost/report/list_kind.h"
#include "devhost/report/run_report.h"

namespace pxtarvo::devhost {

/// The clock that the options ask for.
std::shared_ptr<const Clock> clockFor(const CommonOptions& options);
/// Says that the trace, the report or the changes would overwrite the database or `file`, if so.
std::optional<std::string> outputClash(const CommonOptions& options, std::string_view file);
/// The recorder that the options ask for, empty for none; 75 where its file cannot be written.
std::shared_ptr<Recorder> recorderFor(const CommonOptions& options);

/// A field did not take what the command line gives for it; nothing was started.
struct Refusal {
    ExitStatus status = exitWrongCommand;
    std::string reason;
};

struct WindowCommand {
    /// The import window's button that opens the window in which the command works; empty when that is the
    /// import window itself.
    std::string_view opener{};
    /// Works in the window, unless a field did not take what it was given.
    std::function<std::optional<Refusal>(DevHost& host, Window& window)> actions;
    /// The message that ends a run which did what it was to do.
    std::string_view successMessage;
    /// Where set, whether a run ended well without a message.
    std::function<bool()> endedWell{};
    /// Why a run did not do what it was to do, where neither the last message nor an error tells it whole;
    /// `told` is what they tell.
    std::function<std::string(DevHost& host, std::string told)> reason{};
    /// What the program itself says of a run that ended with the message `told` instead, such as that its
    /// file is missing; empty for nothing.
    std::function<std::string(DevHost& host, const std::string& told)> ownWords{};
    std::string file{};         ///< what the run reads beside the database, empty where that is left alone
    std::string articleFile{};  ///< stands for the article file of the location update

    std::optional<ListLook> look{};  ///< of an Access list, once the command works in its window
    std::int32_t rows = 0;  ///< of the list, once the command works in its window; 0 where that is not known

    // For a report.

    RunWords words = importWords;
    std::string year{};              ///< of the list, empty for none
    std::optional<ListKind> list{};  ///< the list that is imported
    bool readsArticleFile = false;   ///< the run reads the article file, line by line
};

/// How a run ended.
struct RunEnding {
    std::optional<Refusal> notTaken;     ///< nothing was started
    std::optional<std::string> failure;  ///< why it did not end well
    std::string told{};      ///< what the last message or the error said, on one line; empty for nothing
    std::string lastLine{};  ///< the failure for standard error, where a message has been told already
    bool well() const noexcept { return !notTaken && !failure; }
};

/// Opens the import window once and runs the command in it or in the window that its button opens, within a
/// transaction of the host's where the options ask for one. What the host's user is to do about messages is
/// the caller's to set; `onWindow`, which may be empty, is told of the window in which the command works, and
/// nullptr when it has worked.
RunEnding runOnce(DevHost& host, const CommonOptions& options, const WindowCommand& command,
                  const std::function<void(Window*)>& onWindow);

/// Runs the command: messages go to standard output, progress and the reason of a failure to standard error,
/// what the options ask to be kept of it to its files. Gives back the exit status.
int runInWindow(const CommonOptions& options, const WindowCommand& command);

/// What an option says of a text box.
struct FieldText {
    const char* option;
    int index;  ///< in Text1
    const std::optional<std::string>& text;
};
/// Types what the options give into the window's fields, in this order, over what they hold. A field refuses
/// what its key filter does not let through (the command line is wrong) and what leaving it is answered with
/// a message, an unknown code say (the run has failed).
std::optional<Refusal> typeFields(DevHost& host, const Window& window, std::span<const FieldText> fields);
/// Presses a button; once more where a message of the field that lost the focus swallowed the click.
void press(DevHost& host, PushButton& button);

/// A message's text on one line.
std::string asOneLine(std::string_view text);
/// An error as the run-time report describes it.
std::string described(const RuntimeError& error);

}  // namespace pxtarvo::devhost
