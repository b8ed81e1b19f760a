#include "platform/windows/automation/automation_values.h"

#include <cstring>
#include <limits>

#include "platform/values/decimal_number.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::windows {

namespace {

static_assert(sizeof(OLECHAR) == sizeof(char16_t));
static_assert(sizeof(LONG) == sizeof(std::int32_t) && sizeof(SHORT) == sizeof(std::int16_t));

bool isAscii(std::string_view text) {
    for (const char byte : text) {
        if (static_cast<unsigned char>(byte) >= 0x80) return false;
    }
    return true;
}

BSTR allocate(std::string_view utf8) {
    BSTR text = nullptr;
    if (isAscii(utf8)) {
        text = SysAllocStringLen(nullptr, static_cast<UINT>(utf8.size()));
        for (std::size_t i = 0; text && i < utf8.size(); ++i) text[i] = static_cast<OLECHAR>(utf8[i]);
    } else {
        const std::u16string units = toUtf16(utf8);
        text = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(units.data()),
                                 static_cast<UINT>(units.size()));
    }
    if (!text) throw RuntimeError(ErrorNumber::OutOfMemory);
    return text;
}

/// Fills in a VARIANT; what it throws leaves the VARIANT empty.
struct Filler {
    VARIANT& to;

    void operator()(Empty) const {}
    void operator()(Null) const { V_VT(&to) = VT_NULL; }
    void operator()(bool value) const { fill(VT_BOOL, V_BOOL(&to), value ? VARIANT_TRUE : VARIANT_FALSE); }
    void operator()(std::uint8_t value) const { fill(VT_UI1, V_UI1(&to), value); }
    void operator()(std::int16_t value) const { fill(VT_I2, V_I2(&to), value); }
    void operator()(std::int32_t value) const { fill(VT_I4, V_I4(&to), value); }
    void operator()(float value) const { fill(VT_R4, V_R4(&to), value); }
    void operator()(double value) const { fill(VT_R8, V_R8(&to), value); }
    void operator()(Currency value) const { fill(VT_CY, V_CY(&to).int64, value.tenThousandths); }
    void operator()(const Decimal& value) const {
        // The DECIMAL lies over the whole VARIANT, its reserved word over the type.
        DECIMAL& decimal = V_DECIMAL(&to);
        decimal.scale = value.scale;
        decimal.sign = value.negative ? DECIMAL_NEG : 0;
        decimal.Hi32 = value.high;
        decimal.Lo64 = value.low;
        V_VT(&to) = VT_DECIMAL;
    }
    void operator()(Date value) const { fill(VT_DATE, V_DATE(&to), value.days); }
    void operator()(std::string_view value) const { fill(VT_BSTR, V_BSTR(&to), allocate(value)); }
    void operator()(ErrorValue value) const { fill(VT_ERROR, V_ERROR(&to), value.code); }

  private:
    template <class Place, class Value>
    void fill(VARTYPE type, Place& place, Value value) const {
        place = value;
        V_VT(&to) = type;
    }
};

/// The bytes of a value of this type, of those that are read through a reference; 0 for any other.
std::size_t sizeOf(VARTYPE type) {
    const auto isOneOf = [type](auto... types) { return ((type == types) || ...); };
    if (isOneOf(VT_I1, VT_UI1)) return 1;
    if (isOneOf(VT_I2, VT_UI2, VT_BOOL)) return 2;
    if (isOneOf(VT_I4, VT_UI4, VT_INT, VT_UINT, VT_R4, VT_ERROR)) return 4;
    if (isOneOf(VT_I8, VT_UI8, VT_R8, VT_DATE, VT_CY)) return 8;
    return isOneOf(VT_BSTR, VT_DISPATCH, VT_UNKNOWN) ? sizeof(void*) : 0;
}

Variant wholeNumber(std::uint64_t value) {
    if (value <= std::numeric_limits<std::int32_t>::max()) return static_cast<std::int32_t>(value);
    return Decimal{.low = value};
}

Variant signedNumber(std::int64_t value) {
    const auto narrow = static_cast<std::int32_t>(value);
    return narrow == value ? Variant(narrow) : Variant(decimalOf(value));
}

}  // namespace

Bstr::Bstr(std::string_view utf8) : text_(allocate(utf8)) {}

std::string utf8Of(BSTR text) {
    const std::size_t length = SysStringLen(text);
    std::string bytes(length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
        const auto unit = static_cast<char16_t>(text[i]);
        if (unit >= 0x80) return toUtf8({reinterpret_cast<const char16_t*>(text), length});
        bytes[i] = static_cast<char>(unit);
    }
    return bytes;
}

