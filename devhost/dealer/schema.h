#pragma once

// The host's tables in a database file of our own.

#include "host/tables.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Creates every table of host/tables.h with its indexes, in one transaction. Raises the provider's error;
/// nothing is created then.
void createSchema(portable::SqliteConnection& connection);

/// How many characters a text column holds; 0 for a column of another kind.
std::size_t textSize(const Columna& column);

}  // namespace pxtarvo::devhost
