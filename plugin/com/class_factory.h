#pragma once

#include <atomic>

#include "plugin/com/interfaces.h"
#include "plugin/com/server_life.h"

namespace pxtarvo::com {

/// Creates instances of the public class; none as part of another object.
class ClassFactory final : public IClassFactory {
  public:
    ClassFactory() = default;
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

  private:
    ~ClassFactory() = default;

    ServerLock lock_;
    std::atomic<ULONG> references_{1};
};

}  // namespace pxtarvo::com
