#include "platform/windows/automation/automation_values.h"

#include <limits>

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
    void operator()(bool value) const {
        V_VT(&to) = VT_BOOL;
        V_BOOL(&to) = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    void operator()(std::uint8_t value) const {
        V_VT(&to) = VT_UI1;
        V_UI1(&to) = value;
    }
    void operator()(std::int16_t value) const {
        V_VT(&to) = VT_I2;
        V_I2(&to) = value;
    }
    void operator()(std::int32_t value) const {
        V_VT(&to) = VT_I4;
        V_I4(&to) = value;
    }
    void operator()(float value) const {
        V_VT(&to) = VT_R4;
        V_R4(&to) = value;
    }
    void operator()(double value) const {
        V_VT(&to) = VT_R8;
        V_R8(&to) = value;
    }
    void operator()(Currency value) const {
        V_VT(&to) = VT_CY;
        V_CY(&to).int64 = value.tenThousandths;
    }
    void operator()(const Decimal& value) const {
        // The DECIMAL lies over the whole VARIANT, its reserved word over the type.
        DECIMAL& decimal = V_DECIMAL(&to);
        decimal.scale = value.scale;
        decimal.sign = value.negative ? DECIMAL_NEG : 0;
        decimal.Hi32 = value.high;
        decimal.Lo64 = value.low;
        V_VT(&to) = VT_DECIMAL;
    }
    void operator()(Date value) const {
        V_VT(&to) = VT_DATE;
        V_DATE(&to) = value.days;
    }
    void operator()(const std::string& value) const {
        V_BSTR(&to) = allocate(value);
        V_VT(&to) = VT_BSTR;
    }
    void operator()(ErrorValue value) const {
        V_VT(&to) = VT_ERROR;
        V_ERROR(&to) = value.code;
    }
};

template <class T>
OwnedVariant byReference(VARTYPE type, T* target) noexcept {
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = static_cast<VARTYPE>(type | VT_BYREF);
    V_BYREF(&value) = target;
    OwnedVariant owned;
    *owned.put() = value;
    return owned;
}

Variant wholeNumber(std::uint64_t magnitude, bool negative) {
    constexpr std::uint64_t highest = std::numeric_limits<std::int32_t>::max();
    if (magnitude <= highest + (negative ? 1 : 0)) {
        const auto whole = static_cast<std::int64_t>(magnitude);
        return static_cast<std::int32_t>(negative ? -whole : whole);
    }
    return Decimal{.low = magnitude, .high = 0, .scale = 0, .negative = negative};
}

Variant signedNumber(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? wholeNumber(0 - bits, true) : wholeNumber(bits, false);
}

}  // namespace

Bstr::Bstr(std::string_view utf8) : text_(allocate(utf8)) {}

std::string Bstr::utf8() const {
    return utf8Of(text_);
}

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
    V_BSTR(&value_) = allocate(text);
    V_VT(&value_) = VT_BSTR;
}
OwnedVariant::OwnedVariant(std::int32_t value) noexcept : OwnedVariant() {
    Filler{value_}(value);
}
OwnedVariant::OwnedVariant(std::int16_t value) noexcept : OwnedVariant() {
    Filler{value_}(value);
}
OwnedVariant::OwnedVariant(double value) noexcept : OwnedVariant() {
    Filler{value_}(value);
}
OwnedVariant::OwnedVariant(bool value) noexcept : OwnedVariant() {
    Filler{value_}(value);
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

OwnedVariant OwnedVariant::reference(Bstr& text) noexcept {
    return byReference(VT_BSTR, text.address());
}
OwnedVariant OwnedVariant::reference(std::int32_t& value) noexcept {
    return byReference(VT_I4, &value);
}
OwnedVariant OwnedVariant::reference(std::int16_t& value) noexcept {
    return byReference(VT_I2, &value);
}
OwnedVariant OwnedVariant::reference(double& value) noexcept {
    return byReference(VT_R8, &value);
}
OwnedVariant OwnedVariant::reference(OwnedVariant& value) noexcept {
    return byReference(VT_VARIANT, &value.value_);
}
OwnedVariant OwnedVariant::reference(Reference<IDispatch>& object) noexcept {
    return byReference(VT_DISPATCH, object.address());
}

const VARIANT& referredTo(const VARIANT& value, VARIANT& storage) noexcept {
    const VARIANT* target = &value;
    while (V_VT(target) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(target)) target = V_VARIANTREF(target);
    if (!(V_VT(target) & VT_BYREF)) return *target;
    VariantInit(&storage);
    const VARTYPE type = V_VT(target) & ~VT_BYREF;
    const void* place = V_BYREF(target);
    if (!place) return storage;
    switch (type) {
        case VT_DECIMAL:
            V_DECIMAL(&storage) = *static_cast<const DECIMAL*>(place);
            break;
        case VT_I1:
        case VT_UI1:
            V_UI1(&storage) = *static_cast<const BYTE*>(place);
            break;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            V_I2(&storage) = *static_cast<const SHORT*>(place);
            break;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_DATE:
        case VT_CY:
            V_I8(&storage) = *static_cast<const LONGLONG*>(place);
            break;
        case VT_BSTR:
        case VT_DISPATCH:
        case VT_UNKNOWN:
            V_BYREF(&storage) = *static_cast<void* const*>(place);
            break;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
        case VT_ERROR:
            V_I4(&storage) = *static_cast<const LONG*>(place);
            break;
        default:
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
            return wholeNumber(V_UI4(&direct), false);
        case VT_I8:
            return signedNumber(V_I8(&direct));
        case VT_UI8:
            return wholeNumber(V_UI8(&direct), false);
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
