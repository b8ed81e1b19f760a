#pragma once

// The dealer over whose database both sides of a comparison run.

#include <string>

#include "benchmarks/measure/comparison.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::benchmarks {

/// Makes the host's tables with supplier 24 (Pro_ID 4) and brand SAME (Marca_ID 1), and the rows that
/// `script`, in SQLite's own SQL, adds.
void createDealer(const std::string& script = {});

/// The path of a copy of that database, made anew.
std::string freshDealer();

/// A comparison over such copies; each run must meet so many items. The floor is handed the open database,
/// the plug-in's code its path.
Comparison overFreshDealer(std::string title, std::function<Run(portable::SqliteConnection& database)> floor,
                           std::function<Run(const std::string& database)> plugIn, std::int64_t items);

}  // namespace pxtarvo::benchmarks
