#include "platform/windows/automation/automation_object.h"

#include <algorithm>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"
#include "platform/windows/automation/automation_errors.h"

namespace pxtarvo::windows {

namespace {

constexpr std::int32_t argumentNotOptional = 449;

/// Member names are ASCII; automation ignores their case.
bool sameName(std::u16string_view name, const OLECHAR* asked) {
    const auto lower = [](unsigned unit) { return unit >= 'A' && unit <= 'Z' ? unit + ('a' - 'A') : unit; };
    for (const char16_t unit : name) {
        if (lower(unit) != lower(static_cast<unsigned>(*asked++))) return false;
    }
    return *asked == 0;
}

}  // namespace

VARIANTARG& CallArguments::raw(std::size_t position) const {
    if (position >= count()) {
        throw RuntimeError(argumentNotOptional, std::string(errorDescription(argumentNotOptional)));
    }
    return parameters_.rgvarg[count() - 1 - position];
}

std::string CallArguments::text(std::size_t position) const {
    const Variant argument = value(position);
    if (const auto* text = argument.get<std::string>()) return *text;
    throw RuntimeError(ErrorNumber::TypeMismatch);
}

std::int32_t CallArguments::number(std::size_t position) const {
    const Variant argument = value(position);
    if (const auto* number = argument.get<std::int32_t>()) return *number;
    if (const auto* number = argument.get<std::int16_t>()) return *number;
    throw RuntimeError(ErrorNumber::TypeMismatch);
}

void CallArguments::giveBack(std::size_t position, const Variant& value) const {
    VARIANTARG& argument = raw(position);
    if (!(V_VT(&argument) & VT_BYREF)) return;
    OwnedVariant given(value);
    const VARTYPE type = V_VT(&given.raw());
    if (V_VT(&argument) == (VT_BYREF | VT_VARIANT)) {
        VariantClear(V_VARIANTREF(&argument));
        *V_VARIANTREF(&argument) = given.detach();
    } else if (V_VT(&argument) != (VT_BYREF | type)) {
        throw RuntimeError(ErrorNumber::TypeMismatch);
    } else if (type == VT_BSTR) {
        SysFreeString(std::exchange(*V_BSTRREF(&argument), V_BSTR(&given.raw())));
        given.detach();
    } else {
        *V_I2REF(&argument) = V_I2(&given.raw());
    }
}

HRESULT identifiersOf(const MemberNames& members, LPOLESTR* names, UINT count, DISPID* identifiers) {
    if (!names || !identifiers || count == 0) return E_INVALIDARG;
    std::fill_n(identifiers, count, DISPID_UNKNOWN);
    const auto found = std::ranges::find_if(
        members.names, [&](std::u16string_view name) { return sameName(name, names[0]); });
    if (found == members.names.end()) return DISP_E_UNKNOWNNAME;
    identifiers[0] = static_cast<DISPID>(found - members.names.begin() + 1);
    return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;  // arguments have no names here
}

HRESULT AutomationObject::QueryInterface(REFIID iid, void** object) {
    return query(iid, object, {{IID_IDispatch, static_cast<IDispatch*>(this)}});
}

HRESULT AutomationObject::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** description) {
    if (description) *description = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT AutomationObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* identifiers) {
    return identifiersOf(members_, names, count, identifiers);
}

HRESULT AutomationObject::Invoke(DISPID identifier, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                 VARIANT* answer, EXCEPINFO* record, UINT*) {
    if (!parameters) return E_INVALIDARG;
    if (identifier == DISPID_VALUE && members_.defaultMember >= 0) identifier = members_.defaultMember + 1;
    if (identifier < 1 || static_cast<std::size_t>(identifier) > members_.names.size()) {
        return DISP_E_MEMBERNOTFOUND;
    }
    // A member may let go of the last count that a caller holds.
    const auto alive = Reference<AutomationObject>::share(this);
    try {
        OwnedVariant result = member(identifier - 1, CallArguments(*parameters, kind));
        if (answer) *answer = result.detach();
        return S_OK;
    } catch (...) {
        return raisedRecord(record);
    }
}

}  // namespace pxtarvo::windows
