#pragma once

#include <string_view>

#include "platform/database.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::windows {

/// An ADO connection reached through automation: the host's, or one of our own.
class AdoConnection : public Connection {
  public:
    /// `connection` may be empty: every member then raises 91.
    explicit AdoConnection(Dispatch connection) : connection_(std::move(connection)) {}

    /// The object behind any connection that this body made; empty for Nothing, 13 for a foreign one.
    static Reference<IDispatch> objectOf(const ObjectRef<Connection>& connection);

    void ConnectionString(std::string_view value) override {
        connection_.put(u"ConnectionString", OwnedVariant(value));
    }
    void Open(std::string_view userId, std::string_view password, std::int32_t options) override;
    std::int32_t State() const override { return connection_.number(u"State"); }
    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override;
    void BeginTrans() override { connection_.run(u"BeginTrans"); }
    void CommitTrans() override { connection_.run(u"CommitTrans"); }
    void RollbackTrans() override { connection_.run(u"RollbackTrans"); }

  private:
    Dispatch connection_;
};

}  // namespace pxtarvo::windows
