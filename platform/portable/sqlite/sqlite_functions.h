#pragma once

// What the host's server has and SQLite lacks, added to a database connection: the collation, the current
// date and the error of a sub-select with a second row.

#include <sqlite3.h>

#include <optional>

#include "platform/portable/dialect/column_types.h"
#include "platform/values/clock.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

/// What the functions share with the connection that they belong to; it must outlive the database handle.
struct FunctionState {
    explicit FunctionState(const Clock& clock) : clock(clock) {}
    /// To be called before each statement.
    void beginStatement() noexcept {
        now.reset();
        raised.reset();
    }
    const Clock& clock;
    std::optional<StoredDate> now;
    std::optional<RuntimeError> raised;  ///< the error with which a function ended the statement
};

/// Raises the provider's error.
void addServerFunctions(sqlite3* database, FunctionState& state);

}  // namespace pxtarvo::portable
