// The barcode list: which rows create what, and what stays of a run that stops.

#include <gmock/gmock.h>

#include "platform/values/runtime_error.h"
#include "tests/scenario/memory_workbook.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* articles = "SELECT Art_Cod,ART_DES,Art_barCode,Art_Mar FROM Art ORDER BY Art_Id";
constexpr const char* supplied = "SELECT ARP_Ida,ARP_Idp,ARP_Cop,ARP_des FROM ArtPro ORDER BY ARP_Id";
constexpr const char* retired =
    "UPDATE Art Set Art_Estado=1, Art_FechaEstado = '25/07/2012' WHERE Art_Estado =0 AND Art_Mar = 12";

class BarcodeList : public Scene {
  protected:
    /// One active article of the chosen brand, known by its code and its barcode.
    void SetUp() override {
        createEmptyDealer();
        sql("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (12,'Otra marca','OTRA')");
        sql("INSERT INTO Art (ART_Cod,ART_DES,Art_barCode,Art_Mar) VALUES ('VIEJO','VIEJA','84001',12)");
    }
    void sheet(std::vector<SheetRow> rows) {
        dropHost();
        options.makeSpreadsheet = memoryWorkbook(std::move(rows));
    }
    /// True when the run closed the window.
    bool import(ImportSteps steps = {}) {
        steps.year = "2008";
        steps.brand = steps.brand.value_or("OTRA");
        return run(&frmImpTarifas::XPButton1, steps, 1);
    }
};

TEST_F(BarcodeList, RecordOfTheSampleOfCellTypes) {
    EXPECT_TRUE(import({.file = sample("barcodes-cell-types.xls")}));
    expectKeptRecord("barcodes-cell-types");
    EXPECT_EQ(value("SELECT Art_Estado FROM Art WHERE Art_Cod = 'VIEJO'"), "1") << "retired and left so";
    EXPECT_EQ(value("SELECT count(*) FROM Art WHERE Art_Estado = 0 AND ART_PVE = 0"), "9");
}

TEST_F(BarcodeList, RowsFindOrCreateArticles) {
    struct Case {
        std::vector<SheetRow> rows;
        std::vector<std::string> created;  ///< after the first article
        std::vector<std::string> supplied;
    };
    const Case cases[] = {
        // A known barcode: a second article in row 1, nothing from row 2 on.
        {{{"N1", "D", "84001"}}, {"N1|D|84001|12"}, {"2|4|N1|D"}},
        {{{"N1", "D", "84002"}, {"N2", "E", "84001"}, {"N3", "F", " 84002 "}},
         {"N1|D|84002|12"},
         {"2|4|N1|D"}},
        // A known code with an unknown barcode: the barcode takes its place.
        {{{"VIEJO", "D", "84003"}}, {"84003|D|84003|12"}, {"2|4|84003|D"}},
        // Blanks stay in the code, leave the others; apostrophes leave the description.
        {{{"  N 1 ", "  O'RING 'X' ", "  84 004 "}}, {"  N 1 |ORING X|84 004|12"}, {"2|4|  N 1 |ORING X"}},
        // Rows without a barcode find the article that the first of them created.
        {{{"N1", "D"}, {"N2", "E", "  "}, {"N3", "F", "84005"}},
         {"N1|D||12", "N3|F|84005|12"},
         {"2|4|N1|D", "3|4|N3|F"}},
        // Numbers are their plain digits. The first blank code ends the sheet.
        {{{50002.0, 1.5, 123456789012345.0}, {"   ", "D", "84006"}, {"N3", "F", "84007"}},
         {"50002|1,5|123456789012345|12"},
         {"2|4|50002|1,5"}},
        {{{Empty{}, "D", "84008"}, {"N2", "E", "84009"}}, {}, {}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(&one - cases);
        SetUp();
        sheet(one.rows);
        EXPECT_TRUE(import());
        EXPECT_THAT(messageTexts(), ElementsAre("Proceso finalizado con exito"));
        std::vector<std::string> created = rows(articles);
        EXPECT_EQ(created.front(), "VIEJO|VIEJA|84001|12");
        created.erase(created.begin());
        EXPECT_EQ(created, one.created);
        EXPECT_EQ(rows(supplied), one.supplied);
        EXPECT_EQ(value("SELECT Art_Estado FROM Art WHERE Art_Cod = 'VIEJO'"), "1");
    }
    EXPECT_THAT(recordOf("update"), IsEmpty());
}

/// The retirement comes first and stays, whatever happens afterwards; without a brand there is none.
TEST_F(BarcodeList, StopsBeforeTheFirstRow) {
    using Application = ObjectRef<SpreadsheetApplication>;
    const auto noApplication = [](const portable::DrivePaths&) -> Application {
        throw RuntimeError(ErrorNumber::CannotCreateObject);
    };
    struct Case {
        std::function<Application(const portable::DrivePaths&)> makeSpreadsheet;
        const char* path;
        const char* brand;
        const char* message;
        bool retires;
    };
    const Case cases[] = {
        {nullptr, "C:\\TARVO\\NO.xls", "OTRA", "Registro 0. No se encontró 'C:\\TARVO\\NO.xls'", true},
        {nullptr, PXTARVO_SAMPLES_DIR "/TARIFA2012.MDB", "OTRA", "Registro 0. No se puede abrir '", true},
        {noApplication, "x", "OTRA", "Registro 0. El componente ActiveX no puede crear el objeto", true},
        {noApplication, "x", "", "Registro 0. El componente ActiveX no puede crear el objeto", false},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.message);
        options.makeSpreadsheet = one.makeSpreadsheet;
        SetUp();
        record.clear();
        EXPECT_TRUE(import({.file = one.path, .brand = one.brand}));
        EXPECT_THAT(messageTexts().back(), StartsWith(one.message));
        EXPECT_EQ(value("SELECT Art_Estado FROM Art"), one.retires ? "1" : "0");
        EXPECT_EQ(
            std::ranges::count(record, std::string("{\"call\":\"execute\",\"sql\":\"") + retired + "\"}"),
            one.retires ? 1 : 0);
    }
    native("DROP TABLE Art");
    EXPECT_TRUE(import());
    EXPECT_EQ(messageTexts().back(), "Registro 0. El nombre de objeto 'Art' no es válido.");
}

