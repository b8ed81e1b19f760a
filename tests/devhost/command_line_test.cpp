// pxtarvo-host as a process: exit statuses, what is printed, the files that it leaves.

#include <gmock/gmock.h>

#include <algorithm>

#include "host/tables.h"
#include "platform/values/text.h"
#include "tests/common/host_process.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

/// With its end.
std::string lastLineOf(const std::string& text) {
    return text.size() < 2 ? text : text.substr(text.rfind('\n', text.size() - 2) + 1);
}

class CommandLine : public ::testing::Test, protected HostProcess {};

TEST_F(CommandLine, RefusesWhatIsWrongWithAClearLastLine) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    ASSERT_EQ(run("init empty.db"), 0);
    folder.write(
        "text.db",
        "no database, but long enough to have a header of a hundred bytes if it were one .............");
    folder.write("void.db", "");
    std::filesystem::create_directory(folder.file("c"));
    folder.write("c/articulo.tdw", std::string(18, '\x01') + "\r" + std::string(19, '\x01') + "\r\n\r\n");
    const std::string before = bytesOf(folder.file("dealer.db"));
    struct Case {
        const char* arguments;
        int status;
        const char* lastLine;  ///< its end
    };
    const Case cases[] = {
        {"", 2, "a command is missing; --help after one tells more"},
        {"export dealer.db", 2, "export"},
        {"import ''", 2, "the name is empty"},
        {"import dealer.db --trace dealer.db", 2, "would overwrite what the command reads"},
        {"import dealer.db --file text.db --trace text.db", 2, "would overwrite what the command reads"},
        {"init", 2, "DB is required"},
        {"init dealer.db", 1, "'dealer.db' exists already"},
        {"init no/such/folder.db", 1, "the folder of 'no/such/folder.db' does not exist"},
        {"import dealer.db --year 2005", 2, ""},
        {"import dealer.db --year", 2, ""},
        {"import dealer.db --list case", 2, ""},
        {"import dealer.db --color", 2, "--color"},
        {"import dealer.db --now '2012-02-30 00:00:00'", 2, "2012-02-30 00:00:00"},
        {"import dealer.db --answer perhaps", 2, ""},
        {"import dealer.db --cursor both", 2, ""},
        {"import dealer.db --drive-c no/such/folder", 2, ""},
        {"import dealer.db --supplier 24x", 2, "--supplier: the field does not take '24x'"},
        {"import dealer.db --year 2006", 1,
         "the list 'C:\\TARVO\\TARIFA2006.MDB' does not exist; --file names another one, --drive-c the folder that "
         "stands for drive C:"},
        {"import dealer.db --file c", 1, "the list 'c' is a folder"},
        {"import dealer.db --file no.mdb", 1, "the list 'no.mdb' does not exist"},
        {"import dealer.db --file text.db", 1, "the run did not end with 'Proceso finalizado con exito'"},
        {"import dealer.db --list ama", 1, "nothing was imported: the list ama has no import for 2012"},
        {"locations dealer.db", 1,
         "the article file 'C:\\tarvo\\articulo.tdw' does not exist; --file names another one, --drive-c the folder that "
         "stands for drive C:"},
        {"locations dealer.db --file no.tdw", 1, "the article file 'no.tdw' does not exist"},
        {"locations dealer.db --file c", 1, "the article file 'c' is a folder"},
        {"locations dealer.db --file c/articulo.tdw", 1, "the run stopped at line 3 of c/articulo.tdw"},
        {"locations dealer.db --file text.db --trace text.db", 2, "would overwrite what the command reads"},
        {"fix-codes dealer.db --answer no", 1, "nothing was corrected: the question was answered no"},
        {"fix-codes dealer.db --in-transaction", 1, "the run did not end with 'proceso concluido'"},
        {"fix-codes dealer.db --year 2008", 2, "--year"},
        {"import dealer.db --trace no/such/folder/t", 1, "'no/such/folder/t' cannot be written"},
        {"import dealer.db --file {S}/list-apostrophe-row-57.mdb", 1, ""},
        {"import dealer.db --file {S}/TARIFA2012.MDB --in-transaction", 1, ""},
        {"import missing.db", 1,
         "there is no database 'missing.db': init makes a new one, load one from CSV files"},
        {"save missing.db out", 1, "init makes a new one, load one from CSV files"},
        {"import c", 1, "'c' is a folder, no database"},
        {"load dealer.db c", 1, "'dealer.db' exists already"},
        {"load new.db c", 1, "no CSV file in 'c' has the name of a table"},
        {"load new.db no", 2, "no"},
        {"save dealer.db text.db/out", 1, ""},
        {"query dealer.db 'SELECT nada FROM Art'", 1, "El nombre de columna 'nada' no es válido."},
        {"stock dealer.db", 1, "the run did not end with 'Proceso finalizado con exito'"},
        {"stock dealer.db --client 12345678901", 2, "--client: the field does not take '12345678901'"},
        {"stock dealer.db --file c/../dealer.db", 2, "the stock file would overwrite 'dealer.db'"},
        {"stock dealer.db --trace t --file t", 2, "the stock file would overwrite 't'"},
        {"stock dealer.db --supplier 24 --brand SAME --file no/s", 1,
         "the folder of the stock file 'no/s' does not exist"},
        {"stock dealer.db --supplier 24 --brand SAME", 1, "--drive-c the folder that stands for drive C:"},
        {"stock dealer.db --supplier 24 --brand SAME --file c", 1, "the stock file 'c' is a folder"},
        {"delete dealer.db --state viejo", 2, ""},
        {"delete dealer.db --until 1/1/1990", 1, "the run did not end with 'Proceso de borrado finalizado'"},
        {"stock dealer.db --supplier 24 --brand SAME --file ' dealer.db '", 2, "would overwrite 'dealer.db'"},
        {"import dealer.db --brand NADA", 1, "--brand: the window refused 'NADA'"},
        {"delete dealer.db --answer no", 1, "nothing was deleted: the answer was no"},
        {"delete dealer.db --until 32/13/2006", 2, "--until: '32/13/2006' is no date"},
        {"delete dealer.db --brand NADA", 1, "--brand: the window refused 'NADA'"},
        {"delete dealer.db --in-transaction", 1, ""},
        {"import text.db", 1, ""},
        {"import void.db --changes changes", 1, "the database is empty, without even a table"},
        {"import void.db", 1, "El nombre de objeto 'Pro' no es válido."},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.arguments);
        EXPECT_EQ(run(one.arguments), one.status);
        const std::string lastLine = lastLineOf(errors);
        EXPECT_THAT(lastLine, ::testing::StartsWith("pxtarvo-host: "));
        EXPECT_THAT(lastLine, EndsWith(std::string(one.lastLine) + "\n"));
        EXPECT_GT(lastLine.size(), 25u);
        // What a window has said is not said again.
        EXPECT_FALSE(!output.empty() && errors.find(lastLineOf(output)) != errors.npos);
    }
    EXPECT_TRUE(before == bytesOf(folder.file("dealer.db"))) << "the database changed";
    EXPECT_FALSE(std::filesystem::exists(folder.file("missing.db")));
    EXPECT_FALSE(std::filesystem::exists(folder.file("no")));
}

