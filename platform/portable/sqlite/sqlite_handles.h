#pragma once

// Owners of SQLite's handles and the translation of its errors.

#include <sqlite3.h>

#include <memory>
#include <string_view>

#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

struct CloseDatabase {
    void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
};
using DatabaseHandle = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

struct FreeSqliteMemory {
    void operator()(void* memory) const noexcept { sqlite3_free(memory); }
};
/// What SQLite hands over to be freed.
using SqliteMemory = std::unique_ptr<void, FreeSqliteMemory>;

/// The provider's error for the last failure of `database`: the number and the Spanish text of the host's
/// server where it has one.
RuntimeError providerError(sqlite3* database);

/// Raises the provider's error.
StatementHandle prepare(sqlite3* database, std::string_view sql, unsigned flags = 0);
/// To the next row; false past the last. Raises the provider's error.
bool step(sqlite3_stmt* statement);
/// Runs statements of SQLite's own dialect that give no rows. Raises the provider's error.
void run(sqlite3* database, const char* sql);
/// Makes the whole of `to` what `from` is now. Raises the provider's error.
void copyDatabase(sqlite3* from, sqlite3* to);

}  // namespace pxtarvo::portable
