// The record of the real DLL beside the one of the same code without a screen, byte for byte, and what both
// leave.

#include <gmock/gmock.h>

#include <fstream>

#include "tests/common/temporary_folder.h"
#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

using devhost::UserScript;
using devhost::WriteKind;
using ::testing::HasSubstr;

UserScript operator+(UserScript script, const UserScript& more) {
    script.insert(script.end(), more.begin(), more.end());
    return script;
}

/// Chooses the year and the list (0 yearly, 1 barcodes), types the file unless it is the one that follows
/// from them, and starts.
UserScript import(const std::string& year, const std::string& file = "", int list = 0) {
    UserScript script{{.deed = Deed::Choose, .control = "Combo1", .text = year}, click("Option1", list)};
    if (!file.empty()) script.push_back(type(0, "C:\\TARVO\\" + file));
    return script + UserScript{click("XPButton1")};
}
UserScript barcodes(const std::string& file = "") {
    return import("2008", file, 1);
}
/// A short list, and what the user does in the middle of the run, once the third row is written.
UserScript interrupted(Action action) {
    return import("2012", "list-decimal-price.mdb") + UserScript{inTheRun(std::move(action))};
}
/// The stock window, filled in for the brand and this file.
UserScript stock(std::string brand, std::string file) {
    return {click("cmdStock"), type(0, std::move(file)), type(1, "24"), type(3, std::move(brand)),
            click("XPButton1")};
}
/// The deletion window and its search.
UserScript search(const std::string& brand = "", const std::string& until = "",
                  const std::string& option = "") {
    UserScript script = {click("cmdBorrado")};
    if (!brand.empty()) script.push_back(type(3, brand));
    if (!until.empty()) script.push_back(type(1, until));
    if (!option.empty()) script.push_back(click(option));
    return script + UserScript{click("cmdInicio")};
}

/// Refuses the writes of this kind into the table from the `first` one on.
devhost::WriteHook refusing(WriteKind kind, std::string_view table, int first = 1) {
    return [=, seen = 0](const devhost::HostWrite& write) mutable -> std::optional<std::string> {
        if (write.kind == kind && write.table == table && ++seen >= first) return "Fila bloqueada";
        return std::nullopt;
    };
}
/// Fails at the write of this number into the table.
devhost::WriteHook failing(std::string_view table, int at) {
    return [=, seen = 0](const devhost::HostWrite& write) mutable -> std::optional<std::string> {
        if (write.table == table && ++seen == at)
            throw RuntimeError(-2147467259, "Se ha perdido la conexión");
        return std::nullopt;
    };
}

