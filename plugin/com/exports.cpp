// The four entry points of an in-process COM server. There is no DllMain: nothing has to happen when the DLL
// or a thread comes or goes, and calls for threads stay on, which thread-local data relies on.

#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/automation/reference.h"
#include "plugin/com/class_factory.h"
#include "plugin/com/registration.h"
#include "plugin/com/server_life.h"

namespace com = pxtarvo::com;
namespace windows = pxtarvo::windows;

STDAPI DllGetClassObject(REFCLSID type, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualCLSID(type, CLSID_PXTarvor)) return CLASS_E_CLASSNOTAVAILABLE;
    try {
        return windows::makeCounted<com::ClassFactory>()->QueryInterface(iid, object);
    } catch (...) {
        return windows::raisedResult(IID_IClassFactory);
    }
}

STDAPI DllCanUnloadNow() {
    return com::canUnload() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    try {
        return com::registerServer();
    } catch (...) {
        return windows::raisedResult(IID_NULL);
    }
}

STDAPI DllUnregisterServer() {
    try {
        return com::unregisterServer();
    } catch (...) {
        return windows::raisedResult(IID_NULL);
    }
}
