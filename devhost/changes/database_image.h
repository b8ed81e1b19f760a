#pragma once

// A database as it was at a moment, and two of them seen side by side.

#include <sqlite3.h>

#include "platform/portable/sqlite/sqlite_handles.h"

namespace pxtarvo::devhost {

/// In memory. Any number of connections may show it at once; none of them can change it.
class DatabaseImage {
  public:
    /// No transaction may be open. Raises std::runtime_error for a file of no bytes, the provider's error.
    explicit DatabaseImage(sqlite3* database);

    /// Makes a schema of the connection, its name "main" or that of an attached one, show the image, which
    /// must outlive the connection. Raises the provider's error.
    void showIn(sqlite3* connection, const char* schema) const;

  private:
    void readFile(sqlite3* database);

    sqlite3_int64 size_ = 0;
    portable::SqliteMemory bytes_;
};

/// A database before and after a run.
struct BeforeAndAfter {
    DatabaseImage before;
    DatabaseImage after;

    /// The schema of what was; what is stands in "main".
    static constexpr const char* beforeSchema = "antes";
    /// A connection that shows both, to be used by one thread; this must outlive it. Raises the provider's
    /// error.
    portable::DatabaseHandle open() const;
};

}  // namespace pxtarvo::devhost