TEST_F(CommandLine, NamesItsCommandsAndItsVersion) {
    EXPECT_EQ(run(""), 2);
    for (const char* command :
         {"init", "load", "save", "query", "import", "stock", "delete", "locations", "fix-codes"}) {
        EXPECT_THAT(errors, ::testing::ContainsRegex("\n  " + std::string(command) + " +[A-Z]"));
    }
    EXPECT_EQ(run("--version"), 0);
    EXPECT_THAT(output, ::testing::MatchesRegex("pxtarvo-host [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(CommandLine, LoadsAndSavesTablesAllOrNothing) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    ASSERT_EQ(run("save dealer.db new/out"), 0) << errors;
    EXPECT_THAT(output, ::testing::StartsWith("Art.csv: 1000 rows\n"));
    folder.write("new/out/Otra.csv", "a,b\n");
    ASSERT_EQ(run("load again.db new/out --quiet"), 0) << errors;
    EXPECT_THAT(output, ::testing::StartsWith("Art.csv: 1000 rows\n"));
    EXPECT_EQ(errors, "pxtarvo-host: Otra.csv: left out, as no table of the host has this name\n");
    EXPECT_EQ(run("import again.db --file {S}/TARIFA2012.MDB"), 0);
    EXPECT_EQ(run("save again.db new/out"), 1);
    EXPECT_THAT(errors, EndsWith("'new/out/Art.csv' exists already\n"));

    folder.write("bad/Art.csv", "Art_Id,ART_PVE\n1,2.5\n2,gratis\n");
    EXPECT_EQ(run("load bad.db bad"), 1);
    EXPECT_THAT(errors, EndsWith("pxtarvo-host: Art.csv, line 3, column ART_PVE: 'gratis' is no number\n"));
    EXPECT_EQ(run("load bad.db new/out", "> out", "ulimit -f 100 && "), 1);
    EXPECT_THAT(errors, EndsWith("Error de lectura o escritura en el archivo de la base de datos.\n"));
    EXPECT_EQ(run("save dealer.db less", "> out", "ulimit -f 50 && "), 1);
    EXPECT_THAT(errors, HasSubstr("cannot be written: "));
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("less")));
    for (const auto& entry : std::filesystem::directory_iterator(folder.file(""))) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("bad.db")) << entry.path();
    }
}

