#pragma once

#include "platform/windows/automation/counted.h"
#include "platform/windows/automation/reference.h"

namespace pxtarvo::windows {

/// Creates the objects of one class; none as part of another object.
class ObjectFactory : public Counted<IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  protected:
    /// A new object; what this raises reaches who asked for it.
    virtual Reference<IDispatch> make() = 0;
};

}  // namespace pxtarvo::windows
