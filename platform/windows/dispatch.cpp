#include "platform/windows/dispatch.h"

#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>

#include "platform/conversion.h"
#include "platform/locale.h"
#include "platform/runtime_error.h"
#include "platform/text.h"
#include "platform/windows/automation_errors.h"

namespace pxtarvo::windows {

namespace {

constexpr std::int32_t objectRequired = 424;

HRESULT ask(IDispatch& object, std::u16string_view member, LCID locale, DISPID& identifier) {
    const std::u16string name(member);
    auto* names = const_cast<OLECHAR*>(reinterpret_cast<const OLECHAR*>(name.c_str()));
    return object.GetIDsOfNames(IID_NULL, &names, 1, locale, &identifier);
}

/// What identifiers depend on: the type's identifier and the language of the names.
struct TypeKey {
    GUID type;
    LCID locale;

    friend bool operator<(const TypeKey& a, const TypeKey& b) noexcept {
        const int order = std::memcmp(&a.type, &b.type, sizeof(GUID));
        return order != 0 ? order < 0 : a.locale < b.locale;
    }
};

/// Whether the type's own description gives the member this identifier. Objects that make up members as they
/// go describe none of them, or all in one type.
bool describes(ITypeInfo& description, std::u16string_view member, DISPID identifier) {
    const std::u16string name(member);
    auto* names = const_cast<OLECHAR*>(reinterpret_cast<const OLECHAR*>(name.c_str()));
    MEMBERID described = MEMBERID_NIL;
    return SUCCEEDED(description.GetIDsOfNames(&names, 1, &described)) && described == identifier;
}

Reference<ITypeInfo> describedType(IDispatch& object, LCID locale) {
    Reference<ITypeInfo> description;
    UINT count = 0;
    if (FAILED(object.GetTypeInfoCount(&count)) || count == 0) return description;
    if (FAILED(object.GetTypeInfo(0, locale, description.put()))) description.detach();
    return description;
}

}  // namespace

class MemberIdentifiers {
  public:
    /// The ones of `object`'s type; for an object that does not describe its type the ones that remember
    /// nothing.
    static MemberIdentifiers& of(IDispatch& object, LCID locale) {
        static MemberIdentifiers undescribed(false);
        const Reference<ITypeInfo> description = describedType(object, locale);
        TYPEATTR* attributes = nullptr;
        if (!description || FAILED(description->GetTypeAttr(&attributes))) return undescribed;
        const TypeKey key{attributes->guid, locale};
        description->ReleaseTypeAttr(attributes);
        if (IsEqualGUID(key.type, GUID_NULL) || IsEqualGUID(key.type, IID_IDispatch)) return undescribed;

        static std::mutex lock;
        static std::map<TypeKey, std::unique_ptr<MemberIdentifiers>> types;
        const std::lock_guard guard(lock);
        std::unique_ptr<MemberIdentifiers>& known = types[key];
        if (!known) known = std::make_unique<MemberIdentifiers>(true);
        return *known;
    }

    explicit MemberIdentifiers(bool remembers) : remembers_(remembers) {}

    DISPID identifier(IDispatch& object, std::u16string_view member, LCID locale) {
        if (remembers_) {
            const std::lock_guard guard(lock_);
            const auto known = identifiers_.find(member);
            if (known != identifiers_.end()) return known->second;
        }
        DISPID identifier = DISPID_UNKNOWN;
        check(ask(object, member, locale, identifier));
        if (remembers_) {
            const Reference<ITypeInfo> description = describedType(object, locale);
            if (description && describes(*description, member, identifier)) {
                const std::lock_guard guard(lock_);
                identifiers_.emplace(member, identifier);
            }
        }
        return identifier;
    }

  private:
    bool remembers_;
    std::mutex lock_;
    std::map<std::u16string, DISPID, std::less<>> identifiers_;
};

Dispatch Dispatch::create(std::string_view programmaticIdentifier, LCID locale) {
    const std::u16string name = toUtf16(programmaticIdentifier);
    CLSID type;
    check(CLSIDFromProgID(reinterpret_cast<const OLECHAR*>(name.c_str()), &type));
    Reference<IDispatch> object;
    const HRESULT created = CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                             IID_IDispatch, object.putVoid());
    if (FAILED(created)) {
        object.detach();
        throw errorOf(created);
    }
    return Dispatch(std::move(object), locale);
}

DISPID Dispatch::identifier(std::u16string_view member) const {
    if (!object_) throw RuntimeError(ErrorNumber::ObjectNotSet);
    if (!identifiers_) identifiers_ = &MemberIdentifiers::of(*object_, locale_);
    return identifiers_->identifier(*object_, member, locale_);
}

OwnedVariant Dispatch::invoke(std::u16string_view member, WORD kind,
                              std::span<const VARIANTARG> arguments) const {
    const DISPID id = identifier(member);
    DISPID assigned = DISPID_PROPERTYPUT;
    const bool assignment = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{};
    parameters.rgvarg = const_cast<VARIANTARG*>(arguments.data());
    parameters.cArgs = static_cast<UINT>(arguments.size());
    if (assignment) {
        parameters.rgdispidNamedArgs = &assigned;
        parameters.cNamedArgs = 1;
    }
    OwnedVariant answer;
    EXCEPINFO record{};
    UINT wrongArgument = 0;
    const HRESULT result = object_->Invoke(id, IID_NULL, locale_, kind, &parameters,
                                           assignment ? nullptr : answer.put(), &record, &wrongArgument);
    if (FAILED(result)) throw errorOf(result, record);
    return answer;
}

void Dispatch::put(std::u16string_view member, const OwnedVariant& value) const {
    invoke(member, DISPATCH_PROPERTYPUT, packed(value));
}

void Dispatch::putReference(std::u16string_view member, Reference<IDispatch> value) const {
    const OwnedVariant object(std::move(value));
    invoke(member, DISPATCH_PROPERTYPUTREF, packed(object));
}

std::int32_t Dispatch::number(std::u16string_view member) const {
    return toLong(value(member), spanishLocale());
}

std::string Dispatch::text(std::u16string_view member) const {
    const OwnedVariant answer = get(member);
    if (V_VT(&answer.raw()) != VT_BSTR) throw RuntimeError(ErrorNumber::TypeMismatch);
    return utf8Of(V_BSTR(&answer.raw()));
}

bool Dispatch::truth(std::u16string_view member) const {
    return toBoolean(value(member), spanishLocale());
}

Dispatch Dispatch::asObject(const OwnedVariant& answer) const {
    const VARTYPE type = V_VT(&answer.raw());
    if (type != VT_DISPATCH && type != VT_UNKNOWN) {
        throw RuntimeError(objectRequired, "Se requiere un objeto");
    }
    return Dispatch(toObject(answer.raw()), locale_);
}

}  // namespace pxtarvo::windows
