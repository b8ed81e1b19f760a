// All the faults of a list, what stays of a run that they stop, and the list checked without a database.

#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "platform/values/text.h"
#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

constexpr const char* quoteNotClosed = "Comilla no cerrada antes de la cadena de caracteres ''.";
constexpr const char* tooShort = "El subíndice está fuera del intervalo";
constexpr const char* complete = "A la línea le faltan campos: complétela o quítela.";
constexpr const char* withoutApostrophe = "Quite el apóstrofo.";

class Faults : public Rehearsal {
  protected:
    void SetUp() override {
        std::string prices = bytesOf(sample("list-bad-price-row-12.mdb"));
        prices = replaced(prices, wide("B19"), wide("B'9"));
        folder.write("list.mdb", replaced(prices, wide("B30"), wide("'30")));
        std::string sheet = bytesOf(sample("barcodes-apostrophe-row-12.xls"));
        sheet = replaced(sheet, "AMA-1017", "AMA'1017");
        folder.write("list.xls", replaced(sheet, "AMA-1024", "AMA'1024"));
        std::string lines;
        for (const char* line : {"SIN SITIO|A1", "short", "O'RING|A2", "", "01000080|A3", "9'9|A4"}) {
            const std::vector<std::string_view> fields = split(line, '|');
            std::string whole;
            if (fields.size() == 2) {
                whole = joined({std::string(17, '\x01'), fields[0], "\x01", fields[1],
                                "\x01\x01"
                                "0"});
            } else {
                whole = line;
            }
            lines += whole + "\r\n";
        }
        folder.write("articulo.tdw", lines);
    }
};

TEST_F(Faults, AreAllNamedOnceWithWhatStays) {
    struct Case {
        const char* command;
        const char* would;
        const char* did;
        Rows faults;
    };
    const Case cases[] = {
        {"import --file list.mdb",
         "Se detendrá en la fila 12: no quedará nada",
         "Se detuvo en la fila 12: no ha quedado nada",
         {{"12", "B11", "Precio", "consultar", "No coinciden los tipos",
           "Escriba en esa columna un valor del tipo que la tarifa pide."},
          {"20", "B'9", "Codigo", "B'9", quoteNotClosed, withoutApostrophe},
          {"31", "'30", "Codigo", "'30", quoteNotClosed, withoutApostrophe}}},
        {"import --year 2008 --list ama --file list.xls",
         "Se detendrá en la fila 12: quedarán escritas las filas 1 a 11 y la baja de la marca",
         "Se detuvo en la fila 12: han quedado escritas las filas 1 a 11 y la baja de la marca",
         {{"12", "AMA'12", "A", "AMA'12", quoteNotClosed, withoutApostrophe},
          {"18", "AMA'1017", "A", " AMA'1017 ", quoteNotClosed, withoutApostrophe},
          {"25", "AMA'1024", "A", " AMA'1024 ", quoteNotClosed, withoutApostrophe},
          {"27", "AMA'1024", "A", " AMA'1024 ", quoteNotClosed, withoutApostrophe}}},
        {"locations --file articulo.tdw",
         "Se detendrá en la línea 2: quedará escrita la línea 1",
         "Se detuvo en la línea 2: ha quedado escrita la línea 1",
         {{"2", "", "", "short", tooShort, complete},
          {"3", "", "", "|||||||||||||||||O'RING|A2||0", quoteNotClosed, withoutApostrophe},
          {"4", "", "", "", tooShort, complete},
          {"6", "", "", "|||||||||||||||||9'9|A4||0", quoteNotClosed, withoutApostrophe}}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.command);
        makeDealer();
        change("INSERT INTO Art (ART_Cod) VALUES ('SIN SITIO')");
        EXPECT_EQ(holds(one.command), 1);
        EXPECT_EQ(ReportPage(path("dry.html")).verdict(), one.would);
        const ReportPage page(path("real.html"));
        EXPECT_EQ(page.verdict(), one.did);
        EXPECT_EQ(page.table("Faltas de la lista"), one.faults);
        EXPECT_EQ(csvRows(path("real/faltas.csv")), one.faults);
        const Rows rows = csvRows(path("real/filas-con-faltas.csv"));
        ASSERT_EQ(rows.size(), one.faults.size());
        for (std::size_t at = 0; at < rows.size(); ++at) EXPECT_EQ(rows[at].at(0), one.faults[at].at(0));
    }
}

