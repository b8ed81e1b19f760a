#include "devhost/wine/ado/stand_in_connection.h"

#include "devhost/dealer/host_file.h"
#include "platform/portable/access/jet_connection.h"
#include "platform/portable/access/stream_recordset.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::int32_t adUseServer = 2;
constexpr std::int32_t adUseClient = 3;
constexpr std::int32_t adErrInvalidArgument = 3001;

constexpr std::string_view dealerProvider = "Provider=PXTarvo.Dealer;Data Source=";

}  // namespace

StandInConnection::StandInConnection(portable::DrivePaths paths, std::shared_ptr<const Clock> clock)
    : paths_(std::move(paths)), clock_(std::move(clock)), cursorLocation_(adUseServer) {}

Connection& StandInConnection::opened() const {
    if (!open_) throw RuntimeError(ErrorNumber::ObjectClosed);
    return *open_;
}

void StandInConnection::CursorLocation(std::int32_t location) {
    if (location != adUseServer && location != adUseClient) {
        throw RuntimeError(adErrInvalidArgument, "CursorLocation");
    }
    if (open_) throw RuntimeError(ErrorNumber::ObjectOpen);
    cursorLocation_ = location;
}

void StandInConnection::Close() {
    opened();
    open_.reset();
}

void StandInConnection::ConnectionString(std::string_view value) {
    if (open_) throw RuntimeError(ErrorNumber::ObjectOpen);
    connectionString_ = value;
}

void StandInConnection::Open(std::string_view userId, std::string_view password, std::int32_t options) {
    if (open_) throw RuntimeError(ErrorNumber::ObjectOpen);
    const std::string_view text = connectionString_;
    if (text.starts_with(dealerProvider)) {
        const auto file = openHostFile(paths_.resolve(text.substr(dealerProvider.size())), clock_);
        open_ = file;
        if (cursorLocation_ == adUseServer) open_ = makeObject<ServerCursors>(file);
        return;
    }
    const ObjectRef<portable::JetConnection> list = makeObject<portable::JetConnection>(paths_);
    list->ConnectionString(text);
    list->Open(userId, password, options);
    open_ = list;
}

ObjectRef<Recordset> StandInConnection::Execute(std::string_view commandText, std::int32_t options) {
    // The dealer's file reads no dates otherwise.
    if (opened().State() == adStateOpen && equalIgnoringAsciiCase(commandText, "SET DATEFORMAT dmy")) {
        return makeObject<portable::StreamRecordset>();
    }
    return opened().Execute(commandText, options);
}

std::unique_ptr<portable::RowStream> StandInConnection::openRows(std::string_view statement) {
    auto* const list = dynamic_cast<portable::RowSource*>(&opened());
    if (!list) throw RuntimeError(ErrorNumber::TypeMismatch);
    return list->openRows(statement);
}

}  // namespace pxtarvo::devhost