std::vector<Scenario> scenarios() {
    std::vector<Scenario> all;
    using Texts = std::vector<std::string>;
    const auto add = [&](std::string name, UserScript script, std::string expected, Texts sql = {},
                         devhost::WriteHook hook = {}) {
        all.push_back({.name = std::move(name),
                       .script = std::move(script),
                       .sql = std::move(sql),
                       .beforeWrite = std::move(hook),
                       .expected = std::move(expected)});
    };
    // Over cursors on the server too.
    const auto both = [&](const std::string& name, const UserScript& script, const std::string& expected,
                          const Texts& sql = {}, const devhost::WriteHook& hook = {}) {
        add(name, script, expected, sql, hook);
        add(name + "OverServerCursors", script, expected, sql, hook);
        all.back().cursor = devhost::CursorLocation::Server;
    };
    const char* const unload = "\"call\":\"unload\"";
    const char* const finished = "Proceso finalizado con exito";
    const char* const refused = "\"ok\":false";
    const char* const lost = "Se ha perdido la conexión";

    // It stops at a price that is Null.
    add("list2007", import("2007", "TARIFA2007.MDB"), unload,
        {"UPDATE Art SET ART_PVE = 1 WHERE ART_PVE IS NULL"});
    add("list2008", import("2008", "TARIFA2008.MDB"), unload);
    add("list2009", import("2009", "TARIFA2009.MDB"), unload);
    add("list2010", import("2010", "TARIFA2012.MDB"), unload);
    add("list2011", import("2011", "TARIFA2012.MDB"), unload);
    both("list2012", import("2012", "TARIFA2012.MDB"), unload);
    add("apostrophe", import("2012", "list-apostrophe-row-57.mdb"), unload);
    both("noPrice", import("2012", "list-empty-price-row-34.mdb"), unload);
    add("textPrices", import("2008", "list-text-price.mdb"), unload);
    add("nullsAndEmptyTexts", import("2009", "list-nulls-and-empty-texts.mdb"), unload);
    add("sixColumns", import("2012", "list-six-columns.mdb"), unload);
    add("truncated", import("2012", "list-truncated.mdb"), unload);
    add("missingFile", import("2012", "NO-HAY.MDB"), "\"error\"");
    add("noTable", import("2012", "no-list-table.mdb"), "\"error\"");
    add("emptyTable", import("2012", "list-empty-table.mdb"), unload);
    both("transactionOpen", import("2012", "list-decimal-price.mdb"), "Registro 0. ", {"BEGIN"});
    both("articleRefused", import("2012", "TARIFA2012.MDB"), "Fila bloqueada", {},
         refusing(WriteKind::Insert, "Art"));
    add("secondRun", interrupted(click("XPButton1")), "Error '-2147168242' en tiempo de ejecución");
    add("closedInTheMiddle", interrupted(key(vkEscape)), unload);
    add("contextReplaced", interrupted({.deed = Deed::Context}), unload);
    add("unknownCodes",
        {type(1, "999"), key(vkReturn), type(1, "24"), key(vkReturn), type(3, "NADIE"), key(vkReturn)},
        "Codigo Marca no existe");
    both("searches", {click("Text1", 3), key(vkF1), choose(1), key(vkF1), choose(-1)},
         "Buscar Marcas por nombre");

    const std::string noPrice = "INSERT INTO Art (ART_Cod) VALUES ('01000041')";  // row 2
    const UserScript list2006 = import("2006", "TARIFA2006.MDB");
    add("list2006", list2006, "{\"call\":\"rollback\",\"error\"");
    both("list2006InTransaction", list2006, "{\"call\":\"commit\"}", {"BEGIN"});
    both("list2006NoPrice", list2006, "Registro 2. Uso no válido de Null", {noPrice, "BEGIN"});
    add("list2006NoTable", import("2006", "TARIFA2012.MDB"), "31EUR000");
    add("list2006ArticleRefused", list2006, refused, {"BEGIN"}, refusing(WriteKind::Insert, "Art", 3));

    both("barcodes", barcodes(), finished);
    add("barcodesCellTypes", barcodes("barcodes-cell-types.xls"), "'123456789012345'");
    add("barcodesBlankRow", barcodes("barcodes-blank-row-21.xls"), finished);
    both("barcodesApostrophe", barcodes("barcodes-apostrophe-row-12.xls"), "Registro 12. ");
    add("barcodesMissing", barcodes("no-hay.xls"), "Registro 0. No se encontró");
    add("barcodesNoApplication", barcodes(), "Registro 0. El componente ActiveX no puede crear");
    all.back().hasSpreadsheet = false;
    add("barcodesArticleRefused", barcodes(), refused, {}, refusing(WriteKind::Insert, "Art", 40));
    add("barcodesPriceRefused", barcodes(), refused, {}, refusing(WriteKind::Insert, "ArtPro", 40));

    const UserScript correct{click("XPButton3"), answer(MessageAnswer::Yes)};
    both("fixCodes", correct, "proceso concluido");
    add("fixCodesTwice", correct + UserScript{answer(MessageAnswer::Ok)} + correct, "proceso concluido");
    add("fixCodesNo", {click("XPButton3")}, "\"answer\":\"no\"");
    add("fixCodesStockRefused", correct, refused, {}, refusing(WriteKind::Insert, "Exis", 2));
    both("fixCodesHostFails", correct, lost, {}, failing("Hexis", 4));
    add("fixCodesTransactionOpen", correct, "Error '-2147168237'", {"BEGIN"});

    UserScript checks{click("cmdStock")};
    for (const int field : {5, 6, 7}) {
        checks = checks + UserScript{type(field, " "), click("XPButton1"), type(field, "16")};
    }
    add("stockChecks",
        checks + UserScript{click("XPButton1"), type(1, "24"), click("XPButton1"), key(vkEscape)},
        "No ha informado de la direción de envío");
    add("stockFolderMissing", stock("SAME", "C:\\NO\\HAY.txt"), "Error '76'");
    both("stockNoArticles", stock("VDV", "C:\\TARVO\\STOCK\\nada.txt"), "Error '3021'",
         {"UPDATE Art SET Art_Estado = 1 WHERE Art_Marca = 3"});

    const UserScript leave{click("cmdSalir")};
    UserScript criteria = search("", "32/13/2006") + leave;
    for (const char* option : {"Option3", "Option1", "Option2"}) {
        criteria = criteria + search("", "", option) + leave + search("SAME", "31/12/2008", option) + leave;
    }
    add("searchCriteria", criteria, "23:59:59' AND Art_Estado=1 AND Art_Marca = 1");
    both("searchEmpty", search("", "01/01/1990"), "No hay articulos introducidos");
    add("searchFails", search(), "La subconsulta ha devuelto", {"UPDATE Exis SET Exis_IdArt = 2"});

    const auto deletion = [](const std::string& brand, MessageAnswer said) {
        return search(brand) + UserScript{click("cmdBorrar"), answer(said)};
    };
    const UserScript deleted = deletion("AGM", MessageAnswer::Yes);
    both("answerNo", deletion("", MessageAnswer::No) + leave, "\"answer\":\"no\"");
    both("deletion", deleted, "Proceso de borrado finalizado");
    both("deletionRefused", deleted, "\"rollback\"", {}, refusing(WriteKind::Delete, "Art", 2));
    add("deletionOfStockRefused", deleted, "\"rollback\"", {}, refusing(WriteKind::Delete, "Exis", 2));
    both("deletionFails", deleted, lost, {}, failing("Art", 3));
    add("deletionApostrophe", deleted, "O'RING", {"UPDATE Art SET ART_Cod = 'O''RING' WHERE Art_Id = 884"});
    add("deletionTransactionOpen", deleted, "-2147168237", {"BEGIN"});
    return all;
}

