#include "devhost/main/options.h"

#include <regex>

#include "devhost/main/named_files.h"

namespace pxtarvo::devhost {

namespace {

/// Exactly "YYYY-MM-DD HH:MM:SS".
std::optional<CalendarTime> readTime(const std::string& text) {
    static const std::regex form(R"((\d{4})-(\d\d)-(\d\d) (\d\d):(\d\d):(\d\d))");
    std::smatch parts;
    if (!std::regex_match(text, parts, form)) return std::nullopt;
    const auto part = [&](std::size_t at) { return std::stoi(parts[at]); };
    const CalendarTime time{part(1), part(2), part(3), part(4), part(5), part(6)};
    return isCalendarTime(time) ? std::optional(time) : std::nullopt;
}

}  // namespace

void addCommonOptions(CLI::App& command, CommonOptions& options) {
    addDatabaseOption(command, options.database);
    command.add_option("--trace", options.trace, "write the record of the calls to this file")
        ->type_name("FILE");
    command
        .add_option_function<std::string>(
            "--now",
            [&options](const std::string& text) {
                options.now = readTime(text);
                if (!options.now) throw CLI::ValidationError("--now", "not 'YYYY-MM-DD HH:MM:SS': " + text);
            },
            "the date and time that everything sees")
        ->type_name("'YYYY-MM-DD HH:MM:SS'");
    command
        .add_option_function<std::string>(
            "--answer",
            [&options](const std::string& answer) {
                options.answer = answer == "yes" ? MessageAnswer::Yes : MessageAnswer::No;
            },
            "the answer to every question (default: yes)")
        ->check(CLI::IsMember({"yes", "no"}));
    command
        .add_option_function<std::string>(
            "--cursor",
            [&options](const std::string& where) {
                options.cursor = where == "server" ? CursorLocation::Server : CursorLocation::Client;
            },
            "where the host keeps the results of queries (default: client)")
        ->check(CLI::IsMember({"client", "server"}));
    command.add_flag(
        "--in-transaction", options.inTransaction,
        "open a transaction first, as some hosts do; at the end it is committed where the run ended as its success message says, else rolled back");
    command.add_option("--drive-c", options.driveC, "the folder that stands for drive C:")
        ->type_name("DIR")
        ->check(CLI::ExistingDirectory);
    command.add_flag("--quiet", options.quiet, "show no progress");
}

void addDryRun(CLI::App& command, CommonOptions& options) {
    command.add_flag("--dry-run", options.dryRun, "do everything, and keep nothing of it");
}

void addReportOptions(CLI::App& command, CommonOptions& options) {
    addDryRun(command, options);
    command.add_option("--changes", options.changes, "keep what the run changed in this file, for 'undo'")
        ->type_name("FILE")
        ->excludes("--dry-run");
    command.add_option("--report", options.report, "write what the run did, or would do, as a page")
        ->type_name("FILE.html");
    command.add_option("--csv", options.csvFolder, "write the report's tables into this folder")
        ->type_name("FOLDER");
}

}  // namespace pxtarvo::devhost