TEST_F(CommandLine, RunsOneStatement) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    ASSERT_EQ(run("query dealer.db \"UPDATE Exis SET Exis_Lote = 'a\tb\nc\\\\d', Exis_Cantidad = -0.5, "
                  "Exis_Fentrada = '01/02/2012 03:04:05', Exis_Kill = 1 WHERE Exis_Id = 1\""),
              0)
        << errors;
    EXPECT_EQ(output, "");
    ASSERT_EQ(
        run("query dealer.db 'SELECT TOP 1 Exis_Id, Exis_Lote AS Lote, Exis_Cantidad, Exis_Fentrada, Exis_Kill, "
            "Exis_Largo FROM Exis'"),
        0)
        << errors;
    EXPECT_EQ(output,
              "Exis_Id\tLote\tExis_Cantidad\tExis_Fentrada\tExis_Kill\tExis_Largo\n"
              "1\ta\\tb\\nc\\\\d\t-0.5\t2012-02-01 03:04:05\t1\tNULL\n");
}

TEST_F(CommandLine, ImportsAndRecords) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    std::filesystem::create_directories(folder.file("c/tarvo"));
    std::filesystem::copy_file(sample("TARIFA2008.MDB"), folder.file("c/tarvo/tarifa2008.mdb"));
    // The year rebuilds the path; the field of an empty supplier stays empty.
    ASSERT_EQ(run("import dealer.db --year 2008 --drive-c c --supplier '' --brand AGM --now '2012-07-25 "
                  "10:30:00' --trace record.jsonl"),
              0)
        << errors;
    EXPECT_EQ(output, "Debe indicar el codigo de proveedor\nProceso finalizado con exito\n");
    EXPECT_EQ(errors, "pxtarvo-host: --supplier is empty: the run goes with supplier 0\n");
    const std::string record = bytesOf(folder.file("record.jsonl"));
    EXPECT_THAT(record, HasSubstr(R"(Data Source=C:\\TARVO\\TARIFA2008.MDB;)"));
    EXPECT_THAT(record, HasSubstr("Art_FechaEstado = '25/07/2012' WHERE"));
    EXPECT_THAT(record, HasSubstr(R"(["ARP_Idp",1,0])"));
    EXPECT_THAT(
        record,
        EndsWith(
            "{\"call\":\"commit\"}\n"
            R"({"call":"message","text":"Proceso finalizado con exito","title":"PXTarvo","buttons":"ok","icon":"none"})"
            "\n{\"call\":\"unload\",\"window\":\"frmImpTarifas\"}\n"));
    const auto connection = devhost::openHostFile(folder.file("dealer.db"), hostClock);
    EXPECT_GT(connection->Execute("SELECT * FROM ArtPro WHERE ARP_Idp = 0", -1)->RecordCount(), 500);
}

TEST_F(CommandLine, WritesTheStockFile) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    std::filesystem::create_directories(folder.file("c/tarvo/stock"));
    ASSERT_EQ(run("stock dealer.db --drive-c c --supplier 24 --brand AGM --client 'A 1' --organisation 16 "
                  "--address B --now '2012-07-25 10:30:00' --trace record.jsonl"),
              0)
        << errors;
    EXPECT_EQ(output, "Proceso finalizado con exito\n");
    const std::string file = bytesOf(folder.file("c/tarvo/stock/StockTarvo20120725.txt"));
    EXPECT_THAT(file, ::testing::StartsWith("A 1       BEGFILE                       16 B        \r\n"
                                            "A 1       AG-1"));
    EXPECT_THAT(file, EndsWith("A 1       ENDFILE                       16 B        \r\n"));
    EXPECT_EQ(file.size() % 54, 0u);
    EXPECT_THAT(bytesOf(folder.file("record.jsonl")),
                EndsWith(R"({"call":"unload","window":"frmExistencias"})"
                         "\n"
                         R"({"call":"unload","window":"frmImpTarifas"})"
                         "\n"));
}

TEST_F(CommandLine, ListsAndDeletesArticles) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    const std::string before = bytesOf(folder.file("dealer.db"));
    const std::string criteria = "delete dealer.db --brand SAME --until 31/12/2008 --state baja";
    ASSERT_EQ(run(criteria + " --list-only"), 0) << errors;
    EXPECT_THAT(output, ::testing::StartsWith("Codigo\tDescripción\tMarca\tAlm\tEstado\tFecha\n"));
    const auto lines = std::ranges::count(output, '\n');
    EXPECT_GT(lines, 5);
    EXPECT_THAT(output, ::testing::ContainsRegex("\tSame\t(Si|No)\tBaja\t[0-3][0-9]/[01][0-9]/200[5-8]\n"));
    EXPECT_TRUE(before == bytesOf(folder.file("dealer.db")));

    ASSERT_EQ(run(criteria), 0) << errors;
    EXPECT_EQ(output,
              "Confirma que desea borrar los articulos encontrados\n> Sí\nProceso de borrado finalizado\n");
    EXPECT_EQ(run(criteria + " --list-only"), 1);
    EXPECT_EQ(output, "No hay articulos introducidos\n");
}

