#pragma once

// The host's context object and what hangs on it, through automation, over the portable objects.

#include "devhost/wine/objects/counted_object.h"
#include "host/host_database.h"

namespace pxtarvo::devhost {

/// A context object as the plug-in gets it: HostDatabase of the host's library.
class HostDatabaseObject : public CountedObject {
  public:
    explicit HostDatabaseObject(ObjectRef<HostDatabase> database);

  protected:
    windows::OwnedVariant member(int place, const windows::CallArguments& arguments) override;

  private:
    windows::OwnedVariant fieldList();

    ObjectRef<HostDatabase> database_;
    /// One object for one list, made when it is first asked for.
    ObjectRef<HostFieldList> fields_;
    windows::Reference<IDispatch> fieldsObject_;
};

}  // namespace pxtarvo::devhost
