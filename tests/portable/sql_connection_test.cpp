// Transactions, the file's own troubles, the statement cache and the recordsets of the host connection.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/common/recordset_rules.h"
#include "tests/portable/sql_test_database.h"

namespace pxtarvo::portable {
namespace {

using tests::bytesOf;
using tests::errorOf;
using tests::TemporaryFolder;

/// "number: description" of the error that `action` raises.
template <class Action>
std::string errorTextOf(const Action& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return std::to_string(error.number()) + ": " + error.what();
    }
    return "none";
}

TEST(SqlTransactions, OneAtATime) {
    const auto connection = testDatabase();
    constexpr auto refusedBegin = static_cast<std::int32_t>(ErrorNumber::TransactionAlreadyOpen);
    constexpr auto refusedEnd = static_cast<std::int32_t>(ErrorNumber::NoTransactionOpen);
    EXPECT_EQ(errorOf([&] { connection->CommitTrans(); }), refusedEnd);
    EXPECT_EQ(errorOf([&] { connection->RollbackTrans(); }), refusedEnd);

    connection->BeginTrans();
    EXPECT_EQ(outcome(*connection, "DELETE FROM Art WHERE Art_Id = 7"), "closed");
    EXPECT_EQ(errorOf([&] { connection->BeginTrans(); }), refusedBegin);
    connection->RollbackTrans();
    EXPECT_EQ(errorOf([&] { connection->RollbackTrans(); }), refusedEnd);
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Art"), "4;");

    connection->BeginTrans();
    EXPECT_EQ(outcome(*connection, "DELETE FROM Art WHERE Art_Id = 7"), "closed");
    // a statement that fails half-way undoes itself and nothing else
    EXPECT_NE(errorOf([&] { connection->Execute("INSERT INTO Fam (Fam_Id) VALUES (50), (51), (1)", -1); }),
              0);
    connection->CommitTrans();
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Art"), "3;");
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Fam"), "1;");
}

TEST(SqlTransactions, OneThatTheDatabaseEndedTakesNoMoreWrites) {
    const auto connection = testDatabase();
    connection->runNative(
        "CREATE TRIGGER Drastic BEFORE INSERT ON Fam BEGIN SELECT RAISE(ROLLBACK, 'Se acabó.'); END");
    connection->BeginTrans();
    EXPECT_EQ(outcome(*connection, "DELETE FROM Art WHERE Art_Id = 7"), "closed");
    EXPECT_EQ(outcome(*connection, "INSERT INTO Fam (Fam_Id) VALUES (2)"), "-2147217873: Se acabó.");
    EXPECT_EQ(outcome(*connection, "DELETE FROM Art"), "-2147467259: Se acabó.");
    EXPECT_EQ(errorTextOf([&] { connection->CommitTrans(); }), "-2147467259: Se acabó.");
    connection->RollbackTrans();
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Art"), "4;");
    EXPECT_EQ(errorOf([&] { connection->RollbackTrans(); }), -2147168242);
}

/// Whoever ends a transaction that a failure of the file undid, or kept from beginning, is told the failure.
TEST(SqlTransactions, FailuresOfTheFileAreNamedToTheEnd) {
    const TemporaryFolder folder;
    const std::string path = folder.file("host.db");
    const auto connection = testDatabase(path);
    const auto insertMuch = [&] {
        for (int row = 0; row < 100; ++row) {
            connection->Execute("INSERT INTO Fam (FAM_DES) VALUES ('" + std::string(4000, 'x') + "')", -1);
        }
    };
    const std::string full = "-2147467259: No queda espacio en el disco para la base de datos.";
    run(connection->handle(), "PRAGMA max_page_count = 60");
    connection->BeginTrans();
    EXPECT_EQ(errorTextOf(insertMuch), full);
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Fam"), full);
    EXPECT_EQ(errorTextOf([&] { connection->CommitTrans(); }), full);
    connection->RollbackTrans();
    EXPECT_EQ(outcome(*connection, "SELECT count(*) FROM Fam"), "1;");
    EXPECT_EQ(errorTextOf(insertMuch), full);
    EXPECT_EQ(errorTextOf([&] { connection->RollbackTrans(); }), full);
    EXPECT_EQ(errorOf([&] { connection->RollbackTrans(); }), -2147168242);

    const std::string locked = "-2147467259: La base de datos está bloqueada por otro proceso.";
    const auto other = SqliteConnection::open(path, stoppedClock);
    sqlite3_busy_timeout(connection->handle(), 0);
    other->BeginTrans();
    EXPECT_EQ(errorTextOf([&] { connection->BeginTrans(); }), locked);
    EXPECT_EQ(errorTextOf([&] { connection->RollbackTrans(); }), locked);
    EXPECT_EQ(outcome(*connection, "DELETE FROM Fam"), locked);
    other->RollbackTrans();
    EXPECT_EQ(outcome(*connection, "DELETE FROM Fam"), "closed");
    EXPECT_EQ(errorOf([&] { connection->RollbackTrans(); }), -2147168242);
}

TEST(SqlTransactions, ARolledBackRunLeavesTheFileAsItWas) {
    const TemporaryFolder folder;
    const std::string path = folder.file("host.db");
    { testDatabase(path); }
    const std::string before = bytesOf(path);
    {
        const auto connection = SqliteConnection::open(path, stoppedClock);
        run(connection->handle(), "PRAGMA cache_size = 10");  // so that the transaction reaches the file
        connection->BeginTrans();
        for (int row = 0; row < 3000; ++row) {
            connection->Execute("INSERT INTO Art (Art_Cod,Art_Des) VALUES ('" + std::to_string(row) + "','" +
                                    std::string(40, 'x') + "')",
                                -1);
        }
        ASSERT_NE(bytesOf(path), before);
        connection->RollbackTrans();
        EXPECT_EQ(bytesOf(path), before);
        connection->BeginTrans();
        connection->Execute("UPDATE Art SET Art_Estado = 1", -1);
    }
    EXPECT_EQ(bytesOf(path), before) << "an open transaction ends undone";
}

TEST(SqlConnection, TellsTheFilesTroubles) {
    const TemporaryFolder folder;
    const std::string path = folder.file("host.db");
    const auto opening = [&](const std::string& file) {
        return errorTextOf([&] { SqliteConnection::open(file, stoppedClock); });
    };
    EXPECT_EQ(opening(path), "-2147467259: No se puede abrir la base de datos '" + path + "'.");
    std::ofstream(path) << std::string(2000, 'x');
    EXPECT_EQ(opening(path), "-2147467259: El archivo no es una base de datos.");
    std::filesystem::remove(path);

    const auto second = testDatabase(path);
    run(second->handle(), "PRAGMA query_only = 1");
    EXPECT_EQ(outcome(*second, "DELETE FROM Art"), "-2147467259: La base de datos es de sólo lectura.");
    EXPECT_EQ(errorOf([&] { second->Open("", "", -1); }), static_cast<std::int32_t>(ErrorNumber::ObjectOpen));
}

TEST(SqlTokens, TheFastScanFindsTheLiteralsThatTheTokensHold) {
    for (const auto& [sql, literals] :
         std::initializer_list<std::pair<std::string_view, std::vector<std::string>>>{
             {"a=12AND b1=.5OR c=1.e+2x9", {"12", ".5", "1.e+2"}},
             {"12ELSE 3E 4e5", {"12", "3", "4e5"}},
             {"[a'1'] \"b'2\" 'c\"3'", {"c\"3"}},
             {"a-- 'x' 1\n-2/* 3 '*/-'ñ''4'/5", {"2", "ñ'4", "5"}},
             {"Art_C01 t.5 ñ6 (7)'8'9 [a]]1]2", {".5", "7", "8", "9", "2"}},
             {"''", {""}}}) {
        StatementShape shape;
        takeShape(sql, shape);
        SqlTokenizer tokenizer(sql);
        std::vector<std::string> scanned;
        std::vector<std::string> tokenized;
        for (const SqlToken& literal : shape.literals) scanned.push_back(plainText(literal));
        for (SqlToken token = tokenizer.next(); token.kind != SqlTokenKind::End; token = tokenizer.next()) {
            const bool literal = token.kind == SqlTokenKind::Number || token.kind == SqlTokenKind::Text;
            if (literal) tokenized.push_back(plainText(token));
        }
        EXPECT_EQ(scanned, literals) << sql;
        EXPECT_EQ(tokenized, literals) << sql;
    }
}

TEST(SqlStatementCache, ServesOtherLiteralsOfTheSameShapeOnly) {
    const auto connection = testDatabase();
    const std::size_t empty = connection->cachedStatements();
    for (const StatementCase& one :
         std::initializer_list<StatementCase>{{"SELECT Art_Id FROM Art WHERE Art_Cod = '1234'", "8;"},
                                              {"SELECT Art_Id FROM Art WHERE Art_Cod = 'it''s'", ""},
                                              {"SELECT Art_Id FROM Art WHERE Art_Cod = ''", ""},
                                              {"SELECT Art_Id FROM Art WHERE Art_Cod = '0100123'", "7;"}}) {
        EXPECT_EQ(outcome(*connection, one.sql), one.outcome) << one.sql;
    }
    EXPECT_EQ(connection->cachedStatements(), empty + 1);
    EXPECT_EQ(outcome(*connection, "SELECT Art_Id FROM Art WHERE Art_Cod = 1234"), "8;");
    EXPECT_EQ(connection->cachedStatements(), empty + 2);
    // what stands for a literal in the shape is no literal
    EXPECT_EQ(outcome(*connection, "SELECT Art_Id FROM Art WHERE Art_Cod = \x01"),
              "-2147217900: Carácter no válido en la instrucción.");
    // nor does a name hide the rest of the statement
    EXPECT_EQ(outcome(*connection, std::string("SELECT 1 AS \"a\0b\", 'rest'", 25)),
              "-2147217900: Carácter no válido en la instrucción.");
    // positions belong to the statement, not to its literals
    EXPECT_EQ(outcome(*connection, "SELECT Art_Id, 0-Art_Id FROM Art WHERE Art_Id < 9 ORDER BY 1"),
              "7|-7;8|-8;");
    EXPECT_EQ(outcome(*connection, "SELECT Art_Id, 0-Art_Id FROM Art WHERE Art_Id < 9 ORDER BY 2"),
              "8|-8;7|-7;");
    for (int column = 0; column < 300; ++column) {
        const std::string alias = "c" + std::to_string(column);
        EXPECT_EQ(outcome(*connection, "SELECT 5 AS " + alias), "5;");
    }
    EXPECT_EQ(connection->cachedStatements(), StatementCache::capacity);
}

TEST(SqlStatementCache, FollowsAChangedSchema) {
    const TemporaryFolder folder;
    const std::string path = folder.file("host.db");
    const auto connection = testDatabase(path);
    EXPECT_EQ(outcome(*connection, "SELECT * FROM Lapr"), "");
    EXPECT_EQ(outcome(*connection, "INSERT INTO Lapr (Lapr_IdArt) VALUES (1)"), "closed");
    SqliteConnection::open(path, stoppedClock)
        ->runNative("ALTER TABLE Lapr ADD COLUMN Extra DATETIME DEFAULT '2005-01-02'");
    EXPECT_EQ(outcome(*connection, "SELECT * FROM Lapr"), "1|d38354.0;");
    EXPECT_EQ(outcome(*connection, "SELECT Extra FROM Lapr WHERE Extra < '03/01/2005'"), "d38354.0;");
    connection->runNative("DROP TABLE Lapr");
    EXPECT_EQ(outcome(*connection, "SELECT * FROM Lapr"),
              "-2147217865: El nombre de objeto 'Lapr' no es válido.");
}

TEST(ClientRecordset, MovesAndRefusesAsAdoDoes) {
    const auto connection = testDatabase();
    const auto opened = makeObject<ClientRecordset>();
    opened->Open(tests::fourArticles, connection, 3, 1, adCmdText);
    tests::expectRulesOfAdo(opened);
    tests::expectRulesOfAdo(connection->Execute(tests::fourArticles, -1));
    const auto none = connection->Execute("DELETE FROM Art", -1);
    EXPECT_EQ(errorOf([&] { none->Fields(0); }), 3704);
    tests::expectRulesWithoutRows(connection->Execute("SELECT * FROM Art", -1));
}

/// A long result that is being walked keeps the file open for reading: others wait with their writes, its own
/// connection does everything as before.
TEST(ClientRecordset, AWalkHoldsTheFileUntilItsEnd) {
    const TemporaryFolder folder;
    const std::string path = folder.file("host.db");
    auto connection = testDatabase(path);
    connection->runNative(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 150) "
        "INSERT INTO Hexis SELECT i FROM n");
    const auto other = SqliteConnection::open(path, stoppedClock);
    sqlite3_busy_timeout(other->handle(), 0);
    const std::string write = "UPDATE Lapr SET Lapr_IdArt = 1";
    const auto walk = [&] {
        const auto rows = connection->Execute("SELECT * FROM Hexis", adOptionUnspecified);
        rows->MoveNext();
        return rows;
    };
    {
        const auto rows = walk();
        EXPECT_EQ(outcome(*other, "SELECT count(*) FROM Hexis"), "150;");
        EXPECT_EQ(outcome(*other, write), "-2147467259: La base de datos está bloqueada por otro proceso.");
        while (!rows->Eof()) rows->MoveNext();
        EXPECT_EQ(outcome(*other, write), "closed");
    }
    walk();
    EXPECT_EQ(outcome(*other, write), "closed") << "a walk given up has ended too";

