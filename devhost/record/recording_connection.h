#pragma once

// The two connections that the plug-in works on, as it sees them: what it calls on them is recorded and
// checked.

#include <memory>
#include <string>

#include "devhost/record/forwarding_connection.h"
#include "devhost/record/protocol_checks.h"
#include "devhost/record/recorder.h"
#include "platform/portable/access/row_source.h"

namespace pxtarvo::devhost {

/// The host's connection as its context hands it out.
class RecordingConnection : public ForwardingConnection {
  public:
    /// Recorder and checks may be empty. With `oneUse`, a second call on it is against the rules.
    RecordingConnection(ObjectRef<Connection> connection, std::shared_ptr<Recorder> recorder,
                        std::shared_ptr<ProtocolChecks> checks, bool oneUse);

    /// The connection behind it, for the host's own statements.
    const ObjectRef<Connection>& undecorated() const noexcept { return connection_; }

    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override;
    void BeginTrans() override { transaction(TransactionCall::Begin, "BeginTrans", &Connection::BeginTrans); }
    void CommitTrans() override {
        transaction(TransactionCall::Commit, "CommitTrans", &Connection::CommitTrans);
    }
    void RollbackTrans() override {
        transaction(TransactionCall::Rollback, "RollbackTrans", &Connection::RollbackTrans);
    }

  private:
    void use(std::string_view member);
    void transaction(TransactionCall call, std::string_view member, void (Connection::*action)());

    std::shared_ptr<Recorder> recorder_;
    std::shared_ptr<ProtocolChecks> checks_;
    bool oneUse_;
    bool used_ = false;
};

/// A connection to a source list.
class RecordingSource : public ForwardingConnection, public portable::RowSource {
  public:
    /// Recorder and checks may be empty. Recordsets open on it where `connection` is a portable::RowSource
    /// too.
    RecordingSource(ObjectRef<Connection> connection, std::shared_ptr<Recorder> recorder,
                    std::shared_ptr<ProtocolChecks> checks);

    void ConnectionString(std::string_view value) override;
    void Open(std::string_view userId, std::string_view password, std::int32_t options) override;
    /// Raises 3709 when the connection behind has no rows to read.
    std::unique_ptr<portable::RowStream> openRows(std::string_view statement) override;

  private:
    std::shared_ptr<Recorder> recorder_;
    std::shared_ptr<ProtocolChecks> checks_;
    std::string connectionString_;
};

}  // namespace pxtarvo::devhost
