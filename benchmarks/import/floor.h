#pragma once

// The least that an import of a yearly list of 2012 can cost: its statements prepared once and bound,
// straight on SQLite with the host's tables, the list read through the plug-in's own reader.

#include <cstdint>
#include <string>

namespace pxtarvo::benchmarks {

/// Imports `list` into `database`, as supplier 4 and brand 1, and returns the number of rows. Raises
/// RuntimeError.
std::int64_t importOnFloor(const std::string& database, const std::string& list);

}  // namespace pxtarvo::benchmarks
