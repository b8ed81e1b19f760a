#pragma once

// What a run really changes: the tables as they were beside the tables as they are, by SQLite's session
// extension. A session that records while the run writes would double the run's time.

#include <cstdint>
#include <string>

#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Keeps the connection open, and the database as it was in memory.
class ChangeLog {
  public:
    /// What is changed from now on counts. No transaction may be open. Raises std::runtime_error for a table
    /// whose rows have no key, as older versions of this host made them; the provider's error otherwise.
    explicit ChangeLog(ObjectRef<portable::SqliteConnection> connection);

    /// The net changes of the host's tables so far, as a changeset of SQLite; to be asked once, with no
    /// transaction open. Raises std::runtime_error where another program wrote into the file meanwhile, as
    /// its changes cannot be told apart; the provider's error otherwise.
    std::string changes();

  private:
    ObjectRef<portable::SqliteConnection> connection_;
    portable::SqliteMemory before_;  ///< the file's bytes
    std::int64_t size_ = 0;
    std::int64_t version_ = 0;  ///< changes with each write of another connection
};

}  // namespace pxtarvo::devhost
