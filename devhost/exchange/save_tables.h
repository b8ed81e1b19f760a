#pragma once

#include <filesystem>
#include <vector>

#include "devhost/exchange/exchange_watcher.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Writes every table of the host into a file TABLE.csv of the folder, which is made where it is missing, all
/// as the database is at one moment: UTF-8, commas, quotes where they are needed, Null as an empty cell and
/// an empty text as
/// "", dates as YYYY-MM-DD HH:MM:SS, decimals with a point. Raises std::runtime_error where a file of a table
/// is there already, for a value that no such file can hold and for a file that cannot be written, the
/// provider's error for the database's own troubles; no file is left then.
std::vector<ExchangedTable> saveTables(portable::SqliteConnection& connection,
                                       const std::filesystem::path& folder, const ExchangeWatcher& watcher);

}  // namespace pxtarvo::devhost
