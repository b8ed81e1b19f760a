#pragma once

// The database as it was when a run began, until it has ended.

#include <cstdint>

#include "devhost/changes/database_image.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Keeps the connection open.
class ChangeLog {
  public:
    /// What is changed from now on counts. No transaction may be open. Raises std::runtime_error for a table
    /// whose rows have no key, as older versions of this host made them, and for an empty database; the
    /// provider's error otherwise.
    explicit ChangeLog(ObjectRef<portable::SqliteConnection> connection);

    /// The database as it was and as it is; to be asked once, with no transaction open. Raises
    /// std::runtime_error where another program wrote into the file meanwhile, as its changes cannot be told
    /// apart; the provider's error otherwise.
    BeforeAndAfter end();

  private:
    ObjectRef<portable::SqliteConnection> connection_;
    std::int64_t version_;  ///< changes with each write of another connection
    DatabaseImage before_;
};

}  // namespace pxtarvo::devhost