/// A refusal of the host lets the run go on, a failure of its database does not.
TEST_F(CommandLine, TellsRefusalsAndStopsAtFailures) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    {
        const auto connection = devhost::openHostFile(folder.file("dealer.db"), hostClock);
        connection->runNative(
            "CREATE TRIGGER Ubi_Lleno BEFORE INSERT ON Ubi BEGIN SELECT RAISE(ABORT, 'No cabe.'); END");
    }
    EXPECT_EQ(run("locations dealer.db --file {S}/articulo.tdw --report page.html"), 3);
    EXPECT_THAT(bytesOf(folder.file("page.html")), HasSubstr("<p>El anfitrión rechazó "));
    EXPECT_EQ(output, "Proceso de importacion de C:\\tarvo\\articulo.tdw finalizado\n");
    EXPECT_THAT(errors,
                ::testing::ContainsRegex("pxtarvo-host: [0-9]+ writes were refused, the first: insert Ubi, "
                                         "Ubi_IdArt = [0-9]+: No cabe\\.\n$"));

    const std::string before = bytesOf(folder.file("dealer.db"));
    const auto connection = devhost::openHostFile(folder.file("dealer.db"), hostClock);
    connection->BeginTrans();
    for (const char* arguments : {"locations dealer.db --file {S}/articulo.tdw", "fix-codes dealer.db",
                                  "import dealer.db --year 2006 --file {S}/TARIFA2006.MDB"}) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(run(arguments), 1);
        EXPECT_THAT(output, HasSubstr("La base de datos está bloqueada por otro proceso."));
    }
    connection->RollbackTrans();
    EXPECT_EQ(run("import dealer.db --file {S}/TARIFA2012.MDB", "> out", "ulimit -f 100 && "), 1);
    EXPECT_THAT(output, HasSubstr("Error de lectura o escritura en el archivo de la base de datos."));
    EXPECT_TRUE(before == bytesOf(folder.file("dealer.db")));
}

TEST_F(CommandLine, FailsWhereItsOutputCannotBeWritten) {
    ASSERT_EQ(run("init dealer.db --sample", ">&-"), 0) << "nothing is to be written";
    EXPECT_EQ(run("fix-codes dealer.db", "> /dev/full"), 1);
    EXPECT_THAT(errors, EndsWith("standard output cannot be written\n"));
    EXPECT_EQ(run("--help", "> /dev/full"), 1);
    EXPECT_EQ(run("fix-codes dealer.db --trace record", ">&-"), 1);
    EXPECT_THAT(bytesOf(folder.file("record")), ::testing::Not(HasSubstr("\nConfirma")));
    EXPECT_EQ(run("import dealer.db --file {S}/TARIFA2012.MDB --trace /dev/full"), 1);
    EXPECT_THAT(errors, EndsWith("'/dev/full' cannot be written\n"));
    EXPECT_THAT(output, EndsWith("Proceso finalizado con exito\n"));
}

/// What an interrupted init left is in nobody's way.
TEST_F(CommandLine, MakesTheDatabaseUnderAnotherNameForEveryToolToRead) {
    ASSERT_EQ(run("init whole.db --sample"), 0);
    ASSERT_EQ(run("init dealer.db --sample", "> out", "ulimit -f 100 && "), 1);
    EXPECT_EQ(bytesOf(folder.file("dealer.db")), "");
    const std::string left[] = {"dealer.db-journal", "dealer.db.unfinished", "dealer.db.unfinished-journal"};
    for (const std::string& name : left) folder.write(name, "half");
    ASSERT_EQ(run("init dealer.db --sample"), 0) << errors;
    EXPECT_TRUE(bytesOf(folder.file("dealer.db")) == bytesOf(folder.file("whole.db")));
    for (const std::string& name : left) EXPECT_FALSE(std::filesystem::exists(folder.file(name))) << name;
    std::string script;
    for (const Tabla& table : tablasHost) {
        for (const Columna& column : table.columnas) {
            script += joined({"SELECT ", column.sNombre, " FROM ", table.sNombre, " ORDER BY 1;"});
        }
    }
    const std::string tool = "sqlite3 '" + folder.file("dealer.db") + "' '" + script + "' > /dev/null";
    EXPECT_EQ(std::system(tool.c_str()), 0);
}

}  // namespace

}  // namespace pxtarvo::tests
