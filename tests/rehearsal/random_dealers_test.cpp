// Dealers whose tables hold anything: what a run reports, rehearses and takes back is held to the tables all
// the same.

#include <cstdlib>
#include <iostream>
#include <random>

#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"
#include "platform/values/text.h"
#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

/// Answers azar(n) with a number below n.
void drawNumber(sqlite3_context* context, int, sqlite3_value** values) {
    auto& numbers = *static_cast<std::mt19937*>(sqlite3_user_data(context));
    const auto limit = static_cast<std::uint32_t>(sqlite3_value_int64(values[0]));
    sqlite3_result_int64(context, numbers() % limit);
}

constexpr const char* anything = R"(
DELETE FROM Art WHERE azar(4) > 0;
UPDATE Art SET
    ART_PVE = CASE azar(9) WHEN 0 THEN NULL WHEN 1 THEN 0 WHEN 2 THEN -azar(9999) / 100.0 WHEN 3 THEN azar(9999)
        WHEN 4 THEN azar(99999999) / 10000.0 WHEN 5 THEN ART_PVE ELSE azar(99999) / 100.0 END,
    Art_Estado = CASE azar(6) WHEN 0 THEN 1 WHEN 1 THEN NULL WHEN 2 THEN 2 ELSE 0 END,
    Art_Mar = 1 + azar(2), Art_Marca = 1 + azar(2),
    ART_DES = CASE azar(5) WHEN 0 THEN '<script>alert(1)</script>' WHEN 1 THEN '"&''' WHEN 2 THEN NULL
        WHEN 3 THEN '=1+1;' || char(10) ELSE ART_DES END,
    ART_Cod = CASE azar(12) WHEN 0 THEN ART_Cod || '  ' WHEN 1 THEN lower(ART_Cod) WHEN 2 THEN '0' || ART_Cod
        WHEN 3 THEN '<b>' || Art_Id WHEN 4 THEN '-' || Art_Id ELSE ART_Cod END;
UPDATE Art SET ART_Cod = 'D''' || Art_Id WHERE :apostrophes AND azar(40) = 0;
UPDATE Art SET ART_PVE = 1 WHERE ART_PVE IS NULL AND :priced;
UPDATE Exis SET Exis_Cantidad = CASE azar(6) WHEN 0 THEN NULL WHEN 1 THEN 0 WHEN 2 THEN -azar(50)
    WHEN 3 THEN azar(9999) / 1000.0 ELSE azar(100) END;
DELETE FROM Exis WHERE azar(3) = 0;
DELETE FROM Aat WHERE azar(2) = 0;
DELETE FROM ArtPro WHERE azar(2) = 0;
UPDATE Ubi SET Ubi_Pasillo = CASE azar(4) WHEN 0 THEN NULL WHEN 1 THEN ' ' WHEN 2 THEN '=A1' ELSE '<i>' END;
)";

class RandomDealers : public Rehearsal {
  protected:
    /// Gives the dealer some of the list's codes, and everything else by chance.
    void makeRandomDealer(std::mt19937& numbers, const std::string& list) {
        makeDealer();
        const portable::SystemClock clock;
        const auto dealer = portable::SqliteConnection::open(path("dealer.db"), clock);
        sqlite3_create_function(dealer->handle(), "azar", 1, SQLITE_UTF8, &numbers, drawNumber, nullptr,
                                nullptr);
        std::string sql(anything);
        for (const char* name : {":apostrophes", ":priced"}) {
            sql = replaced(sql, name, numbers() % 3 == 0 ? "1" : "0");
        }
        if (!list.empty()) {
            Comparison tables(path("dealer.db"), path("dealer.db"));
            tables.readList(list, "List", 3, 1000);
            for (const Row& row : tables.rows("SELECT Codigo FROM Lista WHERE Codigo NOT LIKE '%''%'")) {
                if (numbers() % 2 == 0) continue;
                sql.insert(0, "INSERT INTO Art (ART_Cod) VALUES ('" + row.at(0) + "');");
            }
        }
        dealer->runNative(sql);
    }
};

TEST_F(RandomDealers, AreToldAndGivenBackWhatTheyHave) {
    const char* const chosen = std::getenv("PXTARVO_SEED");
    const auto first = static_cast<std::uint32_t>(chosen ? std::stoul(chosen) : std::random_device()());
    constexpr std::uint32_t runs = 24;
    std::cout << "PXTARVO_SEED=" << first << " repeats these runs\n";
    const std::string lists[] = {
        "list-decimal-price.mdb",     "list-whole-price.mdb",           "list-text-price.mdb",
        "list-numeric-code.mdb",      "list-nulls-and-empty-texts.mdb", "list-bad-price-row-12.mdb",
        "list-apostrophe-row-57.mdb", "list-empty-price-row-34.mdb"};
    const std::string others[] = {"fix-codes",
                                  "locations --file {S}/articulo.tdw",
                                  "delete",
                                  "delete --brand AGM --state baja",
                                  "import --year 2008 --list ama --file {S}/barcodes-cell-types.xls",
                                  "import --year 2008 --list ama --file {S}/barcodes-apostrophe-row-12.xls"};
    for (std::uint32_t seed = first; seed != first + runs; ++seed) {
        std::mt19937 numbers(seed);
        const bool imports = numbers() % 3 > 0;
        List list;
        std::string command = others[numbers() % std::size(others)];
        if (imports) {
            list.path = sample(lists[numbers() % std::size(lists)]);
            command = "import --year " + std::to_string(2007 + numbers() % 6) + " --file " + list.path;
        }
        if (numbers() % 3 == 0) command += " --cursor server";
        SCOPED_TRACE("PXTARVO_SEED=" + std::to_string(seed) + ": " + command);
        makeRandomDealer(numbers, list.path);
        holds(command, list);
        if (HasFailure()) break;
    }
}

}  // namespace

}  // namespace pxtarvo::tests
