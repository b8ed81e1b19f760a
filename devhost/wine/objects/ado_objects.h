#pragma once

// ADO's connection and recordset through automation, over the platform's interfaces.

#include <utility>
#include <vector>

#include "devhost/wine/objects/counted_object.h"
#include "platform/database.h"

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

class ConnectionObject : public CountedObject {
  public:
    explicit ConnectionObject(ObjectRef<Connection> connection);

    /// Also answers to the host's own identifier, by which connectionOf() knows it.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    const ObjectRef<Connection>& connection() const noexcept { return connection_; }

  protected:
    windows::OwnedVariant member(int place, const windows::CallArguments& arguments) override;

  private:
    OwnConnection& own() const;

    ObjectRef<Connection> connection_;
};

/// The connection behind an automation object of this host; empty for Nothing, 13 for any other object.
ObjectRef<Connection> connectionOf(const windows::Reference<IDispatch>& object);

class RecordsetObject : public CountedObject {
  public:
    explicit RecordsetObject(ObjectRef<Recordset> recordset);
    ~RecordsetObject() override;

  protected:
    windows::OwnedVariant member(int place, const windows::CallArguments& arguments) override;

  private:
    ObjectRef<Recordset> recordset_;
};

}  // namespace pxtarvo::devhost
