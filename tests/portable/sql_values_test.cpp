// How texts compare, dates and numbers are read, and values come back.

#include <gtest/gtest.h>

#include <cmath>

#include "platform/portable/dialect/sql_collation.h"
#include "platform/portable/sqlite/sqlite_schema.h"
#include "platform/values/text.h"
#include "tests/common/temporary_folder.h"
#include "tests/portable/sql_test_database.h"

namespace pxtarvo::portable {
namespace {

TEST(SqlCollation, IgnoresCaseAndTrailingBlanksButNotAccents) {
    for (const auto& [a, b] :
         std::initializer_list<std::pair<std::string_view, std::string_view>>{{"Tuerca", "tUERCA  "},
                                                                              {"Ñ", "ñ"},
                                                                              {"ÁÉÍÓÚÜÇ", "áéíóúüç"},
                                                                              {"", "   "},
                                                                              {"Žab", "žab "},
                                                                              {"Ÿ", "ÿ"}}) {
        EXPECT_EQ(compareDealerTexts(a, b), 0) << a << " / " << b;
    }
    // in ascending order, each different from the next; malformed UTF-8 and look-alikes included
    constexpr std::string_view ascending[] = {"",   " a",   "_z", "0100", "9", "a",    "á",     "ä",     "ab",
                                              "áb", "ac",   "b",  "mz",   "n", "nz",   "ñ",     "ñandú", "o",
                                              "z",  "z\tx", "zz", "×",    "æ", "\xC3", "\xC3z", "\xFF"};
    for (const std::string_view a : ascending) {
        for (const std::string_view b : ascending) {
            const int expected = a == b ? 0 : compareDealerTexts(a, b);
            EXPECT_EQ(compareDealerTexts(b, a), -expected) << a << " / " << b;
        }
    }
    for (std::size_t first = 0; first < std::size(ascending); ++first) {
        for (std::size_t second = first + 1; second < std::size(ascending); ++second) {
            EXPECT_LT(compareDealerTexts(ascending[first], ascending[second]), 0)
                << ascending[first] << " / " << ascending[second];
        }
    }
}

TEST(SqlCollation, TakesPartInEveryComparisonAndUsesItsIndex) {
    const auto connection = testDatabase();
    connection->Execute(
        "INSERT INTO Lac (lac_codart) VALUES ('b'), ('B '), ('a'), ('á'), ('ñ'), ('o'), ('N')", -1);
    for (const StatementCase& one : std::initializer_list<StatementCase>{
             {"SELECT count(*) FROM lac WHERE lac_codart = 'B'", "2;"},
             {"SELECT count(*) FROM lac WHERE 'A' = lac_codart", "1;"},
             {"SELECT count(*) FROM lac WHERE lac_codart <> 'B'", "5;"},
             {"SELECT count(*) FROM lac WHERE lac_codart in ('A','ñ ')", "2;"},
             {"SELECT count(*) FROM lac WHERE lac_codart BETWEEN 'A' AND 'B'", "4;"},
             {"SELECT count(DISTINCT lac_codart) FROM lac", "6;"},
             {"SELECT DISTINCT lac_codart FROM lac WHERE lac_codart < 'c' ORDER BY lac_codart", "a;á;b;"},
             {"SELECT max(lac_codart) FROM lac WHERE lac_codart <> 'o'", "ñ;"},
             {"SELECT count(*) FROM lac GROUP BY lac_codart ORDER BY lac_codart", "1;1;2;1;1;1;"},
             {"SELECT lac_codart AS c FROM lac WHERE lac_codart > 'b' ORDER BY c", "N;ñ;o;"}}) {
        EXPECT_EQ(outcome(*connection, one.sql), one.outcome) << one.sql;
    }
    const Translation lookup = [&] {
        SqliteSchema schema;
        schema.refresh(connection->handle());
        return translateStatement("SELECT * FROM Art WHERE Art_Cod = 'x'", schema.tables());
    }();
    const StatementHandle plan = prepare(connection->handle(), "EXPLAIN QUERY PLAN " + lookup.sql);
    ASSERT_TRUE(step(plan.get()));
    const std::string detail = reinterpret_cast<const char*>(sqlite3_column_text(plan.get(), 3));
    EXPECT_NE(detail.find("Art_ByCode"), detail.npos) << detail;
}

/// Of article 7, as the file has it.
std::string storedText(SqliteConnection& connection, const std::string& expression) {
    const StatementHandle stored =
        prepare(connection.handle(), "SELECT " + expression + " FROM Art WHERE Art_Id = 7");
    step(stored.get());
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stored.get(), 0));
    return text ? text : "NULL";
}

