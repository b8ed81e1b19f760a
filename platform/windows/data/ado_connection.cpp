#include "platform/windows/data/ado_connection.h"

#include <utility>

#include "platform/windows/data/ado_recordset.h"

namespace pxtarvo::windows {

Reference<IDispatch> AdoConnection::objectOf(const ObjectRef<Connection>& connection) {
    if (!connection) return {};
    const auto* ours = dynamic_cast<const AdoConnection*>(connection.shared().get());
    if (!ours) throw RuntimeError(ErrorNumber::TypeMismatch);
    return ours->connection_.object();
}

void AdoConnection::Open(std::string_view userId, std::string_view password, std::int32_t options) {
    // An empty text leaves the connection string as it was set.
    connection_.run(u"Open", OwnedVariant(std::string_view()), OwnedVariant(userId), OwnedVariant(password),
                    OwnedVariant(options));
}

ObjectRef<Recordset> AdoConnection::Execute(std::string_view commandText, std::int32_t options) {
    Dispatch result = connection_.object(u"Execute", OwnedVariant(commandText), OwnedVariant::missing(),
                                         OwnedVariant(options));
    return result ? makeObject<AdoRecordset>(std::move(result)) : ObjectRef<AdoRecordset>();
}

}  // namespace pxtarvo::windows
