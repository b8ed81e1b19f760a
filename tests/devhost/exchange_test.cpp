// Tables as CSV files: what loading takes and refuses, and that saving and loading give the same tables
// again.

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <stdexcept>

#include "devhost/dealer/sample_dealer.h"
#include "devhost/exchange/table_exchange.h"
#include "host/tables.h"
#include "platform/values/text.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// As UTF-16 without a mark.
std::string units(std::string_view text, bool bigEndian = false) {
    std::string bytes;
    for (const char16_t unit : toUtf16(text)) {
        const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

class Exchange : public ::testing::Test {
  protected:
    /// Adds the files of the folder "in" to the host's tables, in memory.
    ObjectRef<portable::SqliteConnection> load() {
        auto connection = devhost::openEmptyHost(hostClock);
        devhost::loadTables(*connection, files.file("in"), watcher);
        return connection;
    }
    /// Loads the one file and gives back the query's rows.
    std::vector<std::string> loaded(const std::string& name, std::string_view bytes, std::string_view query) {
        std::filesystem::remove_all(files.file("in"));
        files.write("in/" + name, bytes);
        return rowsOf(*load(), query);
    }
    /// Why the one file is refused.
    std::string refusal(const std::string& name, std::string_view bytes) {
        try {
            loaded(name, bytes, "SELECT 1");
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "taken";
    }

    TemporaryFolder files;
    std::vector<std::string> remarks;
    devhost::ExchangeWatcher watcher{[this](const std::string& remark) { remarks.push_back(remark); }, {}};
};

TEST_F(Exchange, TakesEveryFormThatDatabaseToolsWrite) {
    constexpr std::string_view query =
        "SELECT Marca_ID, Marca_Des, Marca_CodAbrev FROM Marcas ORDER BY Marca_ID";
    const auto rows = ElementsAre("3|Peña; 1/2\" \"A\"|PN", "7| Ñu, €|NULL");
    const std::string text =
        "MARCA_id;marca_des;Marca_CodAbrev\r\n3;\"Peña; 1/2\"\" \"\"A\"\"\";PN\r\n\r\n7; Ñu, €;NULL";
    const std::string forms[] = {text,
                                 "\xEF\xBB\xBF" + text,
                                 toWindows1252(text),
                                 units(text),
                                 "\xFF\xFE" + units(text),
                                 units(text, true),
                                 "\xFE\xFF" + units(text, true)};
    for (const std::string& bytes : forms) {
        SCOPED_TRACE(bytes);
        EXPECT_THAT(loaded("mArCaS.CSV", bytes, query), rows);
    }
    const std::string tabs = "Marca_ID\tMarca_Des\tMarca_CodAbrev\n3\tPeña; 1/2\" \"A\"\tPN\n7\t Ñu, €\t\n";
    EXPECT_THAT(loaded("Marcas.csv", tabs, query), rows);
    const std::string commas =
        "Marca_CodAbrev,\"Marca_Des\",Marca_ID\n\"PN\",\"Peña; 1/2\"\" \"\"A\"\"\",3\n,\" Ñu, €\",7\n";
    EXPECT_THAT(loaded("Marcas.csv", commas, query), rows);
    EXPECT_THAT(remarks, IsEmpty());
}

TEST_F(Exchange, ReadsValuesAsTheirColumnsKeepThem) {
    const auto stored = [&](std::string_view column, std::string_view cell) {
        const std::string bytes = joined({"Exis_Id;", column, "\n1;", cell, "\n"});
        const auto rows = loaded("Exis.csv", bytes, joined({"SELECT ", column, " FROM Exis"}));
        return rows.size() == 1 ? rows.front() : "not one row";
    };
    using Cells = std::initializer_list<std::pair<std::string_view, std::string_view>>;
    // column, cell, and the value as a Spaniard reads it
    const std::string_view cases[][3] = {{"Exis_Fentrada", "2012-02-29", "29/02/2012"},
                                         {"Exis_Fentrada", "2012-02-29T23:59:59.997", "29/02/2012 23:59:59"},
                                         {"Exis_Fentrada", "2012-02-03 04:05:06", "03/02/2012 4:05:06"},
                                         {"Exis_Fentrada", "3/2/2012 4:05", "03/02/2012 4:05:00"},
                                         {"Exis_Fentrada", "31-12-9999 00:00:00,000", "31/12/9999"},
                                         {"Exis_Lote", "\"a\r\n\n\"\"b\"", "a\r\n\n\"b"}};
    for (const auto& [column, cell, value] : cases) EXPECT_EQ(stored(column, cell), value) << cell;
    const auto expect = [&](std::string_view column, Cells some) {
        for (const auto& [cell, value] : some) EXPECT_EQ(stored(column, cell), value) << cell;
    };
    expect("Exis_Fentrada", {{"\"\"", "NULL"}});
    expect("Exis_Cantidad", {{"1234,5", "1234,5"}, {"-.25", "-0,25"}, {" +7.0E+2 ", "700"}});
    expect("Exis_Pro", {{"24,00", "24"}, {"-2147483648", "-2147483648"}});
    expect("Exis_Kill", {{"true", "Verdadero"}, {"0", "Falso"}});
    expect("Exis_Lote",
           {{"\"\"", ""}, {"", "NULL"}, {"NULL", "NULL"}, {"\"NULL\"", "NULL"}, {"null", "null"}});
    expect("Exis_Lote", {{" 007 ", " 007 "}});
    EXPECT_THAT(loaded("Exis.csv", "Exis_Lote,Exis_Des\n\"NULL\",NULL\n",
                       "SELECT Exis_Id FROM Exis WHERE Exis_Lote = 'NULL' AND Exis_Des IS NULL"),
                ElementsAre("1"));
    EXPECT_THAT(loaded("Exis.csv", "Exis_Kill,Exis_Fentrada,Exis_Cantidad\nTRUE,1/2/2012,1\n",
                       "SELECT Exis_Id FROM Exis WHERE Exis_Kill = 1 AND Exis_Fentrada = '01/02/2012'"),
                ElementsAre("1"));
}

TEST_F(Exchange, StopsAtWhatDoesNotFitWithItsPlace) {
    const auto refuses = [&](const std::string& name,
                             std::initializer_list<std::pair<std::string, std::string>> cases) {
        for (const auto& [bytes, why] : cases) EXPECT_EQ(refusal(name, bytes), name + why) << bytes;
    };
    const std::string noDate = "' is no date of the years 1753 to 9999", date = "Art_Id,Art_FechaEstado\n1,";
    const std::string longText(61, 'x');
    refuses(
        "Art.csv",
        {{"", ": it is empty; its first line must name the columns"},
         {"1,2\n", ", line 1: it names no column of the table Art; the first line must name the columns"},
         {"Art_Id,art_id\n", ", line 1, column Art_Id: it stands twice"},
         {"Art_Id,Art_Cod\n1,A\n\n2,B,C\n", ", line 4: 3 cells, but the first line has 2"},
         {"Art_Id,Art_Cod\n1\n", ", line 2: 1 cell, but the first line has 2"},
         {"Art_Id;ART_PVE\n1;1.234,5\n", ", line 2, column ART_PVE: '1.234,5' is no number"},
         {"Art_Id,ART_PVE\n1,1e999\n", ", line 2, column ART_PVE: '1e999' is no number"},
         {"Art_Id,ART_PVE\n1,nan\n", ", line 2, column ART_PVE: 'nan' is no number"},
         {"Art_Id,Art_Cal\n1,2.5\n", ", line 2, column Art_Cal: '2.5' is no whole number"},
         {"Art_Id,Art_Cal\n1,2147483648\n",
          ", line 2, column Art_Cal: '2147483648' is not between -2147483648 and 2147483647"},
         {date + "2011-02-29\n", ", line 2, column Art_FechaEstado: '2011-02-29" + noDate},
         {date + "02/13/2011\n", ", line 2, column Art_FechaEstado: '02/13/2011" + noDate},
         {date + "1/2/2011 24:00\n", ", line 2, column Art_FechaEstado: '1/2/2011 24:00" + noDate},
         {"Art_Id,Art_Cod\n5,A\n6,B\n5,C\n", ", line 4, column Art_Id: '5' stands in an earlier row, too"},
         {"Art_Id,Art_Cod\n1,\"A\"B\n", ", line 2: text follows a closing quote"},
         {"Art_Id,Art_Cod\n1,A\n2,\"B\n3,C\n", ", line 3: a quote is never closed"},
         {"\xEF\xBB\xBF"
          "Art_Id,Art_Cod\n1,\xD1\n",
          ", line 2: the text is no well-formed UTF-8"}});
    refuses("Exis.csv",
            {{"Exis_Kill\n2\n", ", line 2, column Exis_Kill: '2' is none of 0, 1, True and False"}});
    refuses("Aat.csv",
            {{"Aat_C01\nx\n", ", line 1, column Aat_Id: it is missing, and identifies the rows"},
             {"Aat_Id,Aat_C01\n1,x\n,y\n", ", line 3, column Aat_Id: it is empty, and identifies the row"}});
    refuses("fam.csv", {{"Fam_Id,Fam_Des\n1,\"a\nb\"\n2,\"\n" + longText + "\"\n",
                         ", line 4, column FAM_DES: ' " + longText.substr(2) +
                             "...' has 62 characters, of which 60 fit"},
                        {"\xFF\xFE" + units("Fam_Id\n") + "1", ", line 2: the text is no well-formed UTF-16"},
                        {units("Fam_Id\n1\n") + std::string("\x01\xD8\n\0", 4),
                         ", line 3: the text is no well-formed UTF-16"}});
    // Sixty characters fit, however many bytes they have.
    std::string accents;
    for (int count = 0; count < 60; ++count) accents += "ñ";
    EXPECT_EQ(refusal("Fam.csv", "Fam_Id,FAM_DES\n1," + accents + "\n"), "taken");
    files.write("in/FAM.csv", "Fam_Id\n1\n");
    EXPECT_THROW(load(), std::runtime_error);
    std::filesystem::remove_all(files.file("in"));
    std::filesystem::create_directories(files.file("in/Art.csv"));
    EXPECT_THROW(load(), std::runtime_error);
}

TEST_F(Exchange, NamesWhatItLeavesOutAndNumbersOn) {
    files.write("in/Clientes.csv", "x\n1\n");
    files.write("in/notes.txt", "x");
    files.write("in/Marcas.csv", "Marca_Des,Marca_Web\nSame,x\nAgm,y\n");
    files.write("in/Art.csv", "Art_Id,Art_Cod,Art_Estado\n7,A,0\n900,B,1\n8,C,0\n");
    const auto connection = load();
    EXPECT_THAT(
        remarks,
        ElementsAre("Clientes.csv: left out, as no table of the host has this name",
                    ::testing::StartsWith(
                        "Art.csv: Null in every row, as the file has no such column: ART_DES, ART_PVE"),
                    "Marcas.csv: left out, as the table has no such column: 'Marca_Web'",
                    "Marcas.csv: has no column Marca_ID: the rows are numbered as they come",
                    "Marcas.csv: Null in every row, as the file has no such column: Marca_CodAbrev"));
    connection->Execute("DELETE FROM Art WHERE Art_Id = 900", adOptionUnspecified);
    connection->Execute("INSERT INTO Art (Art_Cod) VALUES ('D')", adOptionUnspecified);
    EXPECT_THAT(rowsOf(*connection, "SELECT Art_Id FROM Art WHERE Art_Cod = 'D'"), ElementsAre("901"));
    EXPECT_THAT(rowsOf(*connection, "SELECT Marca_ID FROM Marcas WHERE Marca_Des = 'Agm'"), ElementsAre("2"));
}

/// As a full disk does.
TEST_F(Exchange, TellsTheFailureThatEndedItsTransaction) {
    files.write("in/lac.csv", "lac_codart\nA\n");
    const auto connection = devhost::openEmptyHost(hostClock);
    connection->runNative(
        "CREATE TRIGGER Lleno BEFORE INSERT ON lac BEGIN SELECT RAISE(ROLLBACK, 'No cabe.'); END");
    try {
        devhost::loadTables(*connection, files.file("in"), watcher);
        FAIL() << "taken";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.description(), "No cabe.");
    }
}

/// A key that only the database file has.
TEST_F(Exchange, NumbersTheRowsOfATableWhoseFileHasNoKey) {
    const auto keyed = [&](std::string_view bytes) {
        files.write("in/lac.csv", bytes);
        const auto connection = portable::SqliteConnection::create(":memory:", *hostClock);
        connection->runNative("CREATE TABLE lac (lac_Id INTEGER PRIMARY KEY, lac_codart VARCHAR(30))");
        devhost::loadTables(*connection, files.file("in"), watcher);
        return rowsOf(*connection, "SELECT max(lac_Id) AS a, count(*) AS b FROM lac").front();
    };
    EXPECT_EQ(keyed("lac_codart\nA\nB\n"), "2|2");
    EXPECT_EQ(keyed("lac_codart,LAC_ID\nA,7\nB,\nC,NULL\n"), "9|3");
    EXPECT_THAT(remarks, IsEmpty());
}

TEST_F(Exchange, GivesTheSameTablesAgain) {
    std::mt19937 random(7);
    const auto pick = [&](const auto& choices) { return choices[random() % std::size(choices)]; };
    const std::string texts[] = {
        "NULL",          "''",      "'NULL'",      "'null'",       "' x '",       "'a,b;c'",
        "'\"'",          "'\"\"'",  "'x\"y'",      "'''quoted'''", "char(13,10)", "char(10)||'z'",
        "'a'||char(13)", "char(9)", "'ñÑ€·漢字😀'", "char(65533)",  "'007'",       "'1e5'",
        "'-'",           "'=1+1'",  "','"};
    const auto numbers = split(
        "NULL|0|-1|1e308|-1.7976931348623157e308|5e-324|0.1|1.0/3|123456789012345678|-0.0|2.5e-10", '|');
    const std::string wholes[] = {"NULL", "0", "-2147483648", "2147483647", "24"};
    const std::string dates[] = {"NULL", "'1753-01-01 00:00:00'", "'9999-12-31 23:59:59'",
                                 "'2012-02-29 12:30:00'"};
    std::string script;
    for (int row = 0; row < 300; ++row) {
        script += joined(
            {"INSERT INTO Exis (Exis_IdArt, Exis_CodArt, Exis_Des, Exis_Cantidad, Exis_Kg, Exis_Fentrada, Exis_Kill) VALUES (",
             pick(wholes), ",", pick(texts), ",", pick(texts), ",", pick(numbers), ",", pick(numbers), ",",
             pick(dates), ",", pick(wholes) == "0" ? "1" : "NULL", ");"});
        script += joined({"INSERT INTO lac (lac_codart) VALUES (", pick(texts), ");"});
    }
    const auto connection = devhost::openEmptyHost(hostClock);
    devhost::fillSampleDealer(*connection);
    connection->runNative("BEGIN;" + script + "COMMIT");

    const auto saved = devhost::saveTables(*connection, files.file("in"), watcher);
    EXPECT_EQ(saved.size(), std::size(tablasHost));
    EXPECT_THAT(bytesOf(files.file("in/Marcas.csv")),
                ::testing::StartsWith("Marca_ID,Marca_Des,Marca_CodAbrev\n1,Same,SAME\n"));
    EXPECT_TRUE(tablesOf(*load()) == tablesOf(*connection));
    EXPECT_THAT(remarks, IsEmpty());

    const std::string before = bytesOf(files.file("in/Art.csv"));
    EXPECT_THROW(devhost::saveTables(*connection, files.file("in"), watcher), std::runtime_error);
    EXPECT_EQ(bytesOf(files.file("in/Art.csv")), before);
    connection->runNative("INSERT INTO lac (lac_codart) VALUES (x'00')");
    EXPECT_THROW(devhost::saveTables(*connection, files.file("out"), watcher), std::runtime_error);
    EXPECT_THAT(std::filesystem::directory_iterator(files.file("out")),
                std::filesystem::directory_iterator());
}

}  // namespace

}  // namespace pxtarvo::tests
