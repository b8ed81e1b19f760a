#include "check/registered_class.h"

#include <iterator>

#include "check/asked_object.h"

namespace pxtarvo::check {

namespace {

/// Whether a class has a server for programs of a width of their own.
bool hasServer(const CLSID& type, REGSAM view) {
    wchar_t text[39];
    StringFromGUID2(type, text, static_cast<int>(std::size(text)));
    const std::wstring key = L"CLSID\\" + std::wstring(text) + L"\\InprocServer32";
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_QUERY_VALUE | view, &opened) != ERROR_SUCCESS)
        return false;
    RegCloseKey(opened);
    return true;
}

}  // namespace

std::string whyNotCreated(const std::string& name, const RuntimeError& error) {
    const windows::Bstr wide(name);
    CLSID type;
    if (FAILED(CLSIDFromProgID(wide.get(), &type))) return "no está registrado";
    constexpr bool is64 = sizeof(void*) == 8;
    const bool here = hasServer(type, is64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY);
    const bool there = hasServer(type, is64 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY);
    if (!here && there) {
        return std::string("está registrado solo para ") + (is64 ? "32" : "64") +
               " bits y este programa es de " + (is64 ? "64" : "32");
    }
    return "no se puede crear, " + described(error);
}

windows::Dispatch created(const std::string& name, Findings& findings) {
    try {
        return windows::Dispatch::create(name);
    } catch (const RuntimeError& error) {
        findings.fault(name, whyNotCreated(name, error));
        return {};
    }
}

}  // namespace pxtarvo::check
