// The list of 2006, the barcode list, the location update and the code correction in the real DLL beside the
// same code without a screen.

#include <fstream>
#include <optional>

#include "tests/wine/actions.h"
#include "tests/wine/two_worlds.h"

namespace pxtarvo::test {

namespace {

/// Refuses the writes of this kind into the table from the `first` one on.
devhost::WriteHook refusing(devhost::WriteKind kind, std::string_view table, int first) {
    return [=, seen = 0](const devhost::HostWrite& write) mutable -> std::optional<std::string> {
        if (write.kind == kind && write.table == table && ++seen >= first) return "no";
        return std::nullopt;
    };
}

/// Chooses the year and the list (0 yearly, 1 barcodes), types the file unless it is the one that follows
/// from them, and starts.
Scenario listOf(std::string name, const std::string& year, int list, const std::string& file,
                std::string expected) {
    Scenario scenario{.name = std::move(name), .expected = std::move(expected)};
    scenario.script = {{.deed = Deed::Choose, .control = "Combo1", .text = year},
                       {.deed = Deed::Click, .control = "Option1", .index = list}};
    if (!file.empty()) {
        scenario.script.push_back(
            {.deed = Deed::Type, .control = "Text1", .index = 0, .text = "C:\\TARVO\\" + file});
    }
    scenario.script.push_back(click("XPButton1"));
    return scenario;
}
Scenario list2006(std::string name, std::vector<std::string> sql, std::string expected,
                  std::string file = "TARIFA2006.MDB") {
    Scenario scenario = listOf(std::move(name), "2006", 0, file, std::move(expected));
    scenario.sql = std::move(sql);
    return scenario;
}
Scenario barcodes(std::string name, const std::string& file, std::string expected) {
    return listOf(std::move(name), "2008", 1, file, std::move(expected));
}
Scenario maintenance(std::string name, devhost::UserScript script, std::string expected) {
    return {.name = std::move(name), .script = std::move(script), .expected = std::move(expected)};
}
Scenario with(Scenario scenario, devhost::WriteHook hook) {
    scenario.beforeWrite = std::move(hook);
    return scenario;
}

constexpr auto insert = devhost::WriteKind::Insert;
const std::string started = "INSERT INTO Art (ART_Cod) VALUES ('01000041')";  // without a price; row 2
const devhost::UserScript correct{click("XPButton3"), answer(MessageAnswer::Yes)};

std::vector<Scenario> runScenarios() {
    std::vector<Scenario> all = {
        list2006("list2006", {}, "{\"call\":\"rollback\",\"error\""),
        list2006("list2006InTransaction", {"BEGIN"}, "{\"call\":\"commit\"}"),
        list2006("list2006NoPrice", {started, "BEGIN"}, "Registro 2. Uso no válido de Null"),
        list2006("list2006NoTable", {}, "31EUR000", "TARIFA2012.MDB"),
        with(list2006("list2006ArticleRefused", {"BEGIN"}, "\"ok\":false"), refusing(insert, "Art", 3)),
        barcodes("barcodes", "", "Proceso finalizado con exito"),
        barcodes("barcodesCellTypes", "barcodes-cell-types.xls", "'123456789012345'"),
        barcodes("barcodesBlankRow", "barcodes-blank-row-21.xls", "Proceso finalizado con exito"),
        barcodes("barcodesApostrophe", "barcodes-apostrophe-row-12.xls", "Registro 12. "),
        barcodes("barcodesMissing", "no-hay.xls", "Registro 0. No se encontró"),
        [] {
            Scenario alone =
                barcodes("barcodesNoApplication", "", "Registro 0. El componente ActiveX no puede crear");
            alone.hasSpreadsheet = false;
            return alone;
        }(),
        with(barcodes("barcodesArticleRefused", "", "\"ok\":false"), refusing(insert, "Art", 40)),
        with(barcodes("barcodesPriceRefused", "", "\"ok\":false"), refusing(insert, "ArtPro", 40)),
        maintenance("fixCodes", correct, "proceso concluido"),
        maintenance("fixCodesTwice",
                    {correct[0], correct[1], answer(MessageAnswer::Ok), correct[0], correct[1]},
                    "proceso concluido"),
        maintenance("fixCodesNo", {click("XPButton3")}, "\"answer\":\"no\""),
        with(maintenance("fixCodesStockRefused", correct, "\"ok\":false"), refusing(insert, "Exis", 2)),
        with(maintenance("fixCodesHostFails", correct, "Se ha perdido la conexión"),
             [seen = 0](const devhost::HostWrite& write) mutable -> std::optional<std::string> {
                 if (write.table == "Hexis" && ++seen == 4) {
                     throw RuntimeError(-2147467259, "Se ha perdido la conexión");
                 }
                 return std::nullopt;
             }),
        [] {
            Scenario open = maintenance("fixCodesTransactionOpen", correct, "Error '-2147168237'");
            open.sql = {"BEGIN"};
            return open;
        }(),
    };
    return alsoOverServerCursors(all, {"list2006InTransaction", "list2006NoPrice", "barcodes",
                                       "barcodesApostrophe", "fixCodes", "fixCodesHostFails"});
}

class RunsParity : public TwoWorlds, public ::testing::WithParamInterface<Scenario> {};

TEST_P(RunsParity, SameRecord) {
    expectTheSame(GetParam());
    for (const devhost::ObjectKind* kind : devhost::objectBook().kinds) {
        if (!kind->name.starts_with("Spreadsheet")) continue;
        EXPECT_EQ(kind->alive, 0) << "kept: " << kind->name;
    }
}

INSTANTIATE_TEST_SUITE_P(Runs, RunsParity, ::testing::ValuesIn(runScenarios()),
                         [](const auto& info) { return info.param.name; });

/// The article file as a line at fault, its absence or its folder's leave it. Each in a thread of its own: a
/// file that stays open belongs to its thread.
class Locations : public TwoWorlds {
  protected:
    const std::filesystem::path folder = driveC() + "/TARVO";
    const std::filesystem::path file = folder / "articulo.tdw";

