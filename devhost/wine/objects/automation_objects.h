#pragma once

// The host's objects and those of the components that it stands in for, through automation, over the
// portable objects.

#include <memory>

#include "devhost/library/field_helper.h"
#include "host/host_database.h"
#include "platform/database.h"
#include "platform/platform.h"
#include "platform/spreadsheet.h"
#include "platform/windows/automation/reference.h"

namespace pxtarvo::devhost {

/// What ADO's connection has for whoever makes one, and the plug-in never asks of it. The object of a
/// connection that is not one of these answers 438 there.
class OwnConnection {
  public:
    virtual ~OwnConnection() = default;
    /// ADO's CursorLocationEnum, of the results to come: 2 the server's, 3 the client's.
    virtual std::int32_t CursorLocation() const = 0;
    virtual void CursorLocation(std::int32_t location) = 0;
    virtual void Close() = 0;
};

windows::Reference<IDispatch> connectionObject(ObjectRef<Connection> connection);
/// The connection behind an automation object of this host; empty for Nothing, 13 for any other object.
ObjectRef<Connection> connectionOf(const windows::Reference<IDispatch>& object);
windows::Reference<IDispatch> recordsetObject(ObjectRef<Recordset> recordset);
/// The spreadsheet application's.
windows::Reference<IDispatch> spreadsheetObject(ObjectRef<SpreadsheetApplication> application);

/// A context object as the plug-in gets it: HostDatabase of the host's library.
windows::Reference<IDispatch> contextObject(ObjectRef<HostDatabase> database);
/// `platform` must outlive the object.
windows::Reference<IDispatch> fieldHelperObject(std::unique_ptr<DevFieldHelper> helper, Platform& platform);

}  // namespace pxtarvo::devhost
