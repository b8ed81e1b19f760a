#pragma once

// What a test asks of a host's database.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/portable/sqlite/sqlite_handles.h"

namespace pxtarvo::tests {

/// The values of a query's rows, a row a text with "|" between them, Null as "NULL".
std::vector<std::string> rowsOf(Connection& connection, std::string_view query);

/// The rows of every table, by the statement that made it: each value with SQLite's type, in all its digits,
/// behind a "|". The numbers that the next rows get are no part of it.
using Tables = std::map<std::string, std::vector<std::string>>;
Tables tablesOf(sqlite3* database);
/// Of a connection to such a database, and of its file.
Tables tablesOf(Connection& connection);
Tables tablesOf(const std::string& path);

/// Whether it has a transaction open, which stays so.
bool transactionOpen(Connection& connection);

}  // namespace pxtarvo::tests
