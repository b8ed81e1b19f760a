// The list of 2006: prices and costs, what ends a run, and a transaction that is the host's.

#include <gmock/gmock.h>

#include <cmath>
#include <map>

#include "platform/portable/access/jet_connection.h"
#include "platform/values/conversion.h"
#include "platform/values/text.h"
#include "tests/common/database_state.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* allPrices = "SELECT Art_Cod,ART_PVE,ART_PCO FROM Art ORDER BY Art_Id";

/// A row as the list of 2006 has it.
ListRow row2006(Variant code, Variant price, Variant group, Variant description = "DESCRIPCION") {
    return {Null{}, std::move(code), Null{}, std::move(description), std::move(price), std::move(group)};
}

class List2006 : public Scene {
  protected:
    void SetUp() override { createEmptyDealer(); }

    void list(std::vector<ListRow> rows) {
        dropHost();
        options.makeSource = memorySource(std::move(rows));
    }
    /// True when the run closed the window.
    bool import(bool inTransaction) {
        if (inTransaction) host().connection()->BeginTrans();
        return run(&frmImpTarifas::XPButton1, {.year = "2006"});
    }
};

TEST_F(List2006, RecordAndPricesOfEachGroup) {
    list({row2006("0.001", 123.45, "C"), row2006(" 0.002 ", 31.07, " 12 ", "  RETÉN D'ACEITE "),
          row2006("0.003", 10.0, "65", Null{}), row2006("0.004", 10.0, "c"),
          row2006("0.005", Currency{0}, "M"), row2006("0.006", std::int32_t{7}, ""),
          row2006("0.007", "12,50", Null{}), row2006(std::int32_t{8}, 0.05, std::int32_t{11}),
          row2006("0.001", 200.0, "desconocido")});
    sql("INSERT INTO Art (ART_Cod,ART_DES,ART_PVE,Art_Estado,Art_Mar) VALUES ('0.001','MIA',5,1,7)");
    sql("INSERT INTO ArtPro (ARP_Ida,ARP_Idp,ARP_Cop) VALUES (1,4,'SUYO')");
    EXPECT_TRUE(import(true));
    expectKeptRecord("import-2006");
    EXPECT_THAT(rows(allPrices),
                ElementsAre("0.001|200|200", "0.002|31,07|15,53", "0.003|10|5", "0.004|10|10", "0.005|0|0",
                            "0.006|7|7", "0.007|12,5|12,5", "8|0,05|0,03"));
    EXPECT_EQ(value("SELECT ART_DES FROM Art WHERE Art_Estado = 1 AND Art_Mar = 7"), "MIA");
    EXPECT_THAT(rows("SELECT Arp_Descuento FROM ArtPro ORDER BY ARP_Id"),
                ElementsAre("0", "50", "50", "0", "50", "0", "0", "37"));
}

/// The whole sample list against costs counted in cents.
TEST_F(List2006, SampleListAgainstCostsInCents) {
    std::map<std::string, std::string> expected;
    portable::JetConnection source{portable::DrivePaths("")};
    source.ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + sample("TARIFA2006.MDB"));
    source.Open("", "", -1);
    const std::string thirtySeven = "|C|A|11|74|84|";
    const std::string fifty = "|M|12|64|65|89|";
    for (const auto rows = source.openRows("SELECT * FROM 31EUR000"); rows->next();) {
        const auto text = [&](int at) {
            return std::string(trimBlanks(joinedText(rows->value(at), spanishLocale())));
        };
        const std::string group = "|" + text(5) + "|";
        const int percent = thirtySeven.find(group) != std::string::npos ? 37
                            : fifty.find(group) != std::string::npos     ? 50
                                                                         : 0;
        const auto cents = std::llround(toDouble(rows->value(4), spanishLocale()) * 100);
        const auto cost = cents - (cents * percent + 50) / 100;
        expected[text(1)] =
            joined({toText(cents / 100.0, spanishLocale()), "|", toText(cost / 100.0, spanishLocale())});
    }
    ASSERT_GT(expected.size(), 400u);
    host().connection()->BeginTrans();
    EXPECT_TRUE(run(&frmImpTarifas::XPButton1, {.year = "2006", .file = sample("TARIFA2006.MDB")}));
    std::map<std::string, std::string> found;
    for (const std::string& line : rows(allPrices)) {
        const std::size_t bar = line.find('|');
        found[line.substr(0, bar)] = line.substr(bar + 1);
    }
    EXPECT_EQ(found, expected);
}

