#include "plugin/com/registration.h"

#include <iterator>
#include <string>
#include <string_view>

#include "platform/windows/system/wide_text.h"
#include "platform/windows/windows_platform.h"
#include "plugin/com/type_library.h"

namespace pxtarvo::com {

namespace {

using windows::Reference;

std::wstring braced(const GUID& identifier) {
    wchar_t text[39];
    return StringFromGUID2(identifier, text, static_cast<int>(std::size(text))) > 0 ? text : L"";
}

std::wstring classKey() {
    return L"CLSID\\" + braced(CLSID_PXTarvor);
}

LSTATUS writeValue(const std::wstring& key, const wchar_t* name, std::wstring_view data) {
    const std::wstring text(data);
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, text.c_str(),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

HRESULT writeClass(const std::wstring& modulePath) {
    struct Value {
        std::wstring key;
        const wchar_t* name;
        std::wstring data;
    };
    const std::wstring classRoot = classKey();
    const Value values[] = {
        {className, nullptr, className},
        {className + std::wstring(L"\\CLSID"), nullptr, braced(CLSID_PXTarvor)},
        {classRoot, nullptr, className},
        {classRoot + L"\\InprocServer32", nullptr, modulePath},
        {classRoot + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {classRoot + L"\\ProgID", nullptr, className},
        {classRoot + L"\\Programmable", nullptr, L""},
        {classRoot + L"\\TypeLib", nullptr, braced(LIBID_PXTarvo)},
        {classRoot + L"\\Version", nullptr,
         std::to_wstring(libraryMajor) + L"." + std::to_wstring(libraryMinor)},
    };
    for (const Value& value : values) {
        const LSTATUS written = writeValue(value.key, value.name, value.data);
        if (written != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(written));
    }
    return S_OK;
}

HRESULT removeKey(const std::wstring& key) {
    const LSTATUS removed = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    if (removed == ERROR_SUCCESS || removed == ERROR_FILE_NOT_FOUND) return S_OK;
    return HRESULT_FROM_WIN32(static_cast<DWORD>(removed));
}

HRESULT removeTypeLibrary() {
    const SYSKIND system = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
    const HRESULT removed =
        UnRegisterTypeLib(LIBID_PXTarvo, libraryMajor, libraryMinor, LOCALE_NEUTRAL, system);
    // What Windows says where it was not registered, and what Wine does.
    return removed == TYPE_E_REGISTRYACCESS || removed == E_INVALIDARG ? S_OK : removed;
}

}  // namespace

HRESULT registerServer() {
    const windows::WideText path(windows::modulePath());
    Reference<ITypeLib> library;
    HRESULT result = loadTypeLibrary(library);
    if (SUCCEEDED(result)) result = writeClass(path.c_str());
    if (SUCCEEDED(result)) {
        std::wstring file = path.c_str();
        result = RegisterTypeLib(library.get(), file.data(), nullptr);
    }
    if (FAILED(result)) unregisterServer();
    return result;
}

HRESULT unregisterServer() {
    const HRESULT library = removeTypeLibrary();
    const HRESULT programmatic = removeKey(className);
    const HRESULT byIdentifier = removeKey(classKey());
    for (const HRESULT result : {library, programmatic, byIdentifier}) {
        if (FAILED(result)) return result;
    }
    return S_OK;
}

}  // namespace pxtarvo::com
