// How texts compare, dates and numbers are read, and values come back.

#include <gtest/gtest.h>

#include <cmath>

#include "platform/portable/dialect/sql_collation.h"
#include "platform/portable/sqlite/sqlite_schema.h"
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
            const int expected =
                &*a.data() == &*b.data() && a.size() == b.size() ? 0 : compareDealerTexts(a, b);
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

TEST(SqlDates, TextsThatMeetADateColumnAreReadDayFirst) {
    const auto connection = testDatabase();
    const std::string notADate =
        "-2147217913: Error de conversión al convertir una cadena de caracteres en fecha y/u hora.";
    const std::string outOfRange =
        "-2147217913: La conversión del tipo de datos varchar en datetime produjo un valor fuera de "
        "intervalo.";
    for (const auto& [literal, expected] : std::initializer_list<std::pair<std::string, std::string>>{
             {"'02/01/2005'", "2005-01-02 00:00:00"},
             {"'29/02/2024 07:08'", "2024-02-29 07:08:00"},
             {"'31/12/9999 23:59:59'", "9999-12-31 23:59:59"},
             {"NULL", "-"},
             {"Getdate()", "2026-11-22 09:05:07"},
             {"'29/02/2023'", outOfRange},
             {"'12/25/2006'", outOfRange},
             {"'31/12/1752'", outOfRange},
             {"'01/01/2006 24:00'", outOfRange},
             {"'1/2/2006'", notADate},
             {"'2006-07-25'", notADate},
             {"'25/07/06'", notADate},
             {"'25/07/2006 '", notADate},
             {"''", notADate},
             {"20060725", notADate}}) {
        const std::string set =
            outcome(*connection, "UPDATE Art SET Art_FechaEstado = " + literal + " WHERE Art_Id = 7");
        const std::string inserted =
            outcome(*connection, "INSERT INTO Exis (Exis_Fentrada) VALUES (" + literal + ")");
        EXPECT_EQ(set, inserted);
        if (expected.starts_with("-2147")) {
            EXPECT_EQ(set, expected) << literal;
            continue;
        }
        const StatementHandle stored =
            prepare(connection->handle(), "SELECT ifnull(Art_FechaEstado, '-') FROM Art WHERE Art_Id = 7");
        ASSERT_TRUE(step(stored.get()));
        EXPECT_EQ(reinterpret_cast<const char*>(sqlite3_column_text(stored.get(), 0)), expected) << literal;
    }
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
    const Variant expected[] = {true,
                                std::uint8_t{255},
                                std::int16_t{-5},
                                std::int32_t{70000},
                                3.0,
                                0.5F,
                                Currency{12346},
                                Decimal{1250, 0, 2, true},
                                "0012",
                                Date{38923},
                                "",
                                7e9,
                                std::int32_t{70001},
                                1.5,
                                "x"};
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
    for (const auto& [assignment, expected] : std::initializer_list<std::pair<std::string, std::string>>{
             {"Art_Marca = 2.9", "2"},
             {"Art_Marca = -2.9", "-2"},
             {"Art_Marca = ' -17 '", "-17"},
             {"Art_Marca = 2147483647", "2147483647"},
             {"Art_Pve = '1e3'", "1000.0"},
             {"Art_Pve = -0.125", "-0.125"},
             {"Art_Cod = 7", "7"},
             {"Art_Cod = '  a''b  '", "  a'b  "},
             {"Art_Marca = 2147483648",
              "-2147217913: Error de desbordamiento aritmético al convertir la expresión al tipo de datos "
              "int."},
             {"Art_Alma = -32769",
              "-2147217913: Error de desbordamiento aritmético al convertir la expresión al tipo de datos "
              "smallint."},
             {"Art_Pve = '2,5'", "-2147217913: Error al convertir el tipo de datos varchar a float."},
             {"Art_Marca = ''", "-2147217913: Error al convertir el tipo de datos varchar a int."}}) {
        const std::string set = outcome(*connection, "UPDATE Art SET " + assignment + " WHERE Art_Id = 7");
        if (set != "closed") {
            EXPECT_EQ(set, expected) << assignment;
            continue;
        }
        const std::string column = assignment.substr(0, assignment.find(' '));
        const StatementHandle stored =
            prepare(connection->handle(), "SELECT format('%s', " + column + ") FROM Art WHERE Art_Id = 7");
        ASSERT_TRUE(step(stored.get()));
        EXPECT_EQ(reinterpret_cast<const char*>(sqlite3_column_text(stored.get(), 0)), expected)
            << assignment;
    }
}

TEST(SqlValues, AStoredValueThatItsColumnCannotHoldIsAnError) {
    const auto connection = testDatabase();
    connection->runNative(
        "UPDATE Art SET Art_FechaEstado = '25/07/2006', Art_Estado = 300, Art_Marca = 2.5, Art_Pve = 'x'");
    const auto result =
        connection->Execute("SELECT Art_FechaEstado, Art_Estado, Art_Marca, Art_Pve FROM Art", -1);
    for (std::int32_t column = 0; column < 4; ++column) {
        try {
            result->Fields(column);
            ADD_FAILURE() << column;
        } catch (const RuntimeError& error) {
            EXPECT_TRUE(error.is(ErrorNumber::ConversionFailed)) << column;
        }
    }
}

}  // namespace
}  // namespace pxtarvo::portable
