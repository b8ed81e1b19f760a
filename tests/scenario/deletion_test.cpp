// The deletion of the articles found: everything or nothing.

#include <gmock/gmock.h>

#include "platform/values/number_text.h"
#include "platform/values/text.h"
#include "tests/scenario/deletion_scene.h"

namespace pxtarvo::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* deletionQuestion = "Confirma que desea borrar los articulos encontrados";

class Deletion : public DeletionScene {
  protected:
    void SetUp() override {
        DeletionScene::SetUp();
        for (const char* code : {"A", "B", "C", "D", "E"}) article(code);
        sql("INSERT INTO Exis (Exis_IdArt,Exis_Codart) VALUES (1,'otro')");
        sql("INSERT INTO Exis (Exis_IdArt,Exis_Codart) VALUES (999,'b ')");
        sql("INSERT INTO Exis (Exis_IdArt,Exis_Codart) VALUES (998,'AJENO')");
        sql("INSERT INTO Aat (Aat_Id,Aat_C01) VALUES (1,'queda')");
        sql("INSERT INTO Lapr (Lapr_IdArt) VALUES (5)");
        user().yesNo = MessageAnswer::Yes;
    }
    void confirm(frmBorradoArticulos& window) { desktop->click(window.cmdBorrar); }
    /// Searches everything, deletes it and expects the window to close.
    void deleteAll() {
        inDeletion([&](frmBorradoArticulos& window) {
            search(window);
            confirm(window);
            EXPECT_TRUE(window.unloaded());
        });
    }
    std::vector<std::string> articles() { return rows("SELECT Art_Cod FROM Art ORDER BY Art_Id"); }
};

TEST_F(Deletion, DeletesArticlesAndTheirStockInOneTransaction) {
    deleteAll();
    std::vector<std::string> calls;
    for (const std::string& line : record) {
        if (line.find("\"execute\"") == std::string::npos) calls.push_back(line);
    }
    const std::string title = R"("title":"Borrado masivo de artículos")";
    const auto deletion = [](const std::string& table, const std::string& where) {
        return R"({"call":"delete","table":")" + table + R"(","where":" WHERE )" + where + R"(","ok":true})";
    };
    EXPECT_THAT(
        calls,
        ElementsAre(R"({"call":"message","text":")" + std::string(deletionQuestion) + "\"," + title +
                        R"(,"buttons":"yesno","icon":"warning","default":"no","answer":"yes"})",
                    R"({"call":"begin"})", deletion("Art", "Art_Id = 1"),
                    deletion("Exis", "Exis_IdArt = 1 OR Exis_Codart = 'A'"), deletion("Art", "Art_Id = 2"),
                    deletion("Exis", "Exis_IdArt = 2 OR Exis_Codart = 'B'"), deletion("Art", "Art_Id = 3"),
                    deletion("Exis", "Exis_IdArt = 3 OR Exis_Codart = 'C'"), deletion("Art", "Art_Id = 4"),
                    deletion("Exis", "Exis_IdArt = 4 OR Exis_Codart = 'D'"), R"({"call":"commit"})",
                    R"({"call":"message","text":"Proceso de borrado finalizado",)" + title +
                        R"(,"buttons":"ok","icon":"information"})",
                    R"({"call":"unload","window":"frmBorradoArticulos"})",
                    R"({"call":"unload","window":"frmImpTarifas"})"));
    EXPECT_THAT(articles(), ElementsAre("E"));
    EXPECT_THAT(rows("SELECT Exis_Codart FROM Exis"), ElementsAre("AJENO"));
    EXPECT_THAT(rows("SELECT Aat_C01 FROM Aat"), ElementsAre("queda"));
}

TEST_F(Deletion, IdentifiersMayBeWide) {
    widenIdentifier("Art");
    native("UPDATE Exis SET Exis_IdArt = 5000000001 WHERE Exis_IdArt = 1");
    desktop = &host().desktop();
    user().yesNo = MessageAnswer::Yes;
    deleteAll();
    EXPECT_THAT(articles(), IsEmpty());
    EXPECT_THAT(rows("SELECT Exis_Codart FROM Exis"), ElementsAre("AJENO"));
}

