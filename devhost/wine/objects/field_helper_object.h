#pragma once

// The field helper through automation.

#include <memory>

#include "devhost/library/field_helper.h"
#include "devhost/wine/objects/counted_object.h"
#include "platform/platform.h"

namespace pxtarvo::devhost {

class FieldHelperObject : public CountedObject {
  public:
    /// `platform` must outlive the object.
    FieldHelperObject(std::unique_ptr<DevFieldHelper> helper, Platform& platform);
    ~FieldHelperObject() override;

  protected:
    windows::OwnedVariant member(int place, const windows::CallArguments& arguments) override;

  private:
    class Stand;

    std::unique_ptr<DevFieldHelper> helper_;
    std::unique_ptr<Stand> stand_;
};

}  // namespace pxtarvo::devhost
