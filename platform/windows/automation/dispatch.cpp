#include "platform/windows/automation/dispatch.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "platform/values/conversion.h"
#include "platform/values/locale.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"
#include "platform/windows/automation/automation_errors.h"

namespace pxtarvo::windows {

namespace {

constexpr std::int32_t objectRequired = 424;

HRESULT ask(IDispatch& object, std::u16string_view member, LCID locale, DISPID& identifier) {
    const std::u16string name(member);
    auto* names = const_cast<OLECHAR*>(reinterpret_cast<const OLECHAR*>(name.c_str()));
    return object.GetIDsOfNames(IID_NULL, &names, 1, locale, &identifier);
}

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
    if (FAILED(object.GetTypeInfo(0, locale, description.put()))) description.detach();
    return description;
}

/// A list that only grows: it is read without a lock, as its entries stay where they are.
template <class Entry, std::size_t size>
class GrowingList {
  public:
    template <class Same>
    Entry* find(const Same& same) const {
        const std::size_t count = count_.load(std::memory_order_acquire);
        for (std::size_t at = 0; at < count; ++at) {
            if (same(*entries_[at])) return entries_[at].get();
        }
        return nullptr;
    }
    /// What stands there already, or a new entry; nullptr when the list is full.
    template <class Same, class... Arguments>
    Entry* add(const Same& same, Arguments&&... arguments) {
        const std::lock_guard guard(lock_);
        if (Entry* known = find(same)) return known;
        const std::size_t count = count_.load(std::memory_order_relaxed);
        if (count == size) return nullptr;
        entries_[count] = std::make_unique<Entry>(std::forward<Arguments>(arguments)...);
        count_.store(count + 1, std::memory_order_release);
        return entries_[count].get();
    }

  private:
    std::mutex lock_;
    std::atomic<std::size_t> count_ = 0;
    std::array<std::unique_ptr<Entry>, size> entries_;
};

}  // namespace

/// What identifiers depend on is the type's identifier and the language of the names.
class MemberIdentifiers {
  public:
    /// The ones of `object`'s type; for an object that does not describe its type the ones that remember
    /// nothing.
    static MemberIdentifiers& of(IDispatch& object, LCID locale) {
        static MemberIdentifiers undescribed(GUID_NULL, 0);
        const Reference<ITypeInfo> description = describedType(object, locale);
        TYPEATTR* attributes = nullptr;
        if (!description || FAILED(description->GetTypeAttr(&attributes))) return undescribed;
        const GUID type = attributes->guid;
        description->ReleaseTypeAttr(attributes);
        if (IsEqualGUID(type, GUID_NULL) || IsEqualGUID(type, IID_IDispatch)) return undescribed;

        static GrowingList<MemberIdentifiers, 64> types;
        const auto same = [&](const MemberIdentifiers& known) {
            return IsEqualGUID(known.type_, type) && known.locale_ == locale;
        };
        MemberIdentifiers* known = types.find(same);
        if (!known) known = types.add(same, type, locale);
        return known ? *known : undescribed;
    }

    MemberIdentifiers(const GUID& type, LCID locale) : type_(type), locale_(locale) {}

    DISPID identifier(IDispatch& object, std::u16string_view member, LCID locale) {
        const auto same = [&](const Member& known) { return known.name == member; };
        if (const Member* known = members_.find(same)) return known->identifier;
        DISPID identifier = DISPID_UNKNOWN;
        check(ask(object, member, locale, identifier));
        if (IsEqualGUID(type_, GUID_NULL)) return identifier;
        const Reference<ITypeInfo> description = describedType(object, locale);
        if (description && describes(*description, member, identifier)) {
            members_.add(same, Member{std::u16string(member), identifier});
        }
        return identifier;
    }

  private:
    struct Member {
        std::u16string name;
        DISPID identifier;
    };
    GUID type_;  ///< none: nothing is remembered
    LCID locale_;
    GrowingList<Member, 64> members_;
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

bool Dispatch::has(std::u16string_view member) const {
    try {
        identifier(member);
        return true;
    } catch (const RuntimeError& error) {
        if (!error.is(ErrorNumber::MemberNotSupported)) throw;
        return false;
    }
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
