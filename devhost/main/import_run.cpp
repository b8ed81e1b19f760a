#include "devhost/main/import_run.h"

#include <string_view>

#include "devhost/main/named_files.h"
#include "devhost/report/list_file.h"
#include "devhost/window_controls.h"
#include "fields/window_texts.h"
#include "import/barcode_list.h"
#include "import/frm_imp_tarifas.h"
#include "import/run_texts.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// What the window shows when it opens.
constexpr std::string_view windowList = "same";

std::string_view wordsOf(LookFault fault) {
    switch (fault) {
        case LookFault::TooFewColumns:
            return "it has too few columns";
        case LookFault::NoCodes:
            return "no codes where they should be";
        case LookFault::NoPrices:
            return "no numbers where the prices should be";
        case LookFault::NoDescriptions:
            return "no texts where the descriptions should be";
    }
    return {};
}

int positionOf(std::string_view list) {
    return list == windowList ? 0 : 1;
}

}  // namespace

ImportRun::ImportRun(const ImportOptions& options)
    : options_(options),
      year_(options.year.value_or(frmImpTarifas::anios().back())),
      list_(options.list.value_or(std::string(windowList))) {
    command_.actions = [this](DevHost& host, Window& window) { return work(host, window); };
    command_.successMessage = sExito;
    command_.reason = [this](DevHost&, std::string told) { return reason(std::move(told)); };
    command_.ownWords = [this](DevHost&, const std::string&) -> std::string {
        if (!command_.list) return "";
        return unreadableFile("list", trimBlanks(file_), options_.common.driveC).value_or("");
    };
    command_.file = options.file.value_or("");
    command_.year = year_;
    command_.list = listKind(year_, list_);
}

std::optional<Refusal> ImportRun::work(DevHost& host, Window& window) {
    portable::SimulatedDesktop& desktop = host.desktop();
    if (options_.year) desktop.choose(control<ComboBox>(window, "Combo1"), *options_.year);
    if (options_.year || options_.list) {
        const int list = positionOf(options_.list.value_or(std::string(windowList)));
        desktop.click(control<OptionButton>(window, "Option1", list));
    }
    const FieldText fields[] = {
        {"--file", 0, options_.file}, {"--supplier", 1, options_.supplier}, {"--brand", 3, options_.brand}};
    auto refused = typeFields(host, window, fields);
    file_ = control<TextBox>(window, "Text1", 0).text();
    if (!refused && !previewed_) preview();
    if (!refused) press(host, control<PushButton>(window, "XPButton1"));
    closed_ = window.unloaded();
    return refused;
}

/// Looks at the list, once, before the run does.
void ImportRun::preview() {
    previewed_ = true;
    if (!command_.list) return;
    const auto preview =
        previewList(portable::DrivePaths(options_.common.driveC).resolve(file_), *command_.list);
    if (!preview) return;
    command_.look = preview->look;
    command_.rows = preview->rows;
    std::string line;
    for (const LookFault fault : preview->look.faults)
        line.append(line.empty() ? "" : ", ").append(wordsOf(fault));
    if (!line.empty()) tell(joined({"the list does not look like one of ", year_, ": ", line}));
}

std::string ImportRun::reason(std::string told) const {
    if (list_ == windowList) return told;
    if (year_ != sAnioCodigosBarras) {
        return joined({"nothing was imported: the list ", list_, " has no import for ", year_});
    }
    if (!closed_ || told.starts_with(sRegistro)) return told;
    return "the host refused to insert a row; the run ended there, without a message";
}

}  // namespace pxtarvo::devhost
