#pragma once

// The schema of an open database file, read anew when it has changed.

#include <cstdint>
#include <optional>

#include "platform/portable/dialect/sql_schema.h"

struct sqlite3;

namespace pxtarvo::portable {

class SqliteSchema {
  public:
    /// Reads it anew when the file's schema is another one than at the last call; true when it is. Raises the
    /// provider's error.
    bool refresh(sqlite3* database);
    /// As the last refresh() read it.
    const SqlSchema& tables() const noexcept { return tables_; }

  private:
    SqlSchema tables_;
    std::optional<std::int64_t> version_;
};

}  // namespace pxtarvo::portable