TEST(SqlDates, TextsThatMeetADateColumnAreReadDayFirst) {
    const auto connection = testDatabase();
    const std::string notADate =
        "-2147217913: Error de conversión al convertir una cadena de caracteres en fecha y/u hora.";
    const std::string outOfRange =
        "-2147217913: La conversión del tipo de datos varchar en datetime produjo un valor fuera de "
        "intervalo.";
    const auto expect = [&](std::string_view expected, std::string_view literals) {
        for (const std::string_view literal : split(literals, '|')) {
            const std::string set = outcome(
                *connection, joined({"UPDATE Art SET Art_FechaEstado = ", literal, " WHERE Art_Id = 7"}));
            const std::string inserted =
                outcome(*connection, joined({"INSERT INTO Exis (Exis_Fentrada) VALUES (", literal, ")"}));
            EXPECT_EQ(set, inserted);
            EXPECT_EQ(set == "closed" ? storedText(*connection, "ifnull(Art_FechaEstado, '-')") : set,
                      expected)
                << literal;
        }
    };
    expect("2005-01-02 00:00:00", "'02/01/2005'");
    expect("2024-02-29 07:08:00", "'29/02/2024 07:08'");
    expect("9999-12-31 23:59:59", "'31/12/9999 23:59:59'");
    expect("-", "NULL");
    expect("2026-11-22 09:05:07", "Getdate()");
    expect(outOfRange, "'29/02/2023'|'12/25/2006'|'31/12/1752'|'01/01/2006 24:00'");
    expect(notADate, "'1/2/2006'|'2006-07-25'|'25/07/06'|'25/07/2006 '|''|20060725");
    for (const StatementCase& one : std::initializer_list<StatementCase>{
             {"SELECT Art_Id FROM Art WHERE Art_FechaEstado <= '25/07/2006 23:59:59' AND Art_Id > 7", "9;"},
             {"SELECT Art_Id FROM Art WHERE '26/07/2006' = Art_FechaEstado", "8;"},
             {"SELECT Art_Id FROM Art WHERE Art_FechaEstado IN ('02/01/2005','26/07/2006')", "8;9;"},
             {"SELECT Art_Id FROM Art WHERE Art_FechaEstado BETWEEN '01/01/2005' AND '31/12/2005'", "9;"},
             {"SELECT Art_Id FROM Art WHERE Art_Id = 9 AND isnull(Art_FechaEstado,'01/01/2000') < "
              "'03/01/2005'",
              "9;"}}) {
        EXPECT_EQ(outcome(*connection, one.sql), one.outcome) << one.sql;
    }
}

TEST(SqlValues, KeepTheTypeOfTheirColumn) {
    const auto connection = testDatabase();
    connection->runNative(
        "CREATE TABLE T (a BIT, b TINYINT, c SMALLINT, d INT, e FLOAT, f REAL, g MONEY, h DECIMAL(10,2), i "
        "NVARCHAR(9), "
        "j DATETIME, k TEXT); INSERT INTO T VALUES (1, 255, -5, 70000, 3, 0.5, 1.23455, -12.5, '0012', "
        "'2006-07-25', '');"
        "INSERT INTO T DEFAULT VALUES");
    const auto result = connection->Execute("SELECT *, d * 100000 AS l, d + 1, e / 2, 'x' FROM T", -1);
    constexpr std::uint8_t b = 255;
    constexpr std::int16_t c = -5;
    constexpr std::int32_t d = 70000;
    const Decimal h{1250, 0, 2, true};
    const Variant expected[] = {true,        b,  c,   d,     3.0, 0.5F, Currency{12346}, h, "0012",
                                Date{38923}, "", 7e9, d + 1, 1.5, "x"};
    ASSERT_EQ(result->FieldCount(), 15);
    for (std::int32_t column = 0; column < 15; ++column) {
        EXPECT_EQ(result->Fields(column).type(), expected[column].type()) << column;
        EXPECT_TRUE(result->Fields(column) == expected[column]) << column;
    }
    EXPECT_EQ(result->FieldName(11), "l");
    EXPECT_EQ(result->FieldName(12), "");
    EXPECT_EQ(result->Fields("J"), result->Fields(9));
    result->MoveNext();
    for (std::int32_t column = 0; column < 14; ++column)
        EXPECT_TRUE(result->Fields(column).isNull()) << column;
}

TEST(SqlValues, LiteralsAreStoredAsTheColumnsType) {
    const auto connection = testDatabase();
    const auto expect = [&](const std::string& column, const char* literal, const std::string& expected) {
        const std::string set =
            outcome(*connection, joined({"UPDATE Art SET ", column, " = ", literal, " WHERE Art_Id = 7"}));
        const std::string stored = storedText(*connection, "format('%s', " + column + ")");
        EXPECT_EQ(set == "closed" ? stored : set, expected) << literal;
    };
    const std::string overflow =
        "-2147217913: Error de desbordamiento aritmético al convertir la expresión al tipo de datos ";
    const std::string noNumber = "-2147217913: Error al convertir el tipo de datos varchar a ";
    expect("Art_Marca", "2.9", "2");
    expect("Art_Marca", "-2.9", "-2");
    expect("Art_Marca", "' -17 '", "-17");
    expect("Art_Marca", "2147483647", "2147483647");
    expect("Art_Pve", "'1e3'", "1000.0");
    expect("Art_Pve", "-0.125", "-0.125");
    expect("Art_Cod", "7", "7");
    expect("Art_Cod", "'  a''b  '", "  a'b  ");
    expect("Art_Marca", "2147483648", overflow + "int.");
    expect("Art_Alma", "-32769", overflow + "smallint.");
    expect("Art_Pve", "'2,5'", noNumber + "float.");
    expect("Art_Marca", "''", noNumber + "int.");
}

TEST(SqlValues, AStoredValueThatItsColumnCannotHoldIsAnError) {
    const auto connection = testDatabase();
    connection->runNative(
        "UPDATE Art SET Art_FechaEstado = '25/07/2006', Art_Estado = 300, Art_Marca = 2.5, Art_Pve = 'x'");
    const auto result =
        connection->Execute("SELECT Art_FechaEstado, Art_Estado, Art_Marca, Art_Pve FROM Art", -1);
    for (std::int32_t column = 0; column < 4; ++column) {
        EXPECT_EQ(tests::errorOf([&] { result->Fields(column); }), -2147217913) << column;
    }
}

}  // namespace
}  // namespace pxtarvo::portable
