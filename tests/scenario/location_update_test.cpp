// The location update: which articles get a place, and what a line that stops it leaves behind.

#include <gmock/gmock.h>

#include <fstream>

#include "platform/values/text.h"
#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* finished = "Proceso de importacion de C:\\tarvo\\articulo.tdw finalizado";
constexpr const char* places = "SELECT Ubi_IdArt,Ubi_IdAlm,Ubi_Pasillo,Ubi_ExMin FROM Ubi ORDER BY Ubi_Id";

/// A line of the article file; with fewer fields it ends after the last of them.
std::string line(std::string_view code, std::string_view aisle, std::string_view minimum, int fields = 24) {
    std::vector<std::string> all(24, "x");
    all[17] = code;
    all[18] = aisle;
    all[20] = minimum;
    std::string text;
    for (int at = 0; at < fields; ++at) text.append(at > 0 ? "\x01" : "").append(all[at]);
    return toWindows1252(text) + "\r\n";
}

class LocationUpdate : public Scene {
  protected:
    /// Articles A to F; C has a filled place, D one without aisle, E a blank one, F two.
    void SetUp() override {
        createEmptyDealer();
        for (const char* code : {"A", "B", "C", "D", "E", "F"}) {
            sql("INSERT INTO Art (ART_Cod) VALUES ('" + std::string(code) + "')");
        }
        sql("INSERT INTO Ubi (Ubi_IdArt,Ubi_IdAlm,Ubi_Pasillo,Ubi_ExMin) VALUES (3,2,'B7',1)");
        sql("INSERT INTO Ubi (Ubi_IdArt,Ubi_IdAlm,Ubi_Pasillo,Ubi_ExMin) VALUES (4,2,NULL,1)");
        sql("INSERT INTO Ubi (Ubi_IdArt,Ubi_IdAlm,Ubi_Pasillo,Ubi_ExMin) VALUES (5,2,'   ',NULL)");
        sql("INSERT INTO Ubi (Ubi_IdArt,Ubi_Pasillo) VALUES (6,'')");
        sql("INSERT INTO Ubi (Ubi_IdArt,Ubi_Pasillo) VALUES (6,'')");
        dropHost();
    }
    void articleFile(std::string_view bytes) {
        const std::filesystem::path file = folder / "c/Tarvo/ARTICULO.TDW";
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }
    /// The last message, after as many presses of the button.
    std::string press(int times = 1) {
        inWindow([&](frmImpTarifas& window) {
            for (int press = 0; press < times; ++press) host().desktop().click(window.XPButton4);
            EXPECT_FALSE(window.unloaded());
            EXPECT_EQ(window.Label2.caption(), "FICHERO EN PROCESO C:\\tarvo\\articulo.tdw");
            EXPECT_TRUE(window.Label2.visible());
        });
        return messageTexts().back();
    }
};

TEST_F(LocationUpdate, RecordOfTheSampleFile) {
    createSampleDealer();
    dropHost();
    options.articleFile = sample("articulo.tdw");
    EXPECT_EQ(press(), finished);
    expectKeptRecord("locations");
}

TEST_F(LocationUpdate, OnlyArticlesWithoutAnAisleGetOne) {
    articleFile(line("A", "  PASILLO ÑANDÚ CON 25 Y MÁS  ", "2.5") + line("B", "P-04   ", "1.250.5") +
                line("C", "P-05", "9", 19) + line("D", "P-06", "3,5") + line("E", "P-07", "") +
                line("F", "P-08", "1") + line("NADIE", "P-09", "1", 19) + line("A", "   ", "1", 19) +
                line(" A", "P-10", "1") + line("a", "P-11", "9"));
    EXPECT_EQ(press(), finished);
    const std::vector<std::string> once{"3|2|B7|1",     "4|2|P-06|3,5", "5|2|   |NULL",
                                        "6|NULL||NULL", "6|NULL||NULL", "1|1|  PASILLO ÑANDÚ CON |2,5",
                                        "6|1|P-08|1"};
    EXPECT_EQ(rows(places), once) << "a minimum that is no number is refused, and nobody is told";
    EXPECT_THAT(recordOf("begin"), IsEmpty());

    EXPECT_EQ(press(), finished);
    std::vector<std::string> twice = once;
    twice.push_back("6|1|P-08|1");
    EXPECT_EQ(rows(places), twice) << "more places only for the article that had two";
}

/// An article's identifier has 32 bits here.
TEST_F(LocationUpdate, IdentifiersOfPlacesMayBeWide) {
    widenIdentifier("Ubi");
    articleFile(line("D", "P-06", "3,5"));
    EXPECT_EQ(press(), finished);
    EXPECT_EQ(value("SELECT Ubi_Pasillo FROM Ubi WHERE Ubi_Id = 5000000002"), "P-06");

    widenIdentifier("Art");
    EXPECT_EQ(press(), "Error '6' en tiempo de ejecución:\r\n\r\nDesbordamiento");
}

TEST_F(LocationUpdate, LinesEndInCarriageReturn) {
    articleFile("");
    EXPECT_EQ(press(), finished);
    const std::string first = line("A", "P-01", "1");
    const std::string second = line("B", "P-02\n", "2");
    articleFile(first.substr(0, first.size() - 1) + second.substr(0, second.size() - 2));
    EXPECT_EQ(press(), finished);
    EXPECT_THAT(rows("SELECT Ubi_IdArt,Ubi_Pasillo FROM Ubi WHERE Ubi_IdArt < 3"),
                ElementsAre("1|P-01", "2|P-02\n"));
}

/// What stopped it leaves what was written and the file open, which the next press meets.
TEST_F(LocationUpdate, StopsAtTheLineAtFault) {
    struct Case {
        std::string fault;
        const char* message;
    };
    const Case cases[] = {
        {"\r\n", "Error '9' en tiempo de ejecución:\r\n\r\nEl subíndice está fuera del intervalo"},
        {line("B", "", "", 18), "Error '9' "},
        {line("B", "P-02", "", 20), "Error '9' "},
        {line("D", "P-02", "", 20), "Error '9' "},
        {line("F", "P-02", "", 20), "Error '9' "},
        {line("B'", "P-02", "1"), "Error '-2147217900' "},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(&one - cases);
        SetUp();
        articleFile(line("A", "P-01", "1") + one.fault + line("B", "P-03", "1"));
        EXPECT_THAT(press(), StartsWith(one.message));
        EXPECT_THAT(rows("SELECT Ubi_IdArt,Ubi_Pasillo FROM Ubi WHERE Ubi_Id > 5"), ElementsAre("1|P-01"));
        EXPECT_EQ(press(2), "Error '55' en tiempo de ejecución:\r\n\r\nEl archivo ya está abierto");
    }
    SetUp();
    articleFile(line("A", "P-01", "1") + "\r\n");
    EXPECT_THAT(press(), StartsWith("Error '9' "));
}

TEST_F(LocationUpdate, FileOrFolderMissing) {
    EXPECT_THAT(press(2),
                StartsWith("Error '76' en tiempo de ejecución:\r\n\r\nNo se encontró la ruta de acceso"));
    std::filesystem::create_directory(folder / "c/Tarvo");
    EXPECT_THAT(press(2), StartsWith("Error '53' en tiempo de ejecución:\r\n\r\nNo se encontró el archivo"));
    articleFile(line("A", "P-01", "1"));
    EXPECT_EQ(press(), finished) << "nothing was left open";
}

}  // namespace

}  // namespace pxtarvo::test
