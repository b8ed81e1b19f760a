#pragma once

// Values of automation (BSTR and VARIANT) with their owners, and their conversion to and from the system's
// own values. Texts are UTF-16 there and UTF-8 here.

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/values/variant.h"
#include "platform/windows/automation/com_headers.h"
#include "platform/windows/automation/reference.h"

namespace pxtarvo::windows {

/// A null text is "".
std::string utf8Of(BSTR text);

class Bstr {
  public:
    Bstr() = default;
    /// Raises 7 when memory is short.
    explicit Bstr(std::string_view utf8);
    Bstr(const Bstr&) = delete;
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    BSTR get() const noexcept { return text_; }
    std::string utf8() const { return utf8Of(text_); }
    /// Where a function leaves a text for the caller, or replaces the one held.
    BSTR* address() noexcept { return &text_; }
    BSTR detach() noexcept { return std::exchange(text_, nullptr); }

  private:
    BSTR text_ = nullptr;
};

/// A VARIANT and what it owns. By-reference ones refer to something that must outlive them.
class OwnedVariant {
  public:
    OwnedVariant() noexcept { VariantInit(&value_); }
    /// The same value in the same type: 16-bit integers stay VT_I2, and so on.
    OwnedVariant(const Variant& value);
    template <class Number>
    requires std::is_arithmetic_v<Number>
    explicit OwnedVariant(Number value) : OwnedVariant(Variant(value)) {}
    explicit OwnedVariant(std::string_view text);
    explicit OwnedVariant(const std::string& text) : OwnedVariant(std::string_view(text)) {}
    explicit OwnedVariant(Reference<IDispatch> object) noexcept;  ///< empty is Nothing
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant(OwnedVariant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    OwnedVariant& operator=(OwnedVariant other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~OwnedVariant() { clear(); }

    /// An optional argument that is left out.
    static OwnedVariant missing() noexcept;

    // Arguments by reference, each of exactly the type that the called member declares. The member may
    // replace what they refer to.
    static OwnedVariant reference(Bstr& text) noexcept { return {VT_BSTR, text.address()}; }
    static OwnedVariant reference(std::int32_t& value) noexcept { return {VT_I4, &value}; }
    static OwnedVariant reference(std::int16_t& value) noexcept { return {VT_I2, &value}; }
    static OwnedVariant reference(double& value) noexcept { return {VT_R8, &value}; }
    static OwnedVariant reference(OwnedVariant& value) noexcept { return {VT_VARIANT, &value.value_}; }
    static OwnedVariant reference(Reference<IDispatch>& object) noexcept {
        return {VT_DISPATCH, object.address()};
    }

    const VARIANT& raw() const noexcept { return value_; }
    /// Where a function leaves a value for the caller.
    VARIANT* put() noexcept {
        clear();
        return &value_;
    }
    /// Gives the value away.
    VARIANT detach() noexcept {
        const VARIANT value = value_;
        VariantInit(&value_);
        return value;
    }

  private:
    OwnedVariant(VARTYPE type, void* target) noexcept : OwnedVariant() {
        V_VT(&value_) = static_cast<VARTYPE>(type | VT_BYREF);
        V_BYREF(&value_) = target;
    }
    void clear() noexcept {
        // Numbers and references own nothing.
        const VARTYPE type = V_VT(&value_);
        const bool owns = !(type & VT_BYREF) && (type == VT_BSTR || type >= VT_DISPATCH);
        if (owns) {
            VariantClear(&value_);
        } else {
            VariantInit(&value_);
        }
    }

    VARIANT value_;
};

/// The value, read through references; integers of other sizes become Integer, Long or Decimal. 91 for
/// Nothing, 13 for an object or an array.
Variant toVariant(const VARIANT& value);

/// The object, read through references; empty for Nothing. 13 for anything that is no automation object.
Reference<IDispatch> toObject(const VARIANT& value);

/// What `value` refers to, through any number of references.
const VARIANT& referredTo(const VARIANT& value, VARIANT& storage) noexcept;

}  // namespace pxtarvo::windows