    auto rows = walk();
    for (const bool commit : {false, true}) {
        connection->BeginTrans();
        EXPECT_EQ(outcome(*connection, "DELETE FROM Hexis WHERE Hexis_idArt > 100"), "closed");
        commit ? connection->CommitTrans() : connection->RollbackTrans();
        EXPECT_EQ(outcome(*other, "SELECT count(*) FROM Hexis"), commit ? "100;" : "150;");
    }
    connection->runNative("DROP TABLE lav");
    rows->MoveNext();
    connection.reset();
    EXPECT_EQ(outcome(*other, write), "closed") << "the file is closed with its connection";
    rows->MoveNext();
    EXPECT_EQ(rows->AbsolutePosition(), 4);
}

TEST(ClientRecordset, KeepsRowsOfEverySize) {
    const auto connection = testDatabase();
    connection->runNative("CREATE TABLE Long (n INTEGER, t TEXT, u TEXT)");
    for (int row = 0; row < 500; ++row) {
        connection->Execute("INSERT INTO Long (n,t,u) VALUES (" + std::to_string(row) + ",'" +
                                std::string(row % 7 == 0 ? row * 5000 : row % 3, 'a' + row % 26) + "','" +
                                std::to_string(row) + "')",
                            -1);
    }
    const auto rows = connection->Execute("SELECT n, t, u FROM Long", -1);
    for (int row = 0; row < 500; ++row, rows->MoveNext()) {
        ASSERT_EQ(rows->Fields(0), Variant(std::int32_t{row}));
        ASSERT_EQ(rows->Fields(1), Variant(std::string(row % 7 == 0 ? row * 5000 : row % 3, 'a' + row % 26)));
        ASSERT_EQ(rows->Fields(2), Variant(std::to_string(row)));
    }
}

}  // namespace
}  // namespace pxtarvo::portable
