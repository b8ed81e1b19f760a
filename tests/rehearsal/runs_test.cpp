// Every kind of run over the sample dealer: rehearsed, made, reported, taken back.

#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

TEST_F(Rehearsal, TellsAndTakesBackEveryKindOfRun) {
    struct Case {
        const char* command;
        int status;
        const char* verdict;
        List list{};
    };
    const List list2006{sample("TARIFA2006.MDB"), "31EUR000", 4};
    folder.write("half.tdw", bytesOf(sample("articulo.tdw")) + "\r\n" + std::string(18, '\x01') + "\r\n\r\n");
    const Case cases[] = {
        {"import --year 2007 --file {S}/TARIFA2007.MDB", 0, "Tarifa importada", {sample("TARIFA2007.MDB")}},
        {"import --year 2008 --file {S}/TARIFA2008.MDB", 0, "Tarifa importada", {sample("TARIFA2008.MDB")}},
        {"import --year 2009 --file {S}/TARIFA2009.MDB --brand AGM",
         0,
         "Tarifa importada",
         {sample("TARIFA2009.MDB")}},
        {"import --file {S}/TARIFA2012.MDB --supplier 24", 0, "Tarifa importada", {sample("TARIFA2012.MDB")}},
        {"import --file {S}/list-apostrophe-row-57.mdb", 1, "Se detuvo en la fila 57: no ha quedado nada"},
        {"import --file {S}/TARIFA2012.MDB --in-transaction", 1, "No empezó: no ha quedado nada"},
        {"import --year 2006 --file {S}/TARIFA2006.MDB --in-transaction", 0, "Tarifa importada", list2006},
        {"import --year 2006 --file {S}/TARIFA2006.MDB", 1,
         "Se detuvo tras la fila 500: han quedado escritas las filas 1 a 500", list2006},
        {"import --year 2008 --list ama --file '{S}/CÓDIGO DE BARRAS2008.xls'", 0, "Tarifa importada"},
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
        {"delete --brand SAME --until 31/12/2008 --state baja", 0, "Artículos borrados"},
        {"delete --cursor server", 0, "Artículos borrados"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.command);
        makeDealer();
        EXPECT_EQ(holds(one.command, one.list), one.status) << errors;
        EXPECT_EQ(ReportPage(path("real.html")).verdict(), one.verdict);
    }
}

}  // namespace

}  // namespace pxtarvo::tests