/// The run ends a transaction that it never began. Where there is none both ends are refused: the window
/// stays open, without the run's own message, and everything written stays.
TEST_F(List2006, TransactionIsTheHosts) {
    struct Case {
        const char* lastCode;
        bool inTransaction;
        bool closes;
        const char* message;  ///< its beginning
        std::vector<std::string> codes;
        std::vector<const char*> ends;  ///< of the record
    };
    constexpr const char* refusal =
        "Error '-2147168242' en tiempo de ejecución:\r\n\r\nNo hay ninguna transacción activa.";
    const Case cases[] = {
        {"C", true, true, "Proceso finalizado con exito", {"A", "B", "C"}, {"commit\"}"}},
        {"C", false, false, refusal, {"A", "B", "C"}, {"commit\",\"error\"", "rollback\",\"error\""}},
        {"C'", true, true, "Registro 3. ", {}, {"rollback\"}"}},
        {"C'", false, false, refusal, {"A", "B"}, {"rollback\",\"error\""}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.message + std::string(one.inTransaction ? ", in a transaction" : ""));
        SetUp();
        list({row2006("A", 1.0, "C"), row2006("B", 2.0, "C"), row2006(one.lastCode, 3.0, "C")});
        record.clear();
        EXPECT_EQ(import(one.inTransaction), one.closes);
        EXPECT_THAT(messageTexts(), ElementsAre(StartsWith(one.message)));
        EXPECT_FALSE(tests::transactionOpen(*host().connection()));
        EXPECT_EQ(rows("SELECT Art_Cod FROM Art"), one.codes);
        ASSERT_GT(record.size(), one.ends.size() + 2);
        for (std::size_t at = 0; at < one.ends.size(); ++at) {
            EXPECT_THAT(record[record.size() - 2 - one.ends.size() + at], HasSubstr(one.ends[at]));
        }
    }
}

TEST_F(List2006, RowsThatStopIt) {
    struct Case {
        ListRow row;
        const char* message;
    };
    const Case cases[] = {
        {row2006("A", 2.0, "C"), "Registro 2. Uso no válido de Null"},  // the article has no price
        {row2006("B", Null{}, "C"), "Registro 2. Uso no válido de Null"},
        {row2006("B", "consultar", "C"), "Registro 2. No coinciden los tipos"},
        {row2006("B", "", "C"), "Registro 2. No coinciden los tipos"},
    };
    for (const Case& one : cases) {
        SetUp();
        list({row2006("0", 1.0, "C"), one.row});
        sql("INSERT INTO Art (ART_Cod,ART_PVE) VALUES ('A',NULL)");
        EXPECT_TRUE(import(true));
        EXPECT_THAT(messageTexts(), ElementsAre(StartsWith(one.message)));
        EXPECT_THAT(rows("SELECT Art_Cod FROM Art"), ElementsAre("A"));
    }
}

/// The percentage follows the year that the window shows at each row.
TEST_F(List2006, YearChangedDuringTheRun) {
    list({row2006("A", 100.0, "C"), row2006("B", 100.0, "M"), row2006("C", 100.0, "M"),
          row2006("D", 100.0, "M"), row2006("E", 100.0, "x")});
    host().connection()->BeginTrans();
    const std::map<std::string, const char*> years{{"Procesado registro 1 A", "2008"},
                                                   {"Procesado registro 2 B", "2007"},
                                                   {"Procesado registro 3 C", "2006"}};
    inWindow([&](frmImpTarifas& window) {
        fillIn(window, {.year = "2006"});
        user().onYielded = [&] {
            EXPECT_FALSE(window.ProgressBar1.visible());
            const auto year = years.find(window.Label2.caption());
            if (year != years.end()) host().desktop().choose(window.Combo1, year->second);
        };
        press(window);
    });
    EXPECT_THAT(rows(allPrices), ElementsAre("A|100|63", "B|100|63", "C|100|63", "D|100|50", "E|100|100"));
}

TEST_F(List2006, TypesOfItsNumbers) {
    list({row2006("A", std::int32_t{7}, "C")});
    std::map<std::string, Variant::Type> types;
    noteTypes(types);
    EXPECT_TRUE(import(true));
    for (const char* computed : {"ART_PVE", "ART_PCO", "Arp_Precio", "Arp_Descuento"}) {
        EXPECT_EQ(types[computed], Variant::Type::Double) << computed;
    }
    EXPECT_EQ(types["Art_Mar"], Variant::Type::Integer);
}

/// After a refused article insertion the supplier's row goes to whatever article is the newest.
TEST_F(List2006, RefusedInsertionsGoUnnoticed) {
    list({row2006("A", 1.0, "C"), row2006("B", 2.0, "M", "PIEZA")});
    refuse(devhost::WriteKind::Insert, "Art", 2);
    EXPECT_TRUE(import(true));
    EXPECT_THAT(messageTexts(), ElementsAre("Proceso finalizado con exito"));
    EXPECT_THAT(rows("SELECT ARP_Ida,ARP_Cop,ARP_des,Arp_Precio,Arp_Descuento FROM ArtPro"),
                ElementsAre("1|A|PIEZA|2|50"));

    SetUp();
    refuse(devhost::WriteKind::Insert, "Art");
    EXPECT_TRUE(import(true));
    EXPECT_THAT(messageTexts(), ElementsAre("Registro 1. Uso no válido de Null"));
}

}  // namespace

}  // namespace pxtarvo::test
