#pragma once

// The least that the barcode list, the location update and the code correction can cost: their statements
// prepared once and bound, straight on SQLite with the host's tables; the files are read through the
// plug-in's own readers.

#include <cstdint>
#include <string>

#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::benchmarks {

// Each gives back how many rows it met, and raises RuntimeError.

/// As brand 1 and supplier 4.
std::int64_t barcodesOnFloor(portable::SqliteConnection& connection, const std::string& workbook);
std::int64_t locationsOnFloor(portable::SqliteConnection& connection, const std::string& articleFile);
std::int64_t correctionOnFloor(portable::SqliteConnection& connection);

}  // namespace pxtarvo::benchmarks