TEST_F(BarcodeList, ErrorsInARowLeaveTheRowsBeforeIt) {
    const SheetRow bad[] = {{"N'2", "E", "84003"},
                            {"N2", "E", "84'3"},
                            {"N2", ErrorValue{2042}, "84003"},
                            {ErrorValue{2042}, "E", "84003"}};
    for (const SheetRow& row : bad) {
        SCOPED_TRACE(&row - bad);
        SetUp();
        sheet({{"N1", "D", "84002"}, row, {"N3", "F", "84004"}});
        EXPECT_TRUE(import());
        EXPECT_THAT(messageTexts(), ElementsAre(StartsWith("Registro 2. ")));
        EXPECT_THAT(rows(supplied), ElementsAre("2|4|N1|D"));
        EXPECT_EQ(value("SELECT Art_Estado FROM Art WHERE Art_Cod = 'VIEJO'"), "1");
    }
}

TEST_F(BarcodeList, TypesOfItsNumbers) {
    sheet({{"N1", "D", 84002.0}});
    std::map<std::string, Variant::Type> types;
    noteTypes(types);
    EXPECT_TRUE(import());
    for (const char* constant : {"ART_PVE", "ART_PCO", "Arp_Precio", "Arp_Descuento", "Art_Estado"}) {
        EXPECT_EQ(types[constant], Variant::Type::Integer) << constant;
    }
    EXPECT_EQ(types["Art_Mar"], Variant::Type::Long);
    EXPECT_EQ(types["Art_barCode"], Variant::Type::Text);
}

/// Without a supplier and a brand; then the user chooses the supplier while the run yields: the next known
/// barcode gives the article of the row before a row of the new supplier.
TEST_F(BarcodeList, IdentifiersAreReadAtEachRow) {
    sheet({{"N1", "D", "84002"}, {"N2", "E", "84002"}});
    bool chosen = false;
    inWindow([&](frmImpTarifas& window) {
        host().desktop().click(window.Option1[1]);
        fillIn(window, {.year = "2008", .supplier = "", .brand = ""});
        user().onYielded = [&] {
            // The bar shows how many sheets there are, and never advances.
            EXPECT_TRUE(window.ProgressBar1.visible());
            EXPECT_EQ(window.ProgressBar1.maximum(), memoryWorkbookSheets);
            EXPECT_EQ(window.ProgressBar1.value(), 0);
            if (window.Label2.caption() != "Procesado registro 1 N1" || std::exchange(chosen, true)) return;
            host().desktop().type(window.Text1[1], "24");
            host().desktop().press(vkReturn);
        };
        press(window);
    });
    EXPECT_EQ(messageTexts().back(), "Proceso finalizado con exito");
    EXPECT_THAT(rows(articles), ElementsAre("VIEJO|VIEJA|84001|12", "N1|D|84002|0"));
    EXPECT_THAT(rows(supplied), ElementsAre("2|0|N1|D", "2|4|N2|E"));
    EXPECT_EQ(value("SELECT Art_Estado FROM Art WHERE Art_Cod = 'VIEJO'"), "0");
}

}  // namespace

}  // namespace pxtarvo::test
