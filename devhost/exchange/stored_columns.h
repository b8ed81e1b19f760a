#pragma once

// The columns of a table as the database file declares them.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/dialect/column_types.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

struct StoredColumn {
    std::string name;
    portable::ColumnType type = portable::ColumnType::Undeclared;
    std::size_t textSize = 0;  ///< the most characters of a text; 0 for any number
    bool key = false;          ///< where it is Null, the database numbers the row
};

/// In the table's own order; empty where there is no such table. Raises the provider's error.
std::vector<StoredColumn> storedColumns(const portable::SqliteConnection& connection, std::string_view table);

}  // namespace pxtarvo::devhost
