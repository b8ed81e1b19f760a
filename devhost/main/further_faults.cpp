#include "devhost/main/further_faults.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

#include "devhost/main/scratch_folder.h"
#include "devhost/report/lenient_values.h"
#include "devhost/watch/watched_source.h"
#include "devhost/watch/watched_workbook.h"
#include "import/article_file.h"
#include "import/run_texts.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr char fieldSeparator = '\x01';

/// So that each run's retirement finds nothing to retire, and finds that at once.
constexpr const char* retireAll =
    "UPDATE Art SET Art_Estado = 1 WHERE Art_Estado = 0;"
    "CREATE INDEX Idx_Rehearsal ON Art (Art_Estado);";

/// Whether the reason is the platform's own for this error.
bool is(std::string_view reason, ErrorNumber number) {
    return reason.starts_with(errorDescription(static_cast<std::int32_t>(number)));
}

/// The position of the value that stopped the run: the one read last, but where a statement broke, the one
/// with the apostrophe that broke it; nothing where a column is missing, or where the value is not what is
/// Null but the price that the dealer's article has.
std::optional<std::size_t> culprit(const ListWatch& watch, const ListFault& fault) {
    if (is(fault.reason, ErrorNumber::ItemNotFound) || watch.lastPosition() < 0) return std::nullopt;
    const auto last = static_cast<std::size_t>(watch.lastPosition());
    if (is(fault.reason, ErrorNumber::InvalidUseOfNull) && !watch.values()[last].isNull()) {
        return std::nullopt;
    }
    for (const ErrorNumber ofAValue :
         {ErrorNumber::TypeMismatch, ErrorNumber::InvalidUseOfNull, ErrorNumber::Overflow}) {
        if (is(fault.reason, ofAValue)) return last;
    }
    for (std::size_t at = 0; at < fault.values.size(); ++at) {
        if (watch.readColumns()[at] && fault.values[at].find('\'') != std::string::npos) return at;
    }
    return last;
}

/// The file's lines from one on, as bytes.
std::string linesFrom(const std::string& bytes, std::int32_t firstLine) {
    std::size_t at = 0;
    for (std::int32_t line = 1; line < firstLine && at < bytes.size(); ++line) {
        const std::size_t end = bytes.find('\r', at);
        if (end == bytes.npos) return {};
        at = end + 1;
        if (at < bytes.size() && bytes[at] == '\n') ++at;
    }
    return bytes.substr(at);
}

std::string bytesOf(const std::string& place) {
    std::ifstream file(place, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

void watchList(DevHostOptions& host, const WindowCommand& command, const std::shared_ptr<ListWatch>& watch) {
    if (!command.list) return;
    if (command.list->table.empty()) {
        host.makeSpreadsheet = watchedSpreadsheet(watch);
    } else {
        host.makeSource = watchedSource(watch);
    }
}

std::string reasonForDealer(const DevHost& host, const RunEnding& ending) {
    if (!ending.told.empty()) return ending.told;
    if (host.state().refused.count() == 0) return "La ventana se cerró sin decir nada.";
    return joined({"El anfitrión rechazó una escritura: ", asOneLine(host.state().refused.first())});
}

std::string bareReason(std::string told) {
    const std::pair<std::string_view, std::string_view> heads[] = {{sRegistro, ". "}, {"Error '", ": "}};
    for (const auto& [begin, end] : heads) {
        const std::size_t at = told.starts_with(begin) ? told.find(end) : told.npos;
        if (at != told.npos) return told.substr(at + end.size());
    }
    return told;
}

ListFault faultAt(const ListWatch& watch, std::string reason) {
    ListFault fault;
    fault.row = watch.row();
    fault.reason = bareReason(std::move(reason));
    for (const Variant& value : watch.values()) fault.values.push_back(textOf(value));
    if (const auto at = culprit(watch, fault)) {
        fault.column = watch.columns()[*at];
        fault.value = fault.values[*at];
    }
    constexpr std::size_t codePosition = 1;  // in every list
    if (codePosition < fault.values.size()) fault.code = trimBlanks(fault.values[codePosition]);
    return fault;
}

std::vector<ListFault> furtherFaults(DevHost& host, const CommonOptions& options,
                                     const WindowCommand& command, const ListWatch& watch) {
    host.database()->runNative(retireAll);
    std::vector<ListFault> faults;
    while (true) {
        const std::int32_t before = watch.row();
        const RunEnding ending = runOnce(host, options, command, nullptr);
        if (ending.well() || watch.row() == before || !watch.stoppedInRow()) return faults;
        faults.push_back(faultAt(watch, reasonForDealer(host, ending)));
    }
}

ListFault faultyLine(const std::string& place, std::int32_t line, std::string reason) {
    ListFault fault;
    fault.row = line;
    fault.reason = bareReason(std::move(reason));
    const std::string rest = linesFrom(bytesOf(place), line);
    const std::string text = fromWindows1252(std::string_view(rest).substr(0, rest.find('\r')));
    for (const std::string_view field : split(text, fieldSeparator)) fault.values.emplace_back(field);
    fault.value = replaced(text, std::string(1, fieldSeparator), "|");
    return fault;
}

std::vector<ListFault> faultyLines(DevHostOptions hostOptions, const CommonOptions& options,
                                   const WindowCommand& command, const std::string& place,
                                   std::int32_t firstLine) {
    const ScratchFolder folder;
    const std::string rest = folder.file("articulo.tdw");
    hostOptions.articleFile = rest;
    DevHost host(std::move(hostOptions));
    const std::string bytes = bytesOf(place);
    std::vector<ListFault> faults;
    while (true) {
        std::ofstream(rest, std::ios::binary | std::ios::trunc) << linesFrom(bytes, firstLine);
        const RunEnding ending = runOnce(host, options, command, nullptr);
        auto& files = host.platform().textFiles();
        const std::int32_t read = files.linesRead(nFicheroArticulos);
        files.close(nFicheroArticulos);  // a run that stops leaves it open
        if (ending.well() || read == 0) return faults;
        faults.push_back(faultyLine(place, firstLine + read - 1, ending.told));
        firstLine += read;
    }
}

}  // namespace pxtarvo::devhost
