// pxtarvo-host as a process: exit statuses, what is printed, the files that it leaves.

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/common/host_process.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

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
        {"", 2, "A subcommand is required"},
        {"export dealer.db", 2, "export"},
        {"import ''", 2, "the name is empty"},
        {"import dealer.db --trace dealer.db", 2, "would overwrite what the command reads"},
        {"import dealer.db --file text.db --trace text.db", 2, "would overwrite what the command reads"},
        {"import dealer.db --list ama", 1, "the list ama has no import for 2012"},
        {"init", 2, "DB is required"},
        {"init dealer.db", 1, "El archivo 'dealer.db' ya existe."},
        {"init no/such/folder.db", 1, ""},
        {"import dealer.db --year 2005", 2, ""},
        {"import dealer.db --year", 2, ""},
        {"import dealer.db --list", 2, ""},
        {"import dealer.db --list case", 2, ""},
        {"import dealer.db --color", 2, "--color"},
        {"import dealer.db other.db", 2, "other.db"},
        {"import dealer.db --now '2012-02-30 00:00:00'", 2, "2012-02-30 00:00:00"},
        {"import dealer.db --now 2012-02-28", 2, "2012-02-28"},
        {"import dealer.db --answer perhaps", 2, ""},
        {"import dealer.db --cursor both", 2, ""},
        {"import dealer.db --drive-c no/such/folder", 2, ""},
        {"import dealer.db --supplier 24x", 2, "--supplier: the field does not take '24x'"},
        {"import dealer.db --year 2006", 1, "No se pudo encontrar el archivo 'C:\\TARVO\\TARIFA2006.MDB'."},
        {"import dealer.db --list ama", 1, "nothing was imported: the list ama has no import for 2012"},
        {"locations dealer.db", 1, "No se encontró la ruta de acceso (C:\\tarvo\\articulo.tdw)"},
        {"locations dealer.db --file no.tdw", 1, "No se encontró el archivo (no.tdw)"},
        {"locations dealer.db --file c/articulo.tdw", 1, "(c/articulo.tdw, line 3)"},
        {"locations dealer.db --file text.db --trace text.db", 2, "would overwrite what the command reads"},
        {"fix-codes dealer.db --answer no", 1, "nothing was corrected: the question was answered no"},
        {"fix-codes dealer.db --in-transaction", 1, "No se pueden iniciar más transacciones en esta sesión."},
        {"fix-codes dealer.db --year 2008", 2, "--year"},
        {"import dealer.db --trace no/such/folder/t", 1, "No se puede escribir 'no/such/folder/t'."},
        {"import dealer.db", 1, "No se pudo encontrar el archivo 'C:\\TARVO\\TARIFA2012.MDB'."},
        {"import dealer.db --file {S}/list-apostrophe-row-57.mdb", 1, ""},
        {"import dealer.db --file {S}/TARIFA2012.MDB --in-transaction", 1, ""},
        {"import missing.db", 1, ""},
        {"stock dealer.db", 1, "Debe indicar el codigo de proveedor"},
        {"stock dealer.db --client 12345678901", 2, "--client: the field does not take '12345678901'"},
        {"stock dealer.db --file c/../dealer.db", 2, "the stock file would overwrite 'dealer.db'"},
        {"stock dealer.db --trace t --file t", 2, "the stock file would overwrite 't'"},
        {"stock dealer.db --supplier 24 --brand SAME --file no/s", 1,
         "No se encontró la ruta de acceso (no/s)"},
        {"delete dealer.db --state viejo", 2, ""},
        {"delete dealer.db --until 1/1/1990", 1, "No hay articulos introducidos"},
        {"stock dealer.db --supplier 24 --brand SAME --file ' dealer.db '", 2, "would overwrite 'dealer.db'"},
        {"import dealer.db --brand NADA", 1, "--brand NADA: Codigo Marca no existe"},
        {"delete dealer.db --answer no", 1, "nothing was deleted: the answer was no"},
        {"delete dealer.db --until 32/13/2006", 2, "--until: '32/13/2006' is no date"},
        {"delete dealer.db --brand NADA", 1, "--brand NADA: Codigo Marca no existe"},
        {"delete dealer.db --in-transaction", 1, ""},
        {"import text.db", 1, ""},
        {"import void.db", 1, "El nombre de objeto 'Pro' no es válido."},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.arguments);
        EXPECT_EQ(run(one.arguments), one.status);
        const std::string lastLine = errors.substr(errors.rfind('\n', errors.size() - 2) + 1);
        EXPECT_THAT(lastLine, ::testing::StartsWith("pxtarvo-host: "));
        EXPECT_THAT(lastLine, EndsWith(std::string(one.lastLine) + "\n"));
        EXPECT_GT(lastLine.size(), 25u);
    }
    EXPECT_TRUE(before == bytesOf(folder.file("dealer.db"))) << "the database changed";
    EXPECT_FALSE(std::filesystem::exists(folder.file("missing.db")));
    EXPECT_FALSE(std::filesystem::exists(folder.file("no")));
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
    EXPECT_EQ(errors, "");
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

