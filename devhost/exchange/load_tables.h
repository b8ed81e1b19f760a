#pragma once

#include <filesystem>
#include <vector>

#include "devhost/exchange/exchange_watcher.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Adds the rows of the folder's files, one TABLE.csv a table of the host, to its tables, in one transaction.
/// The first line of a file names its columns, in any order and case: what is no column of the table is left
/// out, what the file lacks is Null. Raises std::runtime_error with file, line, column and reason for what
/// does not fit, the provider's error for the database's own troubles; nothing is added then.
std::vector<ExchangedTable> loadTables(portable::SqliteConnection& connection,
                                       const std::filesystem::path& folder, const ExchangeWatcher& watcher);

}  // namespace pxtarvo::devhost
