// Taking a run back where something was changed since, and from files that are no such changes.

#include <filesystem>

#include "tests/common/database_state.h"
#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Undo : public Rehearsal {
  protected:
    void make(const std::string& command) {
        makeDealer("before.db");
        copy("before.db", "dealer.db");
        std::filesystem::remove(path("changes"));
        ASSERT_EQ(run(command + " dealer.db --quiet --changes changes"), 0) << errors;
        copy("dealer.db", "after.db");
        // No further run may take the way back from this one.
        ASSERT_EQ(run(command + " dealer.db --quiet --changes changes"), 1);
        ASSERT_TRUE(bytesOf(path("dealer.db")) == bytesOf(path("after.db")));
    }

    /// The identifier that a query over the tables before and after finds.
    std::string one(const std::string& query) const {
        return std::to_string(
            static_cast<int>(Comparison(path("before.db"), path("after.db")).number(query)));
    }

    /// Without the database's being touched.
    void expectRefused(const std::string& arguments) {
        const std::string before = bytesOf(path("dealer.db"));
        EXPECT_EQ(run("undo " + arguments), 1);
        EXPECT_TRUE(bytesOf(path("dealer.db")) == before) << "the database changed";
        EXPECT_FALSE(std::filesystem::exists(path("dealer.db-journal")));
    }
};

TEST_F(Undo, IsRefusedWhereTheRunsRowsWereChangedSince) {
    make("import --file {S}/TARIFA2012.MDB");
    const std::string repriced =
        one("SELECT min(Art_Id) FROM Ambos WHERE Antes <> 0 AND Antes <> Despues AND Estado = EstadoAntes");
    const std::string added = one("SELECT min(Art_Id) FROM Nuevos");
    const std::string retired = one("SELECT min(Art_Id) FROM Bajas");
    struct Case {
        std::string sql;
        std::vector<std::string> named;  ///< by the refusal, empty where there is none
    };
    const auto where = [](const std::string& id) { return " WHERE Art_Id = " + id; };
    const auto row = [](const std::string& id, const std::string& what) {
        return "pxtarvo-host: Art, Art_Id " + id + ": " + what;
    };
    const Case cases[] = {
        {"UPDATE Art SET ART_PVE = 12.5" + where(repriced),
         {row(repriced, "ART_PVE is '12.5', the run left '")}},
        {"UPDATE Art SET ART_PVE = NULL" + where(repriced),
         {row(repriced, "ART_PVE is Null, the run left '")}},
        {"DELETE FROM Art" + where(retired), {row(retired, "the row is gone")}},
        {"UPDATE Art SET Art_Estado = 0" + where(retired),
         {row(retired, "Art_Estado is '0', the run left '1'")}},
        {"UPDATE Art SET ART_Rod = 7" + where(added), {row(added, "ART_Rod is '7', the run left '0'")}},
        {"DELETE FROM Art" + where(added) + "; DELETE FROM Art" + where(repriced),
         {row(added, "the row is gone"), row(repriced, "the row is gone")}},
        {"UPDATE Art SET ART_Rod = 7" + where(repriced), {}},
        {"INSERT INTO Art (ART_Cod, ART_PVE) VALUES ('NUEVO', 1)", {}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.sql);
        copy("after.db", "dealer.db");
        change(one.sql);
        if (!one.named.empty()) {
            for (const char* rehearsed : {" --dry-run", ""}) {
                expectRefused("dealer.db changes" + std::string(rehearsed));
                for (const std::string& line : one.named) EXPECT_THAT(errors, HasSubstr(line));
                EXPECT_THAT(errors, HasSubstr("nothing was undone: " + std::to_string(one.named.size())));
            }
            continue;
        }
        EXPECT_EQ(run("undo dealer.db changes"), 0) << errors;
        change(one.sql, "before.db");
        // A row of its own keeps its number, which the run's rows pushed up.
        change("UPDATE Art SET Art_Id = -1 WHERE ART_Cod = 'NUEVO'");
        change("UPDATE Art SET Art_Id = -1 WHERE ART_Cod = 'NUEVO'", "before.db");
        EXPECT_TRUE(tablesOf(path("dealer.db")) == tablesOf(path("before.db")));
        makeDealer("before.db");
    }
}

TEST_F(Undo, IsRefusedWhereTheRowsAreNotTheRuns) {
    make("delete --brand SAME --until 31/12/2008 --state baja");
    const std::string deleted = one("SELECT min(Art_Id) FROM Borrados");
    change("INSERT INTO Art (Art_Id, ART_Cod) VALUES (" + deleted + ", 'OTRO')");
    expectRefused("dealer.db changes");
    EXPECT_THAT(errors,
                HasSubstr("pxtarvo-host: Art, Art_Id " + deleted + ": another row has taken its place\n"));

    // Once is enough.
    copy("after.db", "dealer.db");
    ASSERT_EQ(run("undo dealer.db changes"), 0);
    expectRefused("dealer.db changes");

    // Another dealer's database, and one with a further column.
    std::filesystem::remove(path("dealer.db"));
    make("import --file {S}/list-decimal-price.mdb");
    std::filesystem::remove(path("dealer.db"));
    ASSERT_EQ(run("init dealer.db"), 0);
    expectRefused("dealer.db changes");
    EXPECT_THAT(errors, HasSubstr(": the row is gone\n"));
    copy("after.db", "dealer.db");
    change("ALTER TABLE Art ADD COLUMN Art_Otra INTEGER");
    expectRefused("dealer.db changes");
    EXPECT_THAT(errors, EndsWith("the database has no table Art like the one that was changed\n"));
}

TEST_F(Undo, IsRefusedForWhatIsNoWholeFileOfChanges) {
    make("import --file {S}/list-decimal-price.mdb");
    const std::string whole = bytesOf(path("changes"));
    const std::size_t size = whole.size();
    for (const std::size_t length : {std::size_t{0}, std::size_t{17}, std::size_t{18}, std::size_t{60},
                                     std::size_t{83}, size / 2, size - 1}) {
        SCOPED_TRACE(length);
        folder.write("damaged", whole.substr(0, length));
        expectRefused("dealer.db damaged");
        EXPECT_THAT(errors, StartsWith("pxtarvo-host: 'damaged' "));
    }
    for (const std::size_t at : {std::size_t{3}, std::size_t{30}, std::size_t{90}, size / 2, size - 1}) {
        SCOPED_TRACE(at);
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        folder.write("damaged", damaged);
        expectRefused("dealer.db damaged");
        EXPECT_THAT(errors, StartsWith("pxtarvo-host: 'damaged' "));
    }
    for (const char* other : {"dealer.db", "missing", ".", "{S}/articulo.tdw"}) {
        SCOPED_TRACE(other);
        expectRefused(std::string("dealer.db ") + other);
    }
    EXPECT_EQ(run("undo missing.db changes"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("missing.db")));
    EXPECT_EQ(run("undo dealer.db changes"), 0) << "the database is what it was";
}

}  // namespace

}  // namespace pxtarvo::tests
