// A small host: creates the plug-in by its name and asks it for its members.
//   use_plugin [--hold FILE]   with FILE: makes FILE, and keeps the object until FILE is gone

#include <windows.h>

#include <ole2.h>

#include <cstdio>
#include <string>

namespace {

/// The exit status tells the step that failed.
enum Outcome { done, noClass, noObject, noMember, contextRefused, noFile };

Outcome use(const wchar_t* held) {
    CLSID type{};
    if (FAILED(CLSIDFromProgID(L"PXTarvo.PXTarvor", &type))) return noClass;
    IDispatch* object = nullptr;
    if (FAILED(CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(&object))))
        return noObject;
    DISPID members[2]{};
    wchar_t names[2][20] = {L"MyBd", L"jImportacionTarifas"};
    for (int i = 0; i < 2; ++i) {
        wchar_t* name = names[i];
        if (FAILED(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &members[i])))
            return noMember;
    }
    VARIANT nothing{};
    nothing.vt = VT_DISPATCH;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&nothing, &put, 1, 1};
    if (FAILED(object->Invoke(members[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUTREF, &parameters,
                              nullptr, nullptr, nullptr)))
        return contextRefused;
    if (held) {
        const HANDLE file =
            CreateFileW(held, GENERIC_WRITE, FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS, 0, nullptr);
        if (file == INVALID_HANDLE_VALUE) return noFile;
        CloseHandle(file);
        while (GetFileAttributesW(held) != INVALID_FILE_ATTRIBUTES) Sleep(50);
    }
    object->Release();
    return done;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    CoInitialize(nullptr);
    const Outcome outcome =
        use(count == 3 && arguments[1] == std::wstring(L"--hold") ? arguments[2] : nullptr);
    CoUninitialize();
    std::puts(outcome == done ? "done" : "failed");
    return outcome;
}
