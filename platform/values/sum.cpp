#include "platform/values/sum.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/values/clock.h"
#include "platform/values/conversion.h"
#include "platform/values/decimal_number.h"
#include "platform/values/rounding.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo {

namespace {

using Type = Variant::Type;

/// The type in which a value takes part in a sum of numbers.
Type addendType(const Variant& value) {
    if (value.type() == Type::Boolean) return Type::Integer;
    return value.isText() ? Type::Double : value.type();
}

/// The wider of two number types, in the order of Variant::Type; a Single cannot take a Long.
Type widerType(Type a, Type b) {
    const Type wider = std::max(a, b);
    const Type narrower = std::min(a, b);
    return wider == Type::Single && narrower == Type::Long ? Type::Double : wider;
}

/// In `type`, or the next wider one that holds it.
Variant wholeSum(std::int64_t total, Type type) {
    if (type == Type::Byte && std::in_range<std::uint8_t>(total)) return static_cast<std::uint8_t>(total);
    if (type != Type::Long && std::in_range<std::int16_t>(total)) return static_cast<std::int16_t>(total);
    if (std::in_range<std::int32_t>(total)) return static_cast<std::int32_t>(total);
    return static_cast<double>(total);
}

Variant finite(double total) {
    if (!std::isfinite(total)) throw RuntimeError(ErrorNumber::Overflow);
    return total;
}

Currency toCurrency(const Variant& value, const Locale& locale) {
    if (const auto* currency = value.get<Currency>()) return *currency;
    const double tenThousandths = roundHalfEven(toDouble(value, locale) * 10000);
    constexpr double limit = 9223372036854775808.0;
    if (!(tenThousandths >= -limit && tenThousandths < limit)) throw RuntimeError(ErrorNumber::Overflow);
    return {static_cast<std::int64_t>(tenThousandths)};
}

Variant currencySum(Currency a, Currency b) {
    const auto total = static_cast<std::int64_t>(static_cast<std::uint64_t>(a.tenThousandths) +
                                                 static_cast<std::uint64_t>(b.tenThousandths));
    const bool sameSign = (a.tenThousandths < 0) == (b.tenThousandths < 0);
    if (sameSign && (total < 0) != (a.tenThousandths < 0)) throw RuntimeError(ErrorNumber::Overflow);
    return Currency{total};
}

Decimal toDecimal(const Variant& value, const Locale& locale) {
    if (const auto* decimal = value.get<Decimal>()) return *decimal;
    if (const auto* currency = value.get<Currency>()) return decimalOf(*currency);
    return decimalOf(toDouble(value, locale));
}

/// A Date while the calendar has it.
Variant dateSum(double total) {
    try {
        toCalendar({total});
    } catch (const RuntimeError&) {
        return finite(total);
    }
    return Date{total};
}

}  // namespace

Variant sum(const Variant& a, const Variant& b, const Locale& locale) {
    if (a.isNull() || b.isNull()) return Null{};
    if (a.isEmpty() && b.isEmpty()) return std::int16_t{0};
    if (a.isText() && b.isText()) return *a.get<std::string>() + *b.get<std::string>();
    const Type typeA = addendType(a);
    const Type typeB = addendType(b);
    if (typeA == Type::Error || typeB == Type::Error) throw RuntimeError(ErrorNumber::TypeMismatch);
    if (a.isEmpty() && b.isText()) return b;
    if (a.isText() && b.isEmpty()) return a;

    const Type type = widerType(typeA, typeB);
    switch (type) {
        case Type::Date:
            return dateSum(toDouble(a, locale) + toDouble(b, locale));
        case Type::Decimal:
            return sum(toDecimal(a, locale), toDecimal(b, locale));
        case Type::Currency:
            return currencySum(toCurrency(a, locale), toCurrency(b, locale));
        case Type::Single: {
            const double total = toDouble(a, locale) + toDouble(b, locale);
            if (std::fabs(total) > std::numeric_limits<float>::max()) return finite(total);
            return static_cast<float>(total);
        }
        case Type::Double:
            return finite(toDouble(a, locale) + toDouble(b, locale));
        default:
            return wholeSum(std::int64_t{toLong(a, locale)} + toLong(b, locale), type);
    }
}

}  // namespace pxtarvo
