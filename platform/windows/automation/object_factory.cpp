#include "platform/windows/automation/object_factory.h"

#include "platform/windows/automation/automation_errors.h"

namespace pxtarvo::windows {

HRESULT ObjectFactory::QueryInterface(REFIID iid, void** object) {
    return query(iid, object, {{IID_IClassFactory, static_cast<IClassFactory*>(this)}});
}

HRESULT ObjectFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
        return make()->QueryInterface(iid, object);
    } catch (...) {
        return raisedResult(IID_IClassFactory);
    }
}

}  // namespace pxtarvo::windows
