#pragma once

// Hands a statement's literals to the prepared statement as its parameters.

#include <cstdint>
#include <string_view>
#include <variant>

#include "platform/portable/dialect/sql_tokens.h"
#include "platform/portable/dialect/sql_translator.h"
#include "platform/values/variant.h"

struct sqlite3_stmt;

namespace pxtarvo::portable {

/// Binds a Number or Text token to SQLite's 1-based parameter. A literal that meets a date column is read day
/// first, a text that meets a numeric column as a number; a number stored in a whole-number column loses its
/// decimals. Raises ConversionFailed for what cannot be read so or does not fit. The statement may refer to
/// the token's text until it is bound anew.
void bindLiteral(sqlite3_stmt* statement, int parameter, const SqlToken& token, const LiteralUse& use);

/// A literal as a value: Null, a whole number, a finite number or a text without the marks around it; or as
/// it stands in a statement.
using LiteralValue = std::variant<Null, std::int64_t, double, std::string_view, const SqlToken*>;

/// Binds `value` as bindLiteral binds the literal that writes it in full.
void bindValue(sqlite3_stmt* statement, int parameter, const LiteralValue& value, const LiteralUse& use);

}  // namespace pxtarvo::portable
