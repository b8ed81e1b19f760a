// Every kind of run over the sample dealer, whose texts are hostile: rehearsed, made, reported, taken back.

#include <algorithm>
#include <filesystem>

#include "platform/values/text.h"
#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

using ::testing::Contains;
using ::testing::Not;

const auto hostileTexts = split(
    "<script>alert(1)</script>|\"&'|</td></table><img src=x onerror=alert(1)>|&lt;b&gt;&amp;|<!--|"
    "]]><svg onload=alert(1)>|=1+1|+1|-1|@SUM(A1)|\t=1|a;\"b\"\r\nc|ÑANDÚ €|'\"; DROP TABLE Art; --",
    '|');

class HostilePage : public Rehearsal {
  protected:
    /// Gives articles of all kinds these texts for codes and descriptions.
    void makeHostileDealer() {
        makeDealer();
        std::string sql;
        for (int article = 0; article < static_cast<int>(std::size(hostileTexts)); ++article) {
            const std::string quoted = "'" + replaced(hostileTexts[article], "'", "''") + "'";
            // Articles of the brand without movements, some with stock, one in two retired.
            // An apostrophe in a code stops the deletion.
            sql += "UPDATE Art SET ART_Cod = replace(" + quoted + ", char(39), '`'), ART_DES = " + quoted +
                   ", Art_Estado = " + std::to_string(article % 2) +
                   ", Art_FechaEstado = '2005-01-01 00:00:00' WHERE Art_Id = (SELECT Art_Id FROM Art "
                   "WHERE Art_Marca = 1 AND Art_Id % 4 = 0 ORDER BY Art_Id LIMIT 1 OFFSET " +
                   std::to_string(article) + ");";
        }
        change(sql +
               "UPDATE Pro SET Pro_NOM = '<script>alert(2)</script>';"
               "UPDATE Marcas SET Marca_Des = '</dd><script>alert(3)</script>';");
    }

    /// No element or attribute that only such texts would make.
    void expectHarmless(const ReportPage& page) {
        for (const char* name : {"script", "img", "src", "b", "i", "u", "onerror", "onload"}) {
            EXPECT_THAT(page.names(), Not(Contains(name)));
        }
    }
};

TEST_F(HostilePage, TellsAndTakesBackEveryKindOfRun) {
    struct Case {
        const char* command;
        int status;
        const char* verdict;
        List list{};
    };
    const auto listOf = [](const char* name) { return List{sample(name)}; };
    const List list2006{sample("TARIFA2006.MDB"), "31EUR000", 4};
    const char* const imported = "Tarifa importada";
    folder.write("half.tdw", bytesOf(sample("articulo.tdw")) + "\r\n" + std::string(18, '\x01') + "\r\n\r\n");
    const Case cases[] = {
        {"import --year 2007 --file {S}/TARIFA2007.MDB", 0, imported, listOf("TARIFA2007.MDB")},
        {"import --year 2008 --file {S}/TARIFA2008.MDB", 0, imported, listOf("TARIFA2008.MDB")},
        {"import --year 2009 --file {S}/TARIFA2009.MDB --brand AGM", 0, imported, listOf("TARIFA2009.MDB")},
        {"import --file {S}/TARIFA2012.MDB --supplier 24", 0, imported, listOf("TARIFA2012.MDB")},
        {"import --file {S}/list-apostrophe-row-57.mdb", 1, "Se detuvo en la fila 57: no ha quedado nada"},
        {"import --file {S}/TARIFA2012.MDB --in-transaction", 1, "No empezó: no ha quedado nada"},
        {"import --year 2006 --file {S}/TARIFA2006.MDB --in-transaction", 0, imported, list2006},
        {"import --year 2006 --file {S}/TARIFA2006.MDB", 1,
         "Se detuvo tras la fila 500: han quedado escritas las filas 1 a 500", list2006},
        {"import --year 2008 --list ama --file '{S}/CÓDIGO DE BARRAS2008.xls'", 0, imported},
        {"import --year 2008 --list ama --file {S}/barcodes-apostrophe-row-12.xls", 1,
         "Se detuvo en la fila 12: han quedado escritas las filas 1 a 11 y la baja de la marca"},
        {"import --year 2008 --list ama --file {S}/barcodes-apostrophe-row-12.xls --in-transaction", 1,
         "Se detuvo en la fila 12: no ha quedado nada"},
        {"locations --file {S}/articulo.tdw", 0, "Ubicaciones actualizadas"},
        {"locations --file half.tdw", 1,
         "Se detuvo en la línea 121: han quedado escritas las líneas 1 a 120"},
        {"locations --file half.tdw --in-transaction", 1, "Se detuvo en la línea 121: no ha quedado nada"},
        {"fix-codes", 0, "Códigos corregidos"},
        {"fix-codes --answer no", 1, "No empezó: no ha quedado nada"},
        {"delete --cursor server", 0, "Artículos borrados"},
        {"delete --brand SAME --until 31/12/2008", 0, "Artículos borrados"},
    };
    std::set<std::string> told;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.command);
        makeHostileDealer();
        EXPECT_EQ(holds(one.command, one.list), one.status) << errors;
        const ReportPage page(path("real.html"));
        EXPECT_EQ(page.verdict(), one.verdict);
        expectHarmless(page);
        for (const auto& [label, line] : page.totals()) told.insert(label);
    }
    EXPECT_EQ(told.size(), Comparison::totalsKnown) << "a line of the totals that no run tells";
    const Rows deleted = ReportPage(path("real.html")).table("Artículos borrados");
    for (const std::string_view text : hostileTexts) {
        const std::string shown = replaced(text, "\r", " ");
        EXPECT_TRUE(std::ranges::any_of(deleted, [&](const Row& row) {
            return row.at(0) == replaced(shown, "'", "`") && row.at(1) == shown;
        })) << text;
    }
}

TEST_F(HostilePage, ShowsTheTextsOfTheListAndOfTheFilesNames) {
    makeHostileDealer();
    const std::string list = bytesOf(sample("list-apostrophe-row-57.mdb"));
    folder.write("<i>&\"'.mdb", replaced(list, wide("7O'RING"), wide("<b>'&\"<")));
    std::filesystem::rename(path("dealer.db"), path("<u>&\".db"));
    EXPECT_EQ(run(R"(import '<u>&".db' --file '<i>&"'"'"'.mdb' --report real.html --csv real)"), 1);
    const ReportPage page(path("real.html"));
    expectHarmless(page);
    const Rows faults = page.table("Faltas de la lista");
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults.at(0).at(0) + faults.at(0).at(1), "57<b>'&\"<");
    EXPECT_THAT(page.texts("//dd"), Contains("<i>&\"'.mdb"));
}

}  // namespace

}  // namespace pxtarvo::tests
