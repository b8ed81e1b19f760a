#include "plugin/com/class_factory.h"

#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/automation/reference.h"
#include "plugin/com/pxtarvor_object.h"

namespace pxtarvo::com {

HRESULT ClassFactory::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
}

ULONG ClassFactory::AddRef() {
    return ++references_;
}

ULONG ClassFactory::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;  // counted objects own themselves
    return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
        return windows::makeCounted<PXTarvorObject>()->QueryInterface(iid, object);
    } catch (...) {
        return windows::raisedResult(IID_IClassFactory);
    }
}

HRESULT ClassFactory::LockServer(BOOL lock) {
    if (lock) {
        lockServer();
    } else {
        unlockServer();
    }
    return S_OK;
}

}  // namespace pxtarvo::com
