// The record of the real DLL beside the one of the same code without a screen, byte for byte.

#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

/// Opens the list as a user does: the year, the list, the file, the button.
Scenario listOf(std::string name, const std::string& year, const std::string& file) {
    Scenario scenario{.name = std::move(name)};
    scenario.script = {{.deed = Deed::Choose, .control = "Combo1", .text = year},
                       {.deed = Deed::Click, .control = "Option1", .index = 0},
                       type(0, "C:\\TARVO\\" + file),
                       {.deed = Deed::Press, .key = vkTab},
                       click("XPButton1")};
    // The list of 2007 stops at a price that is Null.
    if (year == "2007") scenario.sql = {"UPDATE Art SET ART_PVE = 1 WHERE ART_PVE IS NULL"};
    scenario.expected = "\"call\":\"unload\"";
    return scenario;
}

/// Adds what the user does in the middle of the run, once the third row is written.
Scenario interrupted(Scenario scenario, Action action) {
    action.after = "\"table\":\"ArtPro\"";
    action.count = 3;
    scenario.script.push_back(std::move(action));
    return scenario;
}

Scenario with(Scenario scenario, std::vector<std::string> sql) {
    scenario.sql = std::move(sql);
    return scenario;
}

std::vector<Scenario> listScenarios() {
    std::vector<Scenario> all = {
        listOf("list2007", "2007", "TARIFA2007.MDB"),
        listOf("list2008", "2008", "TARIFA2008.MDB"),
        listOf("list2009", "2009", "TARIFA2009.MDB"),
        listOf("list2010", "2010", "TARIFA2012.MDB"),
        listOf("list2011", "2011", "TARIFA2012.MDB"),
        listOf("list2012", "2012", "TARIFA2012.MDB"),
        listOf("apostrophe", "2012", "list-apostrophe-row-57.mdb"),
        listOf("noPrice", "2012", "list-empty-price-row-34.mdb"),
        listOf("textPrices", "2008", "list-text-price.mdb"),
        listOf("nullsAndEmptyTexts", "2009", "list-nulls-and-empty-texts.mdb"),
        listOf("sixColumns", "2012", "list-six-columns.mdb"),
        listOf("truncated", "2012", "list-truncated.mdb"),
        listOf("missingFile", "2012", "NO-HAY.MDB"),
        listOf("noTable", "2012", "no-list-table.mdb"),
        listOf("emptyTable", "2012", "list-empty-table.mdb"),
        with(listOf("transactionOpen", "2012", "list-decimal-price.mdb"), {"BEGIN"}),
        interrupted(listOf("secondRun", "2012", "list-decimal-price.mdb"), click("XPButton1")),
        interrupted(listOf("closedInTheMiddle", "2012", "list-decimal-price.mdb"),
                    {.deed = Deed::Press, .key = vkEscape}),
        interrupted(listOf("contextReplaced", "2012", "list-decimal-price.mdb"), {.deed = Deed::Context}),
        {.name = "unknownCodes",
         .script = {type(1, "999"),
                    {.deed = Deed::Press, .key = vkReturn},
                    type(1, "24"),
                    {.deed = Deed::Press, .key = vkReturn},
                    type(3, "NADIE"),
                    {.deed = Deed::Press, .key = vkReturn}}},
        {.name = "searches",
         .script = {click("Text1(3)"),
                    {.deed = Deed::Press, .key = vkF1},
                    {.deed = Deed::Search, .row = 1},
                    {.deed = Deed::Press, .key = vkF1},
                    {.deed = Deed::Search, .row = -1}}},
    };
    all.back().script[0] = {.deed = Deed::Click, .control = "Text1", .index = 3};
    Scenario refused = listOf("articleRefused", "2012", "TARIFA2012.MDB");
    refused.beforeWrite = [](const devhost::HostWrite& write) -> std::optional<std::string> {
        const bool article = write.kind == devhost::WriteKind::Insert && write.table == "Art";
        return article ? std::optional<std::string>("Tabla bloqueada por otro usuario") : std::nullopt;
    };
    all.push_back(refused);
    const std::pair<std::string_view, const char*> marks[] = {
        {"transactionOpen", "Registro 0. "},
        {"secondRun", "Error '-2147168242' en tiempo de ejecución"},
        {"missingFile", "\"error\""},
        {"noTable", "\"error\""},
        {"unknownCodes", "Codigo Marca no existe"},
        {"searches", "Buscar Marcas por nombre"},
        {"articleRefused", "Tabla bloqueada por otro usuario"},
    };
    for (Scenario& scenario : all) {
        for (const auto& [name, mark] : marks) {
            if (scenario.name == name) scenario.expected = mark;
        }
    }
    return alsoOverServerCursors(all,
                                 {"list2012", "noPrice", "transactionOpen", "articleRefused", "searches"});
}

class Parity : public TwoWorlds, public ::testing::WithParamInterface<Scenario> {};

TEST_P(Parity, SameRecord) {
    expectTheSame(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Lists, Parity, ::testing::ValuesIn(listScenarios()),
                         [](const auto& info) { return info.param.name; });

}  // namespace

}  // namespace pxtarvo::test
