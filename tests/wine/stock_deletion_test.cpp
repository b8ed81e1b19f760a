// The stock window and the deletion window of the real DLL: their records beside those of the same code
// without a screen, the stock file byte for byte, and sessions by real keys.

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

devhost::UserScript join(devhost::UserScript script, const devhost::UserScript& more) {
    script.insert(script.end(), more.begin(), more.end());
    return script;
}

/// The stock window, filled in for the brand and this file.
devhost::UserScript stock(std::string brand, std::string file) {
    return {click("cmdStock"), type(0, std::move(file)), type(1, "24"), type(3, std::move(brand)),
            click("XPButton1")};
}

/// The deletion window and its search.
devhost::UserScript search(const std::string& brand = "", const std::string& until = "",
                           const std::string& option = "") {
    devhost::UserScript script = {click("cmdBorrado")};
    if (!brand.empty()) script.push_back(type(3, brand));
    if (!until.empty()) script.push_back(type(1, until));
    if (!option.empty()) script.push_back(click(option));
    script.push_back(click("cmdInicio"));
    return script;
}

/// Deletes the articles of a brand; the writer does `what` at its write of this number.
Scenario deletion(std::string name, std::string expected, int at = 0,
                  std::function<std::optional<std::string>()> what = {}) {
    Scenario scenario{.name = std::move(name)};
    scenario.script = join(search("AGM"), {click("cmdBorrar"), answer(MessageAnswer::Yes)});
    scenario.beforeWrite = [at, what, written = 0](const devhost::HostWrite&) mutable {
        return ++written == at ? what() : std::nullopt;
    };
    scenario.expected = std::move(expected);
    return scenario;
}

std::optional<std::string> refuse() {
    return "Artículo bloqueado";
}
std::optional<std::string> fail() {
    throw RuntimeError(-2147467259, "Se ha perdido la conexión");
}

std::vector<Scenario> stockAndDeletionScenarios() {
    devhost::UserScript criteria = join(search("", "32/13/2006"), {click("cmdSalir")});
    for (const char* option : {"Option3", "Option1", "Option2"}) {
        criteria = join(std::move(criteria), join(search("", "", option), {click("cmdSalir")}));
        criteria = join(std::move(criteria), join(search("SAME", "31/12/2008", option), {click("cmdSalir")}));
    }
    devhost::UserScript checks = {click("cmdStock")};
    for (const int field : {5, 6, 7}) {
        checks = join(std::move(checks), {type(field, " "), click("XPButton1"), type(field, "16")});
    }
    checks = join(std::move(checks), {click("XPButton1"), type(1, "24"), click("XPButton1"), key(vkEscape)});

    std::vector<Scenario> all = {
        {.name = "stockChecks", .script = checks, .expected = "No ha informado de la direción de envío"},
        {.name = "stockFolderMissing", .script = stock("SAME", "C:\\NO\\HAY.txt"), .expected = "Error '76'"},
        {.name = "stockNoArticles",
         .script = stock("VDV", "C:\\TARVO\\STOCK\\nada.txt"),
         .sql = {"UPDATE Art SET Art_Estado = 1 WHERE Art_Marca = 3"},
         .expected = "Error '3021'"},
        {.name = "searchCriteria",
         .script = criteria,
         .expected = "23:59:59' AND Art_Estado=1 AND Art_Marca = 1"},
        {.name = "searchEmpty",
         .script = search("", "01/01/1990"),
         .expected = "No hay articulos introducidos"},
        {.name = "searchFails",
         .script = search(),
         .sql = {"UPDATE Exis SET Exis_IdArt = 2"},
         .expected = "La subconsulta ha devuelto"},
        {.name = "answerNo",
         .script = join(search(), {click("cmdBorrar"), answer(MessageAnswer::No), click("cmdSalir")}),
         .expected = "\"answer\":\"no\""},
        deletion("deletion", "Proceso de borrado finalizado"),
        deletion("articleRefused", "\"rollback\"", 3, refuse),
        deletion("stockRefused", "\"rollback\"", 4, refuse),
        deletion("writerFails", "Se ha perdido la conexión", 5, fail),
        deletion("apostrophe", "O'RING"),
        deletion("transactionOpen", "-2147168237"),
    };
    all[all.size() - 2].sql = {"UPDATE Art SET ART_Cod = 'O''RING' WHERE Art_Id = 884"};
    all.back().sql = {"BEGIN"};
    return alsoOverServerCursors(
        all, {"stockNoArticles", "searchEmpty", "answerNo", "deletion", "articleRefused", "writerFails"});
}

