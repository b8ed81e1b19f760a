#pragma once

// What the text of a CSV cell is as the value of a column.

#include <optional>
#include <string>

#include "devhost/exchange/csv_rows.h"
#include "devhost/exchange/stored_columns.h"

namespace pxtarvo::devhost {

/// Binds what the database file keeps for the cell; why it does not fit the column otherwise. The texts must
/// live until the statement has run. An empty cell in quotes is a text, but Null to a column of any other
/// type. Raises the provider's error.
std::optional<std::string> bindCell(sqlite3_stmt* statement, int parameter, const StoredColumn& column,
                                    const CsvCell& cell);

}  // namespace pxtarvo::devhost