/// Enter presses No, and moves the focus on from the button.
TEST_F(Deletion, AnswerNoChangesNothing) {
    user().yesNo = std::nullopt;
    const std::string before = databaseBytes();
    inDeletion([&](frmBorradoArticulos& window) {
        search(window);
        confirm(window);
        EXPECT_FALSE(window.unloaded());
        EXPECT_TRUE(window.cmdBorrar.enabled());
        EXPECT_EQ(window.activeControl(), &window.cmdSalir);
        EXPECT_EQ(window.dbgDatos.dataSource()->RecordCount(), 4);
    });
    EXPECT_THAT(messageTexts(), ElementsAre(deletionQuestion));
    EXPECT_THAT(recordOf("begin"), IsEmpty());
    EXPECT_TRUE(before == databaseBytes());
}

TEST_F(Deletion, AnErrorIsShownAsSuch) {
    host().state().beforeWrite = [](const devhost::HostWrite&) -> std::optional<std::string> {
        throw RuntimeError(-2147467259, "Red");
    };
    const std::string before = databaseBytes();
    deleteAll();
    EXPECT_TRUE(before == databaseBytes());
    EXPECT_EQ(recordOf("message").back(),
              R"({"call":"message","text":"Red","title":"Borrado masivo de artículos","buttons":"ok",)"
              R"("icon":"critical"})");
}

/// The condition that its code breaks is refused by the database, which the host reports as a refusal.
TEST_F(Deletion, ApostropheInACodeDeletesNothing) {
    sql("UPDATE Art SET ART_Cod = 'O''RING' WHERE Art_Id = 3");
    const std::string before = databaseBytes();
    deleteAll();
    EXPECT_THAT(messageTexts(), ElementsAre(deletionQuestion));
    EXPECT_TRUE(before == databaseBytes());
}

/// From the first row, whichever one the user has chosen before.
TEST_F(Deletion, ShowsItsProgressFromTheFirstRow) {
    std::vector<std::string> shown;
    user().replies = {{MessageAnswer::Yes, 0}};  // by the mouse: no key is left over
    inDeletion([&](frmBorradoArticulos& window) {
        search(window);
        desktop->chooseRow(window.dbgDatos, 3);
        const ProgressBar& bar = window.ProgressBar1;
        user().onYielded = [&] {
            shown.push_back(joined({window.Label2.caption(), " ", plainNumber(static_cast<int>(bar.value())),
                                    "/", plainNumber(static_cast<int>(bar.maximum()))}));
        };
        confirm(window);
        user().onYielded = nullptr;
        EXPECT_EQ(bar.value(), 4);
    });
    EXPECT_THAT(shown, ElementsAre("Borrando artículos 0/4", "Borrando artículos 1/4",
                                   "Borrando artículos 2/4", "Borrando artículos 3/4"));
    EXPECT_THAT(articles(), ElementsAre("E"));
}

/// The grid and the deletion share the current row: the row chosen is the next one deleted.
TEST_F(Deletion, ARowChosenDuringTheRunMovesIt) {
    std::int32_t row = 0;
    inDeletion([&](frmBorradoArticulos& window) {
        search(window);
        user().onYielded = [&] {
            if (row != 0 || window.ProgressBar1.value() != 1) return;
            row = window.dbgDatos.dataSource()->AbsolutePosition();
            desktop->chooseRow(window.dbgDatos, 4);
        };
        confirm(window);
        user().onYielded = nullptr;
    });
    EXPECT_EQ(row, 2) << "the grid's row follows the deletion";
    EXPECT_THAT(articles(), ElementsAre("B", "C", "E"));
    EXPECT_EQ(messageTexts().back(), "Proceso de borrado finalizado");
}

TEST_F(Deletion, TransactionAlreadyOpenIsRolledBack) {
    host().connection()->BeginTrans();
    sql("UPDATE Art SET Art_Estado = 1");
    deleteAll();
    EXPECT_EQ(value("SELECT count(*) FROM Art WHERE Art_Estado = 0"), "5");
    EXPECT_THAT(messageTexts(), SizeIs(2));
    EXPECT_THROW(host().connection()->RollbackTrans(), RuntimeError);
}

}  // namespace

}  // namespace pxtarvo::test
