#include "devhost/record/recording_connection.h"

#include <utility>

#include "platform/portable/access/stream_recordset.h"

namespace pxtarvo::devhost {

namespace {

/// Opening a recordset reads its first row too: only then is the outcome of a query known.
class FirstRowWatch : public portable::RowStream {
  public:
    FirstRowWatch(std::unique_ptr<RowStream> rows, std::string statement, std::shared_ptr<Recorder> recorder)
        : rows_(std::move(rows)), statement_(std::move(statement)), recorder_(std::move(recorder)) {}

    std::int32_t columnCount() const override { return rows_->columnCount(); }
    const std::string& columnName(std::int32_t position) const override {
        return rows_->columnName(position);
    }
    Variant value(std::int32_t position) const override { return rows_->value(position); }
    void rewind() override { rows_->rewind(); }

    bool next() override {
        if (!recorder_) return rows_->next();
        const std::shared_ptr<Recorder> recorder = std::move(recorder_);
        recorder_.reset();
        return recorded([&] { return rows_->next(); },
                        [&](const RuntimeError* error) { recorder->sourceQuery(statement_, error); });
    }

  private:
    std::unique_ptr<RowStream> rows_;
    std::string statement_;
    std::shared_ptr<Recorder> recorder_;  ///< until the first row
};

}  // namespace

RecordingConnection::RecordingConnection(ObjectRef<Connection> connection, std::shared_ptr<Recorder> recorder,
                                         std::shared_ptr<ProtocolChecks> checks, bool oneUse)
    : ForwardingConnection(std::move(connection)),
      recorder_(std::move(recorder)),
      checks_(std::move(checks)),
      oneUse_(oneUse) {}

void RecordingConnection::use(std::string_view member) {
    if (std::exchange(used_, true) && oneUse_ && checks_) checks_->connectionKept(member);
}

ObjectRef<Recordset> RecordingConnection::Execute(std::string_view commandText, std::int32_t options) {
    use("Execute");
    if (checks_) checks_->options("Execute", options);
    if (!recorder_) return connection_->Execute(commandText, options);
    return recorded([&] { return connection_->Execute(commandText, options); },
                    [&](const RuntimeError* error) { recorder_->execute(commandText, error); });
}

void RecordingConnection::transaction(TransactionCall call, std::string_view member,
                                      void (Connection::*action)()) {
    use(member);
    if (!recorder_) return (*connection_.*action)();
    recorded([&] { (*connection_.*action)(); },
             [&](const RuntimeError* error) { recorder_->transaction(call, error); });
}

RecordingSource::RecordingSource(ObjectRef<Connection> connection, std::shared_ptr<Recorder> recorder,
                                 std::shared_ptr<ProtocolChecks> checks)
    : ForwardingConnection(std::move(connection)),
      recorder_(std::move(recorder)),
      checks_(std::move(checks)) {}

void RecordingSource::ConnectionString(std::string_view value) {
    connectionString_ = value;
    recorded([&] { connection_->ConnectionString(value); },
             [&](const RuntimeError* error) {
                 if (error && recorder_) recorder_->sourceOpen(connectionString_, error);
             });
}

void RecordingSource::Open(std::string_view userId, std::string_view password, std::int32_t options) {
    if (checks_) checks_->options("Open", options);
    if (!recorder_) return connection_->Open(userId, password, options);
    recorded([&] { connection_->Open(userId, password, options); },
             [&](const RuntimeError* error) { recorder_->sourceOpen(connectionString_, error); });
}

std::unique_ptr<portable::RowStream> RecordingSource::openRows(std::string_view statement) {
    auto* source = dynamic_cast<portable::RowSource*>(connection_.shared().get());
    if (!source) throw RuntimeError(portable::adErrInvalidConnection, "El origen no da filas.");
    if (!recorder_) return source->openRows(statement);
    auto rows = recorded([&] { return source->openRows(statement); },
                         [&](const RuntimeError* error) {
                             if (error) recorder_->sourceQuery(statement, error);
                         });
    return std::make_unique<FirstRowWatch>(std::move(rows), std::string(statement), recorder_);
}

}  // namespace pxtarvo::devhost
