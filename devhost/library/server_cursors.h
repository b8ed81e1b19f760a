#pragma once

// The host's connection as one with ADO's default cursors gives its results: on the server, forward only.

#include <memory>
#include <string_view>
#include <vector>

#include "devhost/record/forwarding_connection.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::devhost {

/// Where the host's results are kept.
enum class CursorLocation {
    Client,  ///< read whole, with an exact count
    Server   ///< read row by row: no count, no way back, no clone
};

/// Its results answer RecordCount with -1 and go forward by MoveNext only; any other move fails with the
/// provider's error, Clone with 3251. As long as one of them is open and not at its end, no further statement
/// runs inside a transaction.
class ServerCursors final : public ForwardingConnection {
  public:
    explicit ServerCursors(ObjectRef<portable::SqliteConnection> database)
        : ForwardingConnection(database), database_(std::move(database)) {}

    /// Raises ProviderFailure where a result that is still being read forbids a statement.
    void admitStatement();

    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override;

  private:
    ObjectRef<portable::SqliteConnection> database_;
    std::vector<std::weak_ptr<const Recordset>> results_;  ///< those that may still be read
};

}  // namespace pxtarvo::devhost
