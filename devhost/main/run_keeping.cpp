#include "devhost/main/run_keeping.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "devhost/main/further_faults.h"
#include "devhost/report/list_file.h"
#include "devhost/report/report_csv.h"
#include "devhost/report/report_page.h"
#include "devhost/window_controls.h"
#include "import/article_file.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/values/date_text.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

// In Text1 of the windows.
constexpr int fileField = 0;
constexpr int supplierField = 1;
constexpr int brandField = 3;

/// "24 NOMBRE": a code's box and the one beside it.
std::string codeAndName(const Window& window, int field) {
    const auto* code = findControl<TextBox>(window, "Text1", field);
    const auto* name = findControl<TextBox>(window, "Text1", field + 1);
    if (!code || !name) return {};
    return std::string(trimBlanks(code->text() + " " + name->text()));
}

std::string timeText(const CalendarTime& time) {
    const auto two = [](int part) { return (part < 10 ? "0" : "") + std::to_string(part); };
    return joined({dayMonthYear(time), " ", two(time.hour), ":", two(time.minute)});
}

void requireWritable(const std::string& path) {
    if (path.empty()) return;
    if (!std::ofstream(path, std::ios::app)) throw std::runtime_error("'" + path + "' cannot be written");
}

}  // namespace

RunKeeping::RunKeeping(const CommonOptions& options, const WindowCommand& command, Purpose purpose)
    : options_(options),
      command_(command),
      purpose_(purpose),
      reports_(purpose == Purpose::Check || !options.report.empty() || !options.csvFolder.empty()) {
    if (!options.changes.empty()) changesFile_.emplace(options.changes);
    requireWritable(options.report);
    report_.words = command.words;
    report_.rehearsal = options.dryRun || purpose == Purpose::Check;
    if (purpose == Purpose::Keep)
        report_.database = std::filesystem::path(options.database).filename().string();
    if (reports_ && command.list) {
        findings_.emplace(*command.list);
        watch_->wanted = findings_->wanted();
        watch_->onRow = [this](ListRow& row) { findings_->row(row); };
    }
}

void RunKeeping::prepare(DevHostOptions& host) {
    if (options_.dryRun) host.data = HostData::Copy;
    if (!reports_) return;
    watchList(host, command_, watch_);
    hostOptions_ = host;
    hostOptions_.recorder = nullptr;
}

void RunKeeping::begin(DevHost& host) {
    if (changesFile_ || (reports_ && purpose_ == Purpose::Keep)) log_.emplace(host.database());
}

void RunKeeping::window(Window* shown) {
    if (shown) {
        window_ = shown;
    } else if (reports_) {
        takeFields();
    }
}

void RunKeeping::takeFields() {
    if (command_.list || command_.readsArticleFile) {
        const auto* file = findControl<TextBox>(*window_, "Text1", fileField);
        const std::string path = command_.readsArticleFile ? command_.file
                                 : file                    ? file->text()
                                                           : std::string();
        listPlace_ = portable::DrivePaths(options_.driveC).resolve(path);
    }
    if (purpose_ == Purpose::Check) return;
    const bool ofImport = command_.list.has_value();
    if (ofImport) report_.supplier = codeAndName(*window_, supplierField);
    if (ofImport || !command_.opener.empty()) report_.brand = codeAndName(*window_, brandField);
}

void RunKeeping::takeEnding(const DevHost& host, const RunEnding& ending) {
    report_.when = timeText(hostOptions_.clock->now());
    report_.endedWell = ending.well();
    if (!ending.well()) report_.reason = reasonForDealer(host, ending);
    if (purpose_ == Purpose::Keep) {
        for (const ShownMessage& shown : host.user().messages())
            report_.messages.push_back(shown.message.text);
    }
    report_.refusedWrites = host.state().refused.count();
    report_.firstRefused = host.state().refused.first();
    if (command_.readsArticleFile) {
        report_.lastRow = host.platform().textFiles().linesRead(nFicheroArticulos);  // 0 once it is closed
        report_.stoppedInRow = report_.lastRow > 0;
    } else {
        report_.lastRow = watch_->row();
        report_.stoppedInRow = watch_->stoppedInRow() && !ending.well();
    }
}

void RunKeeping::takeList(const RunEnding& ending) {
    if (!report_.list) return;
    ListFile& list = *report_.list;
    list.year = command_.year;
    if (command_.list) {
        list.table = command_.list->table;
        list.look = command_.look;
    }
    if (report_.stoppedInRow) {
        report_.faults.push_back(command_.readsArticleFile
                                     ? faultyLine(listPlace_, report_.lastRow, ending.told)
                                     : faultAt(*watch_, report_.reason));
        findFurtherFaults();
    }
    list.columns = watch_->columns();
    list.rows = watch_->row();
    if (findings_) report_.warnings = findings_->settled().warnings();
}

void RunKeeping::findFurtherFaults() {
    DevHostOptions hostOptions = hostOptions_;
    if (hostOptions.data == HostData::File) hostOptions.data = HostData::Copy;
    std::vector<ListFault> further;
    if (command_.readsArticleFile) {
        further = faultyLines(std::move(hostOptions), options_, command_, listPlace_, report_.lastRow + 1);
    } else {
        DevHost host(std::move(hostOptions));
        further = furtherFaults(host, options_, command_, *watch_);
    }
    std::ranges::move(further, std::back_inserter(report_.faults));
}

ListPrice RunKeeping::listPrice() {
    if (!findings_ || command_.list->columns.nPrecio < 0) return {};
    return [&findings = findings_->settled(), next = std::size_t(0)](std::string_view code) mutable {
        return findings.lastPrice(code, next);
    };
}

/// Takes the facts from the comparison that gives the changes; what is left to do is to write these down.
std::future<void> RunKeeping::takeChanges() {
    if (!log_) return {};
    const BeforeAndAfter states = log_->end();
    log_.reset();
    FactGathering facts(listPrice());
    RunChanges changes = compareTables(states, changesFile_.has_value(), [&](const TablePart& part) {
        return reports_ ? facts.visitor(part) : RowVisitor();
    });
    std::future<void> written;
    if (changesFile_) {
        written = std::async(std::launch::async, [this, changeset = std::move(changes.changeset)] {
            changesFile_->write(changeset);
        });
    }
    report_.facts = facts.finish(states);
    report_.facts.changed = changes.any;
    return written;
}

void RunKeeping::finish(DevHost& host, const RunEnding& ending) {
    std::future<std::optional<ListFile>> list;
    if (!listPlace_.empty()) list = std::async(std::launch::async, describeListFile, listPlace_);
    std::future<void> changesWritten = takeChanges();
    std::string page;
    if (list.valid()) report_.list = list.get();
    if (reports_) {
        takeEnding(host, ending);
        takeList(ending);
        if (!options_.report.empty()) page = reportPage(report_);
    }
    if (changesWritten.valid()) changesWritten.get();
    if (!page.empty()) {
        std::ofstream file(options_.report, std::ios::binary | std::ios::trunc);
        file << page;
        file.close();
        if (!file) throw std::runtime_error("'" + options_.report + "' could not be written whole");
    }
    if (!options_.csvFolder.empty()) writeReportTables(report_, options_.csvFolder);
}

}  // namespace pxtarvo::devhost
