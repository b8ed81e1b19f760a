#pragma once

// Late-bound calls of automation objects by member name. Every member raises RuntimeError with the called
// object's number and description, 91 where there is no object, 438 where it has no such member.

#include <array>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/values/variant.h"
#include "platform/windows/automation/automation_values.h"
#include "platform/windows/automation/com_headers.h"
#include "platform/windows/automation/reference.h"

namespace pxtarvo::windows {

/// Identifiers of the members of one type of object, kept for the process.
class MemberIdentifiers;

class Dispatch {
  public:
    Dispatch() = default;
    explicit Dispatch(Reference<IDispatch> object, LCID locale = LOCALE_USER_DEFAULT)
        : object_(std::move(object)), locale_(locale) {}

    /// A new object by its programmatic identifier; 429 where there is none such.
    static Dispatch create(std::string_view programmaticIdentifier, LCID locale = LOCALE_USER_DEFAULT);

    explicit operator bool() const noexcept { return static_cast<bool>(object_); }
    const Reference<IDispatch>& object() const noexcept { return object_; }

    /// Whether the object has a member of this name.
    bool has(std::u16string_view member) const;

    /// A property's value, with arguments where it takes some.
    template <std::same_as<OwnedVariant>... Arguments>
    OwnedVariant get(std::u16string_view member, const Arguments&... arguments) const {
        return invoke(member, DISPATCH_PROPERTYGET, packed(arguments...));
    }
    /// A method's result. Members that servers declare now as a method, now as a property are asked for as
    /// both.
    template <std::same_as<OwnedVariant>... Arguments>
    OwnedVariant call(std::u16string_view member, const Arguments&... arguments) const {
        return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, packed(arguments...));
    }
    /// A method whose result nobody uses.
    template <std::same_as<OwnedVariant>... Arguments>
    void run(std::u16string_view member, const Arguments&... arguments) const {
        invoke(member, DISPATCH_METHOD, packed(arguments...));
    }
    void put(std::u16string_view member, const OwnedVariant& value) const {
        invoke(member, DISPATCH_PROPERTYPUT, packed(value));
    }
    /// An object assignment; an empty reference assigns Nothing.
    void putReference(std::u16string_view member, Reference<IDispatch> value) const;

    /// The object that a property or method answers with; empty for Nothing. 424 where the answer is no
    /// object.
    template <std::same_as<OwnedVariant>... Arguments>
    Dispatch object(std::u16string_view member, const Arguments&... arguments) const {
        return asObject(call(member, arguments...));
    }
    Variant value(std::u16string_view member) const { return toVariant(get(member).raw()); }
    /// A property that is a whole number of any width; 13 where it is none, 6 beyond 32 bits.
    std::int32_t number(std::u16string_view member) const;
    /// A property that is a text; 13 where it is none.
    std::string text(std::u16string_view member) const;
    /// A property that is a Boolean; any number but 0 is true.
    bool truth(std::u16string_view member) const;

  private:
    /// Last argument first, as automation takes them; they stay the caller's.
    template <class... Arguments>
    static std::array<VARIANTARG, sizeof...(Arguments)> packed(const Arguments&... arguments) {
        std::array<VARIANTARG, sizeof...(Arguments)> list;
        [[maybe_unused]] std::size_t place = sizeof...(Arguments);
        ((list[--place] = arguments.raw()), ...);
        return list;
    }

    OwnedVariant invoke(std::u16string_view member, WORD kind, std::span<const VARIANTARG> arguments) const;
    Dispatch asObject(const OwnedVariant& answer) const;
    DISPID identifier(std::u16string_view member) const;

    Reference<IDispatch> object_;
    LCID locale_ = LOCALE_USER_DEFAULT;
    mutable MemberIdentifiers* identifiers_ = nullptr;  ///< looked up at the first call
};

}  // namespace pxtarvo::windows
