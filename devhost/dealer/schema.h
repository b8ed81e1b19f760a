#pragma once

// The host's tables in a database file of our own.

#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Creates every table of host/tables.h with its indexes, in one transaction. Raises the provider's error;
/// nothing is created then.
void createSchema(portable::SqliteConnection& connection);

}  // namespace pxtarvo::devhost
