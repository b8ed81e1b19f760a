#pragma once

// ADO's connection for programs under Wine, which has no providers: the dealer's file instead of a database
// server, Access files through the reader of this host.

#include <memory>
#include <string>

#include "devhost/library/server_cursors.h"
#include "devhost/wine/objects/automation_objects.h"
#include "platform/portable/access/row_source.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/values/clock.h"

namespace pxtarvo::devhost {

/// "Provider=PXTarvo.Dealer;Data Source=<path>" opens a dealer's file (`pxtarvo-host init` makes one), any
/// other string is an Access file's (see JetConnection). Cursors are on the server where nothing else is set,
/// as ADO has it.
class StandInConnection final : public Connection, public OwnConnection, public portable::RowSource {
  public:
    StandInConnection(portable::DrivePaths paths, std::shared_ptr<const Clock> clock);

    std::int32_t CursorLocation() const override { return cursorLocation_; }
    /// 3001 for a value that is none; 3705 while open.
    void CursorLocation(std::int32_t location) override;
    void Close() override;

    /// 3705 while open; what is wrong with the text is told by Open.
    void ConnectionString(std::string_view value) override;
    void Open(std::string_view userId, std::string_view password, std::int32_t options) override;
    std::int32_t State() const override { return open_ ? adStateOpen : adStateClosed; }
    // 3704 while closed.
    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override;
    void BeginTrans() override { opened().BeginTrans(); }
    void CommitTrans() override { opened().CommitTrans(); }
    void RollbackTrans() override { opened().RollbackTrans(); }
    /// Of an Access file only: 13 for the dealer's.
    std::unique_ptr<portable::RowStream> openRows(std::string_view statement) override;

  private:
    Connection& opened() const;

    portable::DrivePaths paths_;
    std::shared_ptr<const Clock> clock_;
    std::int32_t cursorLocation_;
    std::string connectionString_;
    ObjectRef<Connection> open_;
};

}  // namespace pxtarvo::devhost
