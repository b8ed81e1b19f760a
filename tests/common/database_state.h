#pragma once

// What a test asks of a host's connection.

#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace pxtarvo::tests {

/// The values of a query's rows, a row a text with "|" between them, Null as "NULL".
std::vector<std::string> rowsOf(Connection& connection, std::string_view query);

/// Whether it has a transaction open, which stays so.
bool transactionOpen(Connection& connection);

}  // namespace pxtarvo::tests
