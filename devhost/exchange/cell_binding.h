#pragma once

// What the text of a CSV cell is as the value of a column.

#include <optional>
#include <string>
#include <string_view>

#include "devhost/exchange/csv_rows.h"
#include "devhost/exchange/stored_columns.h"
#include "platform/values/clock.h"

namespace pxtarvo::devhost {

/// Reads "YYYY-MM-DD" or "DD/MM/YYYY" (also with "/", "-" or "." the other way round, day and month of one
/// digit), and behind it, after blanks or a "T", an optional "HH:MM", "HH:MM:SS" or "HH:MM:SS.FFF", whose
/// fraction is cut off. nullopt for anything else and for years before 1753, the server's first.
std::optional<CalendarTime> readCellDate(std::string_view text);

/// Binds what the database file keeps for the cell; why it does not fit the column otherwise. The texts must
/// live until the statement has run. An empty cell in quotes is a text, but Null to a column of any other
/// type. Raises the provider's error.
std::optional<std::string> bindCell(sqlite3_stmt* statement, int parameter, const StoredColumn& column,
                                    const CsvCell& cell);

}  // namespace pxtarvo::devhost
