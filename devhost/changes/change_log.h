#pragma once

// What a run really changes, recorded by SQLite's session extension.

#include <memory>
#include <string>

#include "platform/portable/sqlite/sqlite_connection.h"

struct sqlite3_session;

namespace pxtarvo::devhost {

/// Keeps the connection open. Changes of the host's tables made over it count from the construction on;
/// what is undone before changes() is asked does not.
class ChangeLog {
  public:
    /// Raises std::runtime_error for a table whose rows have no key, as older versions of this host made
    /// them; the provider's error otherwise.
    explicit ChangeLog(ObjectRef<portable::SqliteConnection> connection);

    /// The net changes so far, as a changeset of SQLite. Raises the provider's error.
    std::string changes() const;

  private:
    struct EndSession {
        void operator()(sqlite3_session* session) const noexcept;
    };

    ObjectRef<portable::SqliteConnection> connection_;  ///< outlives the session
    std::unique_ptr<sqlite3_session, EndSession> session_;
};

}  // namespace pxtarvo::devhost