class SecondWindows : public TwoWorlds, public ::testing::WithParamInterface<Scenario> {};

TEST_P(SecondWindows, SameRecord) {
    expectTheSame(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Parity, SecondWindows, ::testing::ValuesIn(stockAndDeletionScenarios()),
                         [](const auto& info) { return info.param.name; });

class StockFile : public TwoWorlds {
  protected:
    /// The file's bytes; it is gone afterwards.
    std::string taken(const std::string& path) {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        std::filesystem::remove(path);
        return bytes.str();
    }
};

TEST_F(StockFile, IsTheSameInBothWorlds) {
    const std::filesystem::path folder = driveC() + "/TARVO/STOCK";
    std::filesystem::create_directories(folder);
    Scenario scenario{.name = "stock"};
    scenario.script = stock("SAME", "C:\\TARVO\\STOCK\\prueba.txt");
    scenario.script.insert(scenario.script.begin() + 1, {type(6, " 1"), type(7, "CALLE Ñ 123456")});
    scenario.sql = {"UPDATE Art SET ART_Cod = 'CAÑÓN 1' WHERE Art_Id = 1",
                    "UPDATE Exis SET Exis_Cantidad = 2.5 WHERE Exis_IdArt = 1",
                    "UPDATE Exis SET Exis_Cantidad = 12345678 WHERE Exis_IdArt = 2"};
    const std::string path = (folder / "prueba.txt").string();
    const Outcome twin = withoutScreen(scenario);
    const std::string file = taken(path);
    EXPECT_THAT(file, HasSubstr("CA\xD1\xD3N 1        "));
    EXPECT_THAT(file, HasSubstr("12345678 1 CALLE \xD1 123456\r\n"));
    EXPECT_THAT(messagesOf(twin.record), ElementsAre("Proceso finalizado con exito"));
    for (const auto cursor : {devhost::CursorLocation::Client, devhost::CursorLocation::Server}) {
        scenario.cursor = cursor;
        const Outcome dll = inTheDll(scenario);
        EXPECT_TRUE(file == taken(path)) << "the files differ";
        EXPECT_THAT(dll.violations, IsEmpty());
        EXPECT_EQ(dll.record, twin.record);
    }
}

class SecondWindowKeys : public TwoWorlds {
  protected:
    std::vector<std::string> act(devhost::UserScript script) {
        const Outcome outcome =
            inTheDll({.name = "keys", .script = std::move(script)}, devhost::Hands::Keyboard);
        EXPECT_THAT(outcome.violations, IsEmpty());
        EXPECT_EQ(outcome.error, "");
        return outcome.record;
    }
};

TEST_F(SecondWindowKeys, BrandByF1AndEnterThroughTheCriteria) {
    const auto record = act({click("cmdBorrado"),
                             click("Text1", 3),
                             key(vkF1),
                             {.deed = Deed::Search, .row = 1},
                             key(vkReturn),  // to the description
                             key(vkReturn),  // to the date
                             key(vkReturn),  // to the check box
                             key(vkReturn),  // to the chosen state
                             key(vkReturn),  // to the search
                             key(vkSpace),
                             click("dbgDatos"),
                             key(vkPageDown),
                             key(vkEscape)});  // has the keyboard after the search
    EXPECT_THAT(linesWith(record, "{\"call\":\"search\""), SizeIs(1));
    EXPECT_THAT(linesWith(record, "AND Art_Marca = 2 ORDER BY"), SizeIs(1));
    EXPECT_THAT(linesWith(record, "\"unload\""),
                ElementsAre(HasSubstr("frmBorradoArticulos"), HasSubstr("frmImpTarifas")));
}

TEST_F(SecondWindowKeys, EscAfterTheSearchClosesOnlyTheDeletionWindow) {
    const auto record = act({click("cmdBorrado"),
                             click("cmdInicio"),
                             key(vkEscape),
                             click("cmdStock"),
                             click("XPButton1"),
                             {.deed = Deed::Message},
                             type(1, "24"),
                             key(vkEscape)});
    EXPECT_THAT(messagesOf(record), ElementsAre("Debe indicar el codigo de proveedor"));
    EXPECT_THAT(linesWith(record, "Pro_COD=24"), SizeIs(1)) << "Esc leaves no field";
    EXPECT_THAT(linesWith(record, "\"unload\""),
                ElementsAre(HasSubstr("frmBorradoArticulos"), HasSubstr("frmExistencias"),
                            HasSubstr("frmImpTarifas")));
}

}  // namespace

}  // namespace pxtarvo::test
