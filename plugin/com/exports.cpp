// The four entry points of an in-process COM server, and its end.

#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/automation/reference.h"
#include "plugin/com/class_factory.h"
#include "plugin/com/registration.h"
#include "plugin/com/server_life.h"

namespace __gnu_cxx {
void __freeres();  // of the C++ library's run time, which no header of its declares
}

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

/// Gives back what the C++ library keeps for exceptions when memory is short, and itself frees only where it
/// is asked to. The process's end does without. Calls for threads stay on: thread-local data relies on them.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_DETACH && !processEnds) __gnu_cxx::__freeres();
    return TRUE;
}