/// Not every fault is the list's.
TEST_F(Faults, ThatAreTheDealersAreSaidToBe) {
    makeDealer();
    change("INSERT INTO Art (ART_Cod) VALUES ('01000080')");
    EXPECT_EQ(holds("import --year 2007 --file {S}/TARIFA2007.MDB"), 1);
    EXPECT_EQ(ReportPage(path("real.html")).table("Faltas de la lista"),
              (Rows{{"3", "01000080", "", "", "Uso no válido de Null",
                     "El artículo no tiene precio en la base de datos: escríbalo allí."}}));

    // A transaction that cannot begin is no row's.
    EXPECT_EQ(holds("import --file {S}/TARIFA2012.MDB --in-transaction"), 1);
    EXPECT_TRUE(ReportPage(path("real.html")).table("Faltas de la lista").empty());
}

/// The check stops where the import of the same list into an empty database does, and its status says how.
TEST_F(Faults, AreTheSameForACheckAsForAnImport) {
    ASSERT_EQ(run("init dealer.db"), 0);
    const std::string before = bytesOf(path("dealer.db"));
    std::set<int> statuses;
    std::vector<std::string> files{path("list.mdb"), path("list.xls")};
    for (const auto& entry : std::filesystem::directory_iterator(PXTARVO_SAMPLES_DIR))
        files.push_back(entry.path());
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        std::string kind = " --year 2012";
        if (file.ends_with(".xls"))
            kind = " --year 2008 --list ama";
        else if (file.ends_with("2006.MDB"))
            kind = " --year 2006";
        else if (!file.ends_with(".mdb") && !file.ends_with(".MDB"))
            continue;
        const bool of2006 = file.ends_with("2006.MDB");
        const int imported = run("import dealer.db --dry-run --quiet" + kind + " --file '" + file + "'" +
                                 (of2006 ? " --in-transaction" : ""));
        const auto stoppedAt = numberAfter(output, "Registro ");
        const int status = run("check '" + file + "'" + kind + " --report page.html");
        statuses.insert(status);
        EXPECT_EQ(status == 1, imported == 1) << output;
        const auto namedFirst = numberAfter(output, "stops: row ");
        EXPECT_TRUE(!namedFirst || namedFirst == stoppedAt) << output;
        EXPECT_EQ(status == 0, output.find("warning: ") == output.npos && imported == 0) << output;
        const ReportPage page(path("page.html"));
        std::map<std::string, std::size_t> lines;  // the page gathers unknown groups
        std::istringstream told(output);
        for (std::string line; std::getline(told, line);) {
            const bool group = line.find(": unknown group '") != line.npos;
            ++lines[group ? "group" : line.substr(0, line.find(':'))];
        }
        EXPECT_EQ(page.table("Avisos de la lista").size(), lines["warning"]);
        EXPECT_EQ(page.table("Faltas de la lista").size(), lines["stops"]);
        EXPECT_EQ(page.table("Grupos desconocidos").empty(), lines["group"] == 0);
    }
    EXPECT_EQ(statuses, (std::set<int>{0, 1, 3}));
    EXPECT_TRUE(bytesOf(path("dealer.db")) == before);
    EXPECT_EQ(run("check {S}/TARIFA2012.MDB --year 2008 --list ama"), 1);
    EXPECT_EQ(run("check {S}/TARIFA2012.MDB --year 2012 --list ama"), 2);
    EXPECT_EQ(run("check missing.mdb --year 2012"), 1);
    EXPECT_EQ(run("check . --year 2012"), 1);
}

}  // namespace

}  // namespace pxtarvo::tests
