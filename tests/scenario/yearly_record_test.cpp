// The record of calls of each yearly list, statement by statement, against records kept beside this file.

#include <gmock/gmock.h>

#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

class YearlyRecord : public Scene, public ::testing::WithParamInterface<const char*> {};

std::vector<ListRow> fiveRows() {
    return {
        listRow("0.001", 12.5, "C", "CASQUILLO "),     listRow("0.002", 50.0, "desconocido", Null{}),
        listRow("0.003", 7.0, Null{}, "JUNTA TÓRICA"), listRow(" 0.004 ", 31.07, " 12 ", "RETEN D'ACEITE"),
        listRow("0.004", Currency{310000}, "c", ""),
    };
}

/// Two runs for a brand that is not the one whose articles are retired. Article 1 costs less than its list
/// price, article 2 more; article 3 has no price yet, but for the 2007 list, which would stop there; then
/// comes a new article with blanks around its code, and its code once more.
TEST_P(YearlyRecord, IsTheOneKept) {
    const std::string year = GetParam();
    options.makeSource = memorySource(fiveRows());
    createEmptyDealer();
    sql("INSERT INTO Art (ART_Cod,ART_PVE,Art_Estado,Art_Marca,Art_Mar) VALUES ('0.001',5,0,1,1)");
    sql("INSERT INTO Art (ART_Cod,ART_PVE,Art_Estado,Art_Marca,Art_Mar) VALUES ('0.002',99.5,1,2,2)");
    sql("INSERT INTO Art (ART_Cod,ART_PVE,Art_Estado,Art_Marca,Art_Mar) VALUES ('0.003'," +
        std::string(year == "2007" ? "1" : "NULL") + ",0,1,1)");
    sql("INSERT INTO Marcas (Marca_ID,Marca_Des,Marca_CodAbrev) VALUES (12,'Otra','OTRA')");
    sql("INSERT INTO Art (ART_Cod,ART_PVE,Art_Estado,Art_Marca,Art_Mar) VALUES ('DE OTRA',5,0,12,12)");
    sql("INSERT INTO Aat (Aat_Id,Aat_C01) VALUES (2,'antes')");
    sql("INSERT INTO ArtPro (ARP_Ida,ARP_Idp,ARP_Cop) VALUES (2,4,'0.002')");

    for (int run = 0; run < 2; ++run) {
        inWindow([&](frmImpTarifas& window) {
            host().desktop().choose(window.Combo1, year);
            host().desktop().click(window.Option1[0]);
            host().desktop().type(window.Text1[3], "OTRA");
            press(window);
        });
    }
    EXPECT_EQ(value("SELECT Art_Estado FROM Art WHERE Art_Cod = 'DE OTRA'"), "0")
        << "only brand 1 is retired";

    expectKeptRecord("import-" + year);
}

INSTANTIATE_TEST_SUITE_P(Years, YearlyRecord,
                         ::testing::Values("2007", "2008", "2009", "2010", "2011", "2012"));

}  // namespace

}  // namespace pxtarvo::test
