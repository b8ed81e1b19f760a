// The code correction: which stock moves where, and that it moves in one transaction or not at all.

#include <gmock/gmock.h>

#include "tests/scenario/scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;

constexpr const char* correctionQuestion = "Confirma que desea comenzar el proceso";
constexpr const char* stock = "SELECT Exis_CodArt,Exis_alma,Exis_Cantidad,Exis_Kg FROM Exis ORDER BY Exis_Id";
constexpr const char* history = "SELECT Hexis_Exis,Hexis_idArt,Hexis_Tipo,Hexis_Cantidad FROM Hexis";

class CodeCorrection : public Scene {
  protected:
    void SetUp() override {
        createEmptyDealer();
        user().yesNo = MessageAnswer::Yes;
    }
    /// An article; those of supplier 4 only when nothing else is said.
    void article(std::string_view code, int supplier = 4) {
        sql("INSERT INTO Art (ART_Cod,ART_DES) VALUES ('" + std::string(code) + "','PIEZA')");
        const std::string id = value("SELECT MAX(Art_Id) FROM Art");
        sql("INSERT INTO ArtPro (ARP_Ida,ARP_Idp) VALUES (" + id + "," + std::to_string(supplier) + ")");
    }
    /// A stock row of the newest article of this code.
    void stockOf(const std::string& code, int warehouse, const std::string& quantity) {
        sql("INSERT INTO Exis (Exis_IdArt,Exis_CodArt,Exis_alma,Exis_Cantidad,Exis_Kg) VALUES (" +
            value("SELECT MAX(Art_Id) FROM Art WHERE Art_Cod = '" + code + "'") + ",'" + code + "'," +
            std::to_string(warehouse) + "," + quantity + ",100)");
    }
    /// True when the window was left open, as it always must be.
    bool press() { return !run(&frmImpTarifas::XPButton3); }
};

/// Twins without stock (from one warehouse and from two), with stock, with less than none, and everything
/// that is not moved; then all once more.
TEST_F(CodeCorrection, RecordOfTwoRuns) {
    for (const char* code : {"1", "01", "2", "02", "3", "03", "4", "04", "5", "6.5", "06.5"}) article(code);
    article("7", 5);
    article("07");
    stockOf("1", 2, "5");
    stockOf("2", 1, "4");
    stockOf("2", 3, "-1.5");
    stockOf("3", 1, "2");
    stockOf("03", 4, "3");
    stockOf("03", 5, "30");
    stockOf("4", 1, "-2");
    stockOf("5", 1, "6");
    stockOf("6.5", 1, "6");
    stockOf("7", 1, "6");
    EXPECT_TRUE(press());
    EXPECT_THAT(messageTexts(), ElementsAre(correctionQuestion, "proceso concluido"));
    EXPECT_THAT(rows(stock), ElementsAre("1|2|0|0", "2|1|0|0", "2|3|0|0", "3|1|0|0", "03|4|5|5",
                                         "03|5|30|100", "4|1|0|0", "5|1|6|100", "6.5|1|6|100", "7|1|6|100",
                                         "01|2|5|5", "02|1|2,5|2,5", "04|1|-2|-2"));
    EXPECT_THAT(rows(history), ElementsAre("11|2|E|5", "1|1|S|5", "12|4|E|4", "2|3|S|4", "12|4|E|2,5",
                                           "3|3|E|1,5", "5|6|E|5", "4|5|S|2", "13|8|S|-2", "7|7|E|2"));
    const std::vector<std::string> moved = rows(stock);
    EXPECT_TRUE(press());
    EXPECT_EQ(rows(stock), moved);
    EXPECT_EQ(value("SELECT count(*) FROM Hexis WHERE Hexis_Tipo = 'E' AND Hexis_Cantidad = 0"), "5");
    expectKeptRecord("fix-codes");
}

/// But for the identifier of the stock row that receives, which the history holds in 32 bits.
TEST_F(CodeCorrection, IdentifiersMayBeWide) {
    article("1");
    article("01");
    stockOf("1", 1, "5");
    widenIdentifier("Art");
    widenIdentifier("Exis");
    native("UPDATE ArtPro SET ARP_Ida = ARP_Ida + 5000000000; UPDATE Exis SET Exis_IdArt = 5000000001");
    native("INSERT INTO Exis (Exis_Id,Exis_IdArt,Exis_Cantidad) VALUES (3,5000000002,3)");
    user().yesNo = MessageAnswer::Yes;
    EXPECT_TRUE(press());
    EXPECT_EQ(messageTexts().back(), "proceso concluido");
    EXPECT_THAT(rows("SELECT Exis_Cantidad FROM Exis ORDER BY Exis_Id"), ElementsAre("8", "0"));

    native("UPDATE Exis SET Exis_Id = 6000000000 WHERE Exis_Id = 3");
    EXPECT_TRUE(press());
    EXPECT_EQ(messageTexts().back(), "Desbordamiento");
}

TEST_F(CodeCorrection, AnswerNoTouchesNothing) {
    createSampleDealer();
    user().yesNo = std::nullopt;  // Enter on the default
    EXPECT_TRUE(press());
    EXPECT_THAT(messageTexts(), ElementsAre(correctionQuestion));
    ASSERT_EQ(record.size(), 4u);
    EXPECT_EQ(record[2],
              "{\"call\":\"message\",\"text\":\"Confirma que desea comenzar el "
              "proceso\",\"title\":\"PXTarvo\",\"buttons\":\"yesno\",\"icon\":\"none\",\"default\":\"no\","
              "\"answer\":\"no\"}");
}

/// After a refused stock row the history carries the newest one that there is.
TEST_F(CodeCorrection, RefusedInsertionsGoUnnoticed) {
    article("1");
    article("01");
    stockOf("1", 1, "5");
    article("OTRO", 5);
    stockOf("OTRO", 1, "9");
    refuse(devhost::WriteKind::Insert, "Exis");
    EXPECT_TRUE(press());
    EXPECT_THAT(messageTexts(), ElementsAre(correctionQuestion, "proceso concluido"));
    EXPECT_THAT(rows(history), ElementsAre("2|2|E|5", "1|1|S|5"));
    EXPECT_THAT(rows(stock), ElementsAre("1|1|0|0", "OTRO|1|9|100"));
}

TEST_F(CodeCorrection, ErrorInTheMiddleUndoesEverything) {
    struct Case {
        std::string code;
        const char* quantity;
        const char* message;
    };
    const Case cases[] = {
        {"2''X", "5",
         "Comilla no cerrada antes de la cadena de caracteres ''."},  // a code with an apostrophe
        {"2", "NULL", "Uso no válido de Null"},
    };
    for (const Case& one : cases) {
        SetUp();
        for (const std::string& code : {std::string("1"), std::string("01"), one.code, "0" + one.code}) {
            article(code);
        }
        stockOf("1", 1, "5");
        stockOf(one.code, 1, one.quantity);
        record.clear();
        const std::vector<std::string> before = rows(stock);
        EXPECT_TRUE(press());
        EXPECT_THAT(messageTexts(), ElementsAre(correctionQuestion, one.message));
        EXPECT_EQ(rows(stock), before);
        EXPECT_EQ(value("SELECT count(*) FROM Hexis"), "0");
        EXPECT_GE(recordOf("insert").size(), 3u) << "the first article's stock had been moved";
    }
}

}  // namespace

}  // namespace pxtarvo::test
