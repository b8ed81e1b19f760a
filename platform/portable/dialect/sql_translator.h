#pragma once

// From the dialect of the host's server to SQLite's. Statements arrive exactly as the server would get them;
// they are parsed, their names looked up and their literals turned into parameters. What the grammar below
// does not know is refused as the server refuses a syntax error, never passed on.
//
//   SELECT [DISTINCT] [TOP n] values [FROM tables and joins] [WHERE] [GROUP BY] [HAVING] [ORDER BY]
//   INSERT [INTO] table [(columns)] VALUES (…), … | SELECT …
//   UPDATE table SET column = value, … [WHERE]
//   DELETE [FROM] table [WHERE]
//
// with comparisons, IN, BETWEEN, EXISTS, IS NULL, CASE, scalar sub-selects, arithmetic, `+` between texts,
// and the functions of the table in sql_values.cpp.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/dialect/column_types.h"
#include "platform/portable/dialect/sql_schema.h"

namespace pxtarvo::portable {

/// Raises the server's error for a scalar sub-select that has more than one row.
inline constexpr const char* secondValueFunction = "dealer_second_value";
/// The current date and time in the form in which the file keeps dates; the same value all through a
/// statement.
inline constexpr const char* nowFunction = "dealer_now";

/// What becomes of a statement's literal; the one at position p is SQLite's parameter p + 1.
struct LiteralUse {
    bool bound = true;      ///< false: it was written into the statement and is no parameter
    bool negated = false;   ///< the sign before the number belongs to it
    bool assigned = false;  ///< stored in a column of type `target`, else only compared with one
    ColumnType target = ColumnType::Undeclared;  ///< of the column that the literal meets
};

struct Translation {
    std::string sql;
    std::vector<LiteralUse> literals;
    /// Of the result's columns, as far as the statement tells: a column that is passed through a function or
    /// a sub-select keeps its type. Empty when the result has "*" columns.
    std::vector<ColumnDeclaration> columns;

    /// Whether the translation serves every statement of the same shape.
    bool servesShape() const { return std::ranges::all_of(literals, &LiteralUse::bound); }
};

/// Raises SqlSyntax or NoSuchTable with the server's text.
Translation translateStatement(std::string_view statement, const SqlSchema& schema);

}  // namespace pxtarvo::portable
