#pragma once

// Taking back what a run changed.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

struct UndoOutcome {
    std::size_t rows = 0;  ///< taken back; 0 where there are conflicts
    /// Rows that were changed since, a line each: table, key, what stands there instead.
    std::vector<std::string> conflicts;
};

/// Puts every row of the changes back as it was, all or nothing: with a conflict the database stays as it is.
/// Raises std::runtime_error where the database has not the changes' tables, the provider's error otherwise.
UndoOutcome undoChanges(portable::SqliteConnection& connection, std::string_view changes);

}  // namespace pxtarvo::devhost