class Parity : public TwoWorlds, public ::testing::WithParamInterface<Scenario> {};

TEST_P(Parity, SameRecord) {
    expectTheSame(GetParam());
    for (const devhost::ObjectKind* kind : devhost::objectBook().kinds) {
        if (!kind->name.starts_with("Spreadsheet")) continue;
        EXPECT_EQ(kind->alive, 0) << "kept: " << kind->name;
    }
}

INSTANTIATE_TEST_SUITE_P(Runs, Parity, ::testing::ValuesIn(scenarios()),
                         [](const auto& info) { return info.param.name; });

/// The article file as a line at fault, its absence or its folder's leave it. Each in a thread of its own: a
/// file that stays open belongs to its thread.
class Locations : public TwoWorlds {
  protected:
    const std::filesystem::path folder = driveC() + "/TARVO";
    const std::filesystem::path file = folder / "articulo.tdw";

    ~Locations() override {
        std::filesystem::copy_file(tests::sample("articulo.tdw"), file,
                                   std::filesystem::copy_options::overwrite_existing);
    }

    /// As many presses of the button, over either kind of cursor.
    void expectTheSameInThreads(std::size_t presses, std::string expected) {
        Scenario scenario{.name = "locations",
                          .script = UserScript(presses, click("XPButton4")),
                          .expected = std::move(expected)};
        plugIn();
        for (const auto cursor : {devhost::CursorLocation::Client, devhost::CursorLocation::Server}) {
            scenario.cursor = cursor;
            std::pair<Locations*, const Scenario*> task{this, &scenario};
            const HANDLE thread = CreateThread(nullptr, 0, &Locations::inThread, &task, 0, nullptr);
            ASSERT_TRUE(thread);
            WaitForSingleObject(thread, INFINITE);
            CloseHandle(thread);
        }
    }

  private:
    static DWORD WINAPI inThread(void* context) {
        const auto& [test, scenario] = *static_cast<std::pair<Locations*, const Scenario*>*>(context);
        CoInitialize(nullptr);
        test->expectTheSame(*scenario);
        // The thread's newest instance is never given up: one without a context replaces the host's.
        windows::Dispatch::create("PXTarvo.PXTarvor");
        CoUninitialize();
        return 0;
    }
};

TEST_F(Locations, SameRecordOfTheSampleFileOfAFaultAndWithoutTheFile) {
    expectTheSameInThreads(1, "ESTANTERÍA NORTE PAS");
    const std::string before(17, '\x01');
    std::ofstream(file, std::ios::binary) << before
                                          << "01000000\x01P-\xD1\x01x\x01"
                                             "2.5\r"
                                          << before << "01000041\x01 \r\n\r\n"
                                          << before << "X\x01Y";
    expectTheSameInThreads(2, "Error '55' en tiempo de ejecución");
    std::filesystem::remove(file);
    expectTheSameInThreads(2, "Error '53'");
}

class StockFile : public TwoWorlds {};

TEST_F(StockFile, IsTheSameInBothWorlds) {
    const std::filesystem::path folder = driveC() + "/TARVO/STOCK";
    std::filesystem::create_directories(folder);
    Scenario scenario{.name = "stock", .script = stock("SAME", "C:\\TARVO\\STOCK\\prueba.txt")};
    scenario.script.insert(scenario.script.begin() + 1, {type(6, " 1"), type(7, "CALLE Ñ 123456")});
    scenario.sql = {"UPDATE Art SET ART_Cod = 'CAÑÓN 1' WHERE Art_Id = 1",
                    "UPDATE Exis SET Exis_Cantidad = 2.5 WHERE Exis_IdArt = 1",
                    "UPDATE Exis SET Exis_Cantidad = 12345678 WHERE Exis_IdArt = 2"};
    const auto taken = [path = (folder / "prueba.txt").string()] {
        std::string bytes = tests::bytesOf(path);
        std::filesystem::remove(path);
        return bytes;
    };
    const Outcome twin = withoutScreen(scenario);
    const std::string file = taken();
    EXPECT_THAT(file, HasSubstr("CA\xD1\xD3N 1        "));
    EXPECT_THAT(file, HasSubstr("12345678 1 CALLE \xD1 123456\r\n"));
    EXPECT_THAT(messagesOf(twin.record), ::testing::ElementsAre("Proceso finalizado con exito"));
    for (const auto cursor : {devhost::CursorLocation::Client, devhost::CursorLocation::Server}) {
        scenario.cursor = cursor;
        const Outcome dll = inTheDll(scenario);
        EXPECT_TRUE(file == taken()) << "the files differ";
        EXPECT_THAT(dll.violations, ::testing::IsEmpty());
        EXPECT_EQ(dll.record, twin.record);
    }
}

}  // namespace

}  // namespace pxtarvo::test