    ~Locations() override {
        std::filesystem::copy_file(std::string(PXTARVO_SAMPLES_DIR) + "/articulo.tdw", file,
                                   std::filesystem::copy_options::overwrite_existing);
    }

    /// Over either kind of cursor.
    void expectTheSameInThreads(Scenario scenario) {
        for (const auto cursor : {devhost::CursorLocation::Client, devhost::CursorLocation::Server}) {
            scenario.cursor = cursor;
            expectTheSameInAThread(scenario);
        }
    }
    void expectTheSameInAThread(const Scenario& scenario) {
        plugIn();
        std::pair<Locations*, const Scenario*> task{this, &scenario};
        const HANDLE thread = CreateThread(nullptr, 0, &Locations::inThread, &task, 0, nullptr);
        ASSERT_TRUE(thread);
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
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

TEST_F(Locations, SameRecordOfTheSampleFile) {
    expectTheSameInThreads(maintenance("locations", {click("XPButton4")}, "ESTANTERÍA NORTE PAS"));
}

TEST_F(Locations, SameRecordOfALineAtFaultAndAnotherPress) {
    const std::string before(17, '\x01');
    std::ofstream(file, std::ios::binary) << before
                                          << "01000000\x01P-\xD1\x01x\x01"
                                             "2.5\r"
                                          << before << "01000041\x01 \r\n\r\n"
                                          << before << "X\x01Y";
    expectTheSameInThreads(maintenance("lineAtFault", {click("XPButton4"), click("XPButton4")},
                                       "Error '55' en tiempo de ejecución"));
}

TEST_F(Locations, SameRecordWithoutTheFile) {
    std::filesystem::remove(file);
    expectTheSameInAThread(maintenance("noFile", {click("XPButton4"), click("XPButton4")}, "Error '53'"));
}

}  // namespace

}  // namespace pxtarvo::test