TEST_F(CommandLine, RunsTheOtherListsAndTheMaintenance) {
    struct Case {
        const char* arguments;
        int status;
        const char* output;  ///< its end
        const char* query;
        const char* result;
    };
    const Case cases[] = {
        {"import dealer.db --year 2006 --in-transaction --file {S}/TARIFA2006.MDB", 0,
         "Proceso finalizado con exito\n", "SELECT count(*) FROM ArtPro WHERE Arp_Descuento = 37", "206"},
        {"import dealer.db --year 2008 --list ama --file {S}/barcodes-apostrophe-row-12.xls", 1,
         "Registro 12. Comilla no cerrada antes de la cadena de caracteres ''.\n",
         "SELECT count(*) FROM Art WHERE ART_PVE = 0", "11"},
        {"locations dealer.db --file {S}/articulo.tdw", 0,
         "Proceso de importacion de C:\\tarvo\\articulo.tdw finalizado\n",
         "SELECT count(*) FROM Ubi WHERE Ubi_Pasillo = 'ESTANTERÍA NORTE PAS'", "3"},
        {"fix-codes dealer.db", 0, "Confirma que desea comenzar el proceso\n> Sí\nproceso concluido\n",
         "SELECT count(*) FROM Hexis WHERE Hexis_Usu = 1", "84"},
    };
    ASSERT_EQ(run("init sample.db --sample"), 0);
    for (const Case& one : cases) {
        SCOPED_TRACE(one.arguments);
        std::filesystem::copy_file(folder.file("sample.db"), folder.file("dealer.db"),
                                   std::filesystem::copy_options::overwrite_existing);
        EXPECT_EQ(run(one.arguments), one.status) << errors;
        EXPECT_THAT(output, EndsWith(one.output));
        const auto connection = devhost::openHostFile(folder.file("dealer.db"), hostClock);
        EXPECT_EQ(joinedText(connection->Execute(one.query, -1)->Fields(0), spanishLocale()), one.result);
    }
}

/// What --in-transaction opened ends as the run did, unless the run has ended it.
TEST_F(CommandLine, EndsTheHostsTransactionAsTheRunEnded) {
    ASSERT_EQ(run("init sample.db --sample"), 0);
    struct Case {
        const char* arguments;
        int status;
        const char* query;
        const char* result;
    };
    const Case cases[] = {
        {"import --year 2008 --list ama --file {S}/barcodes-apostrophe-row-12.xls", 1,
         "SELECT count(*) FROM Art WHERE ART_PVE = 0", "0"},
        {"locations --file {S}/articulo.tdw", 0,
         "SELECT count(*) FROM Ubi WHERE Ubi_Pasillo = 'ESTANTERÍA NORTE PAS'", "3"},
        {"locations --file half.tdw", 1,
         "SELECT count(*) FROM Ubi WHERE Ubi_Pasillo = 'ESTANTERÍA NORTE PAS'", "0"},
        {"import --supplier 0 --file {S}/TARIFA2012.MDB", 1, "SELECT count(*) FROM ArtPro WHERE ARP_Idp = 0",
         "0"},
    };
    const std::string whole = bytesOf(PXTARVO_SAMPLES_DIR "/articulo.tdw");
    folder.write("half.tdw", whole + "\r\n" + std::string(18, '\x01') + "\r\n\r\n");
    for (const Case& one : cases) {
        SCOPED_TRACE(one.arguments);
        std::filesystem::copy_file(folder.file("sample.db"), folder.file("dealer.db"),
                                   std::filesystem::copy_options::overwrite_existing);
        EXPECT_EQ(run(std::string(one.arguments) + " --in-transaction dealer.db"), one.status) << errors;
        const auto connection = devhost::openHostFile(folder.file("dealer.db"), hostClock);
        EXPECT_EQ(joinedText(connection->Execute(one.query, -1)->Fields(0), spanishLocale()), one.result);
    }
}

/// A refusal of the host lets the run go on, a failure of its database does not.
TEST_F(CommandLine, TellsRefusalsAndStopsAtFailures) {
    ASSERT_EQ(run("init dealer.db --sample"), 0);
    {
        const auto connection = devhost::openHostFile(folder.file("dealer.db"), hostClock);
        connection->runNative(
            "CREATE TRIGGER Ubi_Lleno BEFORE INSERT ON Ubi BEGIN SELECT RAISE(ABORT, 'No cabe.'); END");
    }
    EXPECT_EQ(run("locations dealer.db --file {S}/articulo.tdw"), 3);
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
        EXPECT_THAT(errors, HasSubstr("La base de datos está bloqueada por otro proceso."));
    }
    connection->RollbackTrans();
    EXPECT_EQ(run("import dealer.db --file {S}/TARIFA2012.MDB", "> out", "ulimit -f 100 && "), 1);
    EXPECT_THAT(errors, HasSubstr("Error de lectura o escritura en el archivo de la base de datos."));
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
    EXPECT_THAT(errors, EndsWith("No se puede escribir '/dev/full'.\n"));
    EXPECT_THAT(output, EndsWith("Proceso finalizado con exito\n"));
}

/// What an interrupted init left is in nobody's way.
TEST_F(CommandLine, MakesTheDatabaseUnderAnotherName) {
    ASSERT_EQ(run("init whole.db --sample"), 0);
    ASSERT_EQ(run("init dealer.db --sample", "> out", "ulimit -f 100 && "), 1);
    EXPECT_EQ(bytesOf(folder.file("dealer.db")), "");
    folder.write("dealer.db.unfinished", "half");
    folder.write("dealer.db.unfinished-journal", "half");
    folder.write("dealer.db-journal", "of an earlier file");
    ASSERT_EQ(run("init dealer.db --sample"), 0) << errors;
    EXPECT_TRUE(bytesOf(folder.file("dealer.db")) == bytesOf(folder.file("whole.db")));
    for (const char* left : {"dealer.db-journal", "dealer.db.unfinished", "dealer.db.unfinished-journal"}) {
        EXPECT_FALSE(std::filesystem::exists(folder.file(left))) << left;
    }
}

}  // namespace

}  // namespace pxtarvo::tests
