#include "devhost/main/import_run.h"

#include <string_view>

#include "devhost/window_controls.h"
#include "fields/window_texts.h"
#include "import/barcode_list.h"
#include "import/run_texts.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

// What the window shows when it opens.
constexpr std::string_view windowYear = "2012";
constexpr std::string_view windowList = "same";

int positionOf(std::string_view list) {
    return list == windowList ? 0 : 1;
}

}  // namespace

ImportRun::ImportRun(const ImportOptions& options)
    : options_(options),
      year_(options.year.value_or(std::string(windowYear))),
      list_(options.list.value_or(std::string(windowList))) {
    command_.actions = [this](DevHost& host, Window& window) { return work(host, window); };
    command_.successMessage = sExito;
    command_.reason = [this](DevHost&, std::string told) { return reason(std::move(told)); };
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
    if (!refused) press(host, control<PushButton>(window, "XPButton1"));
    closed_ = window.unloaded();
    return refused;
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
