#include "plugin/com/registration.h"

#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/windows/system/wide_text.h"
#include "platform/windows/windows_platform.h"

namespace pxtarvo::com {

namespace {

using windows::Reference;

std::wstring braced(const GUID& identifier) {
    wchar_t text[39];
    return StringFromGUID2(identifier, text, static_cast<int>(std::size(text))) > 0 ? text : L"";
}

std::wstring libraryVersion() {
    return std::to_wstring(libraryMajor) + L"." + std::to_wstring(libraryMinor);
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
        {classRoot + L"\\Version", nullptr, libraryVersion()},
    };
    for (const Value& value : values) {
        const LSTATUS written = writeValue(value.key, value.name, value.data);
        if (written != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(written));
    }
    return S_OK;
}

/// The default value of a key in this program's view of the registry or another; none without the key.
std::optional<std::wstring> valueOf(const std::wstring& name, REGSAM view = 0) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, name.c_str(), 0, KEY_QUERY_VALUE | view, &key) != ERROR_SUCCESS)
        return {};
    const std::unique_ptr<std::remove_pointer_t<HKEY>, decltype(&RegCloseKey)> opened(key, &RegCloseKey);
    DWORD size = 0;
    RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &size);
    std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS)
        return L"";
    return text.c_str();
}

/// Whether a key that holds a module's path is nobody else's.
bool ours(const std::optional<std::wstring>& path, const std::wstring& modulePath) {
    return !path || path->empty() ||
           CompareStringOrdinal(path->c_str(), -1, modulePath.c_str(), -1, TRUE) == CSTR_EQUAL;
}

HRESULT removeKey(const std::wstring& key) {
    const LSTATUS removed = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    if (removed == ERROR_SUCCESS || removed == ERROR_FILE_NOT_FOUND) return S_OK;
    return HRESULT_FROM_WIN32(static_cast<DWORD>(removed));
}

/// The class in this program's view, unless another copy is registered there by now; then the name, which all
/// views share, unless the DLL of the other width is registered.
HRESULT removeClass(const std::wstring& modulePath) {
    const std::wstring server = classKey() + L"\\InprocServer32";
    if (!ours(valueOf(server), modulePath)) return S_OK;
    const HRESULT removed = removeKey(classKey());
    const bool elsewhere = valueOf(server, KEY_WOW64_32KEY) || valueOf(server, KEY_WOW64_64KEY);
    const bool named = valueOf(className + std::wstring(L"\\CLSID")) == braced(CLSID_PXTarvor);
    return FAILED(removed) || elsewhere || !named ? removed : removeKey(className);
}

/// The place of this DLL's width, unless another copy stands there by now; with the last one everything that
/// describes the interface.
HRESULT removeTypeLibrary(const std::wstring& modulePath) {
    constexpr bool wide = sizeof(void*) == 8;
    const std::wstring places = L"TypeLib\\" + braced(LIBID_PXTarvo) + L"\\" + libraryVersion() + L"\\0\\";
    const std::wstring place = places + (wide ? L"win64" : L"win32");
    if (!ours(valueOf(place), modulePath)) return S_OK;
    if (valueOf(places + (wide ? L"win32" : L"win64"))) return removeKey(place);
    const HRESULT removed = UnRegisterTypeLib(LIBID_PXTarvo, libraryMajor, libraryMinor, LOCALE_NEUTRAL,
                                              wide ? SYS_WIN64 : SYS_WIN32);
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
    const std::wstring path = windows::WideText(windows::modulePath()).c_str();
    const HRESULT library = removeTypeLibrary(path);
    const HRESULT classes = removeClass(path);
    return FAILED(library) ? library : classes;
}

HRESULT loadTypeLibrary(Reference<ITypeLib>& library) {
    return LoadTypeLibEx(windows::WideText(windows::modulePath()).c_str(), REGKIND_NONE, library.put());
}

}  // namespace pxtarvo::com
