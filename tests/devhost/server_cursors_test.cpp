// A host with cursors on the server: what its results refuse, and what they block until they were read.

#include "devhost/library/server_cursors.h"

#include <gmock/gmock.h>

#include "host/counted_rows.h"
#include "host/row_write.h"
#include "tests/common/recordset_rules.h"
#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using ::testing::ElementsAre;

class ServerCursors : public ::testing::Test {
  protected:
    ServerCursors() {
        const auto database = devhost::openHostFile(host.path(), hostClock);
        database->runNative(
            "INSERT INTO Fam (Fam_Id,FAM_DES) VALUES (1,'a'), (2,'b');"
            "INSERT INTO Art (Art_Id,Art_Cod) VALUES (7,'0100123'), (8,'1234'), (9,'Niño'), (10,'A.B')");
        host.state->connection = database;
        host.state->serverCursors = makeObject<devhost::ServerCursors>(database);
        connection = host.state->offered();
    }

    ObjectRef<Recordset> query() {
        return connection->Execute("SELECT * FROM Fam ORDER BY Fam_Id", adOptionUnspecified);
    }

    HostFolder host;
    ObjectRef<Connection> connection;
};

TEST_F(ServerCursors, GoForwardOnlyAndKnowNoCount) {
    const auto rows = query();
    EXPECT_EQ(rows->RecordCount(), -1);
    EXPECT_EQ(rows->AbsolutePosition(), -1);
    EXPECT_EQ(errorOf([&] { rows->MoveFirst(); }), -2147217884);
    EXPECT_EQ(errorOf([&] { rows->AbsolutePosition(2); }), -2147217884);
    EXPECT_EQ(errorOf([&] { rows->Clone(); }), 3251);
    rows->MoveNext();
    EXPECT_EQ(joinedText(rows->Fields("fam_des"), spanishLocale()), "b");
    rows->Close();
    EXPECT_EQ(errorOf([&] { rows->RecordCount(); }), 3704);
    EXPECT_EQ(errorOf([&] { rows->MoveFirst(); }), 3704);
}

TEST_F(ServerCursors, BlockATransactionUntilTheyWereRead) {
    constexpr std::int32_t blocked = -2147467259;
    const auto write = [&] {
        std::string sMensaje;
        EscrituraFila(host.context(), Art::tabla).agregar(Art::Cod, "A").insertar(sMensaje);
    };
    auto rows = query();
    EXPECT_EQ(errorOf([&] { query(); }), 0) << "outside a transaction";
    connection->BeginTrans();
    EXPECT_EQ(errorOf([&] { query(); }), blocked);
    EXPECT_EQ(errorOf(write), blocked);
    rows->MoveNext();
    EXPECT_EQ(errorOf([&] { query(); }), blocked);
    rows->MoveNext();
    EXPECT_EQ(errorOf([&] { rows = query(); }), 0) << "at its end";
    rows->Close();
    EXPECT_EQ(errorOf([&] { rows = query(); }), 0) << "closed";
    rows.reset();
    EXPECT_EQ(errorOf(write), 0) << "released";
    connection->CommitTrans();
    EXPECT_THAT(host.rows("SELECT Art_Cod FROM Art WHERE Art_Id > 10"), ElementsAre("A"));
}

/// What the plug-in makes of such a result; one that knows its count, or has no rows to give, stays.
TEST_F(ServerCursors, ReadWholeTheyAreLikeAClientsResult) {
    connection->BeginTrans();
    const auto update = contado(connection->Execute("UPDATE Fam SET FAM_DES = 'c' WHERE Fam_Id = 2", -1));
    EXPECT_EQ(update->State(), adStateClosed);
    const auto client = host.state->connection->Execute(fourArticles, -1);
    EXPECT_EQ(contado(client), client);
    const auto given = connection->Execute(fourArticles, -1);
    const auto rows = contado(given);
    EXPECT_EQ(given->State(), adStateClosed);
    EXPECT_EQ(rows->Fields(0).type(), client->Fields(0).type());
    expectRulesOfAdo(rows);
    expectRulesWithoutRows(contado(connection->Execute("SELECT * FROM Fam WHERE Fam_Id = 9", -1)));
}

}  // namespace

}  // namespace pxtarvo::tests
