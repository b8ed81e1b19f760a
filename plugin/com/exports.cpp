// The four entry points of an in-process COM server, and its end.

#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/automation/object_factory.h"
#include "plugin/com/pxtarvor_object.h"
#include "plugin/com/registration.h"
#include "plugin/com/server_life.h"

namespace __gnu_cxx {
void __freeres();  // of the C++ library's run time, which no header of its declares
}

namespace com = pxtarvo::com;
namespace windows = pxtarvo::windows;

namespace {

/// Creates instances of the public class. Neither it nor a lock that a client holds lets the DLL go.
class ClassFactory final : public windows::ObjectFactory {
  public:
    ClassFactory() noexcept { ++com::serverLocks; }
    ~ClassFactory() override { --com::serverLocks; }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        com::serverLocks += lock ? 1 : -1;
        return S_OK;
    }

  private:
    windows::Reference<IDispatch> make() override { return windows::makeDispatch<com::PXTarvorObject>(); }
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID type, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualCLSID(type, CLSID_PXTarvor)) return CLASS_E_CLASSNOTAVAILABLE;
    try {
        return windows::makeCounted<ClassFactory>()->QueryInterface(iid, object);
    } catch (...) {
        return windows::raisedResult(IID_IClassFactory);
    }
}

STDAPI DllCanUnloadNow() {
    return !com::serverKept && com::serverLocks == 0 ? S_OK : S_FALSE;
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