OwnedVariant::OwnedVariant(const Variant& value) : OwnedVariant() {
    value.visit(Filler{value_});
}
OwnedVariant::OwnedVariant(std::string_view text) : OwnedVariant() {
    Filler{value_}(text);
}
OwnedVariant::OwnedVariant(Reference<IDispatch> object) noexcept : OwnedVariant() {
    V_VT(&value_) = VT_DISPATCH;
    V_DISPATCH(&value_) = object.detach();
}

OwnedVariant OwnedVariant::missing() noexcept {
    OwnedVariant value;
    Filler{value.value_}(ErrorValue{DISP_E_PARAMNOTFOUND});
    return value;
}

const VARIANT& referredTo(const VARIANT& value, VARIANT& storage) noexcept {
    const VARIANT* target = &value;
    while (V_VT(target) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(target)) target = V_VARIANTREF(target);
    if (!(V_VT(target) & VT_BYREF)) return *target;
    VariantInit(&storage);
    const VARTYPE type = V_VT(target) & ~VT_BYREF;
    const void* place = V_BYREF(target);
    if (!place) return storage;
    if (type == VT_DECIMAL) {
        V_DECIMAL(&storage) = *static_cast<const DECIMAL*>(place);
    } else if (const std::size_t size = sizeOf(type)) {
        std::memcpy(&V_I8(&storage), place, size);
    } else {
        return *target;
    }
    V_VT(&storage) = type;
    return storage;
}

Variant toVariant(const VARIANT& value) {
    VARIANT storage;
    const VARIANT& direct = referredTo(value, storage);
    switch (V_VT(&direct)) {
        case VT_EMPTY:
            return {};
        case VT_NULL:
            return Null{};
        case VT_BOOL:
            return V_BOOL(&direct) != VARIANT_FALSE;
        case VT_UI1:
            return std::uint8_t{V_UI1(&direct)};
        case VT_I1:
            return static_cast<std::int16_t>(static_cast<signed char>(V_I1(&direct)));
        case VT_I2:
            return std::int16_t{V_I2(&direct)};
        case VT_I4:
        case VT_INT:
            return static_cast<std::int32_t>(V_I4(&direct));
        case VT_UI2:
            return std::int32_t{V_UI2(&direct)};
        case VT_UI4:
        case VT_UINT:
            return wholeNumber(V_UI4(&direct));
        case VT_I8:
            return signedNumber(V_I8(&direct));
        case VT_UI8:
            return wholeNumber(V_UI8(&direct));
        case VT_R4:
            return V_R4(&direct);
        case VT_R8:
            return V_R8(&direct);
        case VT_CY:
            return Currency{V_CY(&direct).int64};
        case VT_DECIMAL: {
            const DECIMAL& decimal = V_DECIMAL(&direct);
            return Decimal{.low = decimal.Lo64,
                           .high = static_cast<std::uint32_t>(decimal.Hi32),
                           .scale = decimal.scale,
                           .negative = (decimal.sign & DECIMAL_NEG) != 0};
        }
        case VT_DATE:
            return Date{V_DATE(&direct)};
        case VT_BSTR:
            return utf8Of(V_BSTR(&direct));
        case VT_ERROR:
            return ErrorValue{static_cast<std::int32_t>(V_ERROR(&direct))};
        case VT_DISPATCH:
        case VT_UNKNOWN:
            if (!V_UNKNOWN(&direct)) throw RuntimeError(ErrorNumber::ObjectNotSet);
            [[fallthrough]];
        default:
            throw RuntimeError(ErrorNumber::TypeMismatch);
    }
}

Reference<IDispatch> toObject(const VARIANT& value) {
    VARIANT storage;
    const VARIANT& direct = referredTo(value, storage);
    if (V_VT(&direct) == VT_DISPATCH) return Reference<IDispatch>::share(V_DISPATCH(&direct));
    if (V_VT(&direct) != VT_UNKNOWN) throw RuntimeError(ErrorNumber::TypeMismatch);
    const auto unknown = Reference<IUnknown>::share(V_UNKNOWN(&direct));
    Reference<IDispatch> object = unknown.query<IDispatch>(IID_IDispatch);
    if (unknown && !object) throw RuntimeError(ErrorNumber::TypeMismatch);
    return object;
}

}  // namespace pxtarvo::windows
