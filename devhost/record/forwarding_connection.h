#pragma once

#include <utility>

#include "platform/database.h"

namespace pxtarvo::devhost {

/// A connection that hands every call on to the one behind it, but for those that a derived class answers.
class ForwardingConnection : public Connection {
  public:
    void ConnectionString(std::string_view value) override { connection_->ConnectionString(value); }
    void Open(std::string_view userId, std::string_view password, std::int32_t options) override {
        connection_->Open(userId, password, options);
    }
    std::int32_t State() const override { return connection_->State(); }
    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override {
        return connection_->Execute(commandText, options);
    }
    void BeginTrans() override { connection_->BeginTrans(); }
    void CommitTrans() override { connection_->CommitTrans(); }
    void RollbackTrans() override { connection_->RollbackTrans(); }

  protected:
    explicit ForwardingConnection(ObjectRef<Connection> connection) : connection_(std::move(connection)) {}

    const ObjectRef<Connection> connection_;
};

}  // namespace pxtarvo::devhost
