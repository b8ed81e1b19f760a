#pragma once

#include "platform/windows/automation/object_factory.h"
#include "plugin/com/server_life.h"

namespace pxtarvo::com {

/// Creates instances of the public class.
class ClassFactory final : public windows::ObjectFactory {
  public:
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

  private:
    windows::Reference<IDispatch> make() override;

    ServerLock lock_;
};

}  // namespace pxtarvo::com
