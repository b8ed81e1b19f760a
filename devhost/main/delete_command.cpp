#include <iostream>
#include <memory>

#include "deletion/frm_borrado_articulos.h"
#include "devhost/main/commands.h"
#include "devhost/main/options.h"
#include "devhost/main/window_command.h"
#include "devhost/window_controls.h"
#include "platform/platform.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

struct State {
    std::string_view name;
    std::string_view option;
};

constexpr State states[] = {{"todos", "Option3"}, {"activo", "Option1"}, {"baja", "Option2"}};

/// The articles as the grid shows them, a line each, columns apart by tabs.
void print(const DataGrid& grid, const Locale& locale) {
    const auto line = [&](const auto& cell) {
        const char* separator = "";
        for (std::size_t at = 0; at < grid.columns().size(); ++at) {
            if (!grid.columns()[at].visible) continue;
            std::cout << std::exchange(separator, "\t") << cell(at);
        }
        std::cout << '\n';
    };
    line([&](std::size_t at) { return grid.columns()[at].caption; });
    const ObjectRef<Recordset> rows = grid.dataSource()->Clone();
    for (; !rows->Eof(); rows->MoveNext()) {
        line([&](std::size_t at) {
            return cellText(grid.columns()[at], rows->Fields(static_cast<std::int32_t>(at)), locale);
        });
    }
    std::cout << std::flush;
}

std::optional<Refusal> fillIn(DevHost& host, const Window& window, const DeleteOptions& options) {
    // The window passes over what is no date; here that would delete more than was asked for.
    if (options.until && !options.until->empty() && !isDate(*options.until, host.platform().locale())) {
        return Refusal{exitWrongCommand, joined({"--until: '", *options.until, "' is no date"})};
    }
    const FieldText fields[] = {{"--brand", 3, options.brand}, {"--until", 1, options.until}};
    if (auto refused = typeFields(host, window, fields)) return refused;
    for (const State& state : states) {
        if (state.name == options.state) host.desktop().click(control<OptionButton>(window, state.option));
    }
    return std::nullopt;
}

/// Why nothing was deleted.
std::string reasonOf(const DevUser& user, std::string told) {
    if (user.messages().empty()) return "nothing was searched";
    const ShownMessage& last = user.messages().back();
    if (last.message.buttons != MessageButtons::YesNo) return told;
    // Refusals are rolled back without a word.
    return last.answer == MessageAnswer::Yes ? "nothing was deleted: the host refused a deletion"
                                             : "nothing was deleted: the answer was no";
}

int runDelete(const DeleteOptions& options) {
    bool listed = false;
    WindowCommand command;
    command.opener = "cmdBorrado";
    command.actions = [&](DevHost& host, Window& window) {
        auto refused = fillIn(host, window, options);
        if (refused) return refused;
        press(host, control<PushButton>(window, "cmdInicio"));
        auto& cmdBorrar = control<PushButton>(window, "cmdBorrar");
        if (window.unloaded() || !window.enabled() || !cmdBorrar.enabled()) return refused;
        listed = options.listOnly;
        if (listed) {
            print(control<DataGrid>(window, "dbgDatos"), host.platform().locale());
        } else {
            press(host, cmdBorrar);
        }
        return refused;
    };
    command.successMessage = sBorradoFinalizado;
    command.endedWell = [&] { return listed; };
    command.reason = [](DevHost& host, std::string told) { return reasonOf(host.user(), std::move(told)); };
    return runInWindow(options.common, command);
}

}  // namespace

void addDeleteCommand(CLI::App& program, Command& chosen) {
    const auto options = std::make_shared<DeleteOptions>();
    CLI::App& command = addCommand(
        program, chosen, "delete",
        "Search articles without movements through the deletion window and delete them", options, runDelete);
    command.add_option("--brand", options->brand, "only this brand's articles");
    command.add_option("--until", options->until, "only articles whose state is not younger")
        ->type_name("DD/MM/YYYY");
    command.add_option("--state", options->state, "only articles of this state")
        ->check(CLI::IsMember({"todos", "activo", "baja"}));
    command.add_flag("--list-only", options->listOnly, "list the articles and delete none");
}

}  // namespace pxtarvo::devhost
