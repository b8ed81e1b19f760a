#include "plugin/com/class_factory.h"

#include "plugin/com/pxtarvor_object.h"

namespace pxtarvo::com {

windows::Reference<IDispatch> ClassFactory::make() {
    return windows::makeDispatch<PXTarvorObject>();
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
