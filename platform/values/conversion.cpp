#include "platform/values/conversion.h"

#include <array>
#include <limits>
#include <type_traits>

#include "platform/values/date_text.h"
#include "platform/values/decimal_number.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

constexpr int doubleDigits = 15;
constexpr int singleDigits = 7;

constexpr std::string_view trueText = "Verdadero";
constexpr std::string_view falseText = "Falso";

struct BooleanName {
    std::string_view text;
    bool value;
};

/// The user's words, and those that every locale understands.
constexpr auto booleanNames = std::to_array<BooleanName>({{trueText, true},
                                                          {falseText, false},
                                                          {"True", true},
                                                          {"False", false},
                                                          {"#TRUE#", true},
                                                          {"#FALSE#", false}});

/// Raises what converting Null or an error value to anything raises; other types return.
void refuseUnconvertible(const Variant& value) {
    if (value.isNull()) throw RuntimeError(ErrorNumber::InvalidUseOfNull);
    if (value.type() == Variant::Type::Error) throw RuntimeError(ErrorNumber::TypeMismatch);
}

NumberReading requireNumber(std::string_view text, const Locale& locale) {
    const std::optional<NumberReading> reading = readNumber(text, locale);
    if (!reading) throw RuntimeError(ErrorNumber::TypeMismatch);
    return *reading;
}

std::int32_t fitted(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    const double rounded = roundHalfEven(value);
    if (!(rounded >= Limits::min() && rounded <= Limits::max())) throw RuntimeError(ErrorNumber::Overflow);
    return static_cast<std::int32_t>(rounded);
}

struct DoubleOf {
    const Locale& locale;
    double operator()(Empty) const { return 0; }
    double operator()(Null) const { throw RuntimeError(ErrorNumber::InvalidUseOfNull); }
    double operator()(ErrorValue) const { throw RuntimeError(ErrorNumber::TypeMismatch); }
    double operator()(bool value) const { return value ? -1 : 0; }
    double operator()(Currency value) const { return static_cast<double>(value.tenThousandths) / 10000; }
    double operator()(const Decimal& value) const { return toDouble(value); }
    double operator()(Date value) const { return value.days; }
    double operator()(const std::string& value) const { return requireNumber(value, locale).value; }
    template <class Number>
    requires std::is_arithmetic_v<Number>
    double operator()(Number value) const { return value; }
};

struct TextOf {
    const Locale& locale;
    std::string operator()(Empty) const { return {}; }
    std::string operator()(Null) const { throw RuntimeError(ErrorNumber::InvalidUseOfNull); }
    std::string operator()(ErrorValue) const { throw RuntimeError(ErrorNumber::TypeMismatch); }
    std::string operator()(bool value) const { return std::string(value ? trueText : falseText); }
    std::string operator()(float value) const { return numberText(value, singleDigits, locale); }
    std::string operator()(double value) const { return numberText(value, doubleDigits, locale); }
    std::string operator()(Currency value) const {
        return decimalText(decimalOf(value), locale.decimalSeparator);
    }
    std::string operator()(const Decimal& value) const { return decimalText(value, locale.decimalSeparator); }
    std::string operator()(Date value) const { return dateText(value); }
    std::string operator()(const std::string& value) const { return value; }
    template <class Whole>
    requires std::is_integral_v<Whole> std::string operator()(Whole value) const {
        return std::to_string(value);
    }
};

/// The value as a Decimal when that is exact.
std::optional<Decimal> exactly(const Variant& value) {
    if (const auto* decimal = value.get<Decimal>()) return *decimal;
    if (const auto* currency = value.get<Currency>()) return decimalOf(*currency);
    if (const auto* whole = value.get<std::int32_t>()) return decimalOf(std::int64_t{*whole});
    if (const auto* whole = value.get<std::int16_t>()) return decimalOf(std::int64_t{*whole});
    if (const auto* whole = value.get<std::uint8_t>()) return decimalOf(std::int64_t{*whole});
    return std::nullopt;
}

bool isFixedPoint(const Variant& value) {
    return value.get<Currency>() || value.get<Decimal>();
}

/// A text beside a date is read as a date.
double daysOf(const Variant& value, const Locale& locale) {
    return value.isText() ? toDate(value, locale).days : toDouble(value, locale);
}

}  // namespace

double toDouble(const Variant& value, const Locale& locale) {
    return value.visit(DoubleOf{locale});
}

std::int32_t toLong(const Variant& value, const Locale& locale) {
    if (const auto* exact = value.get<std::int32_t>()) return *exact;
    const auto* text = value.get<std::string>();
    if (!text) return fitted(toDouble(value, locale));
    const NumberReading number = requireNumber(*text, locale);
    if (!number.bits || *number.bits > std::numeric_limits<std::uint32_t>::max()) return fitted(number.value);
    const auto whole = static_cast<std::int32_t>(static_cast<std::uint32_t>(*number.bits));
    return fitted(number.negative ? -1.0 * whole : whole);
}

bool toBoolean(const Variant& value, const Locale& locale) {
    if (const auto* exact = value.get<bool>()) return *exact;
    if (const auto* text = value.get<std::string>()) {
        for (const BooleanName& name : booleanNames) {
            if (equalIgnoringAsciiCase(name.text, *text)) return name.value;
        }
    }
    return toDouble(value, locale) != 0;
}

std::string toText(const Variant& value, const Locale& locale) {
    return value.visit(TextOf{locale});
}

std::string joinedText(const Variant& value, const Locale& locale) {
    return value.isNull() ? std::string() : toText(value, locale);
}

Variant trimmed(const Variant& value, const Locale& locale) {
    if (value.isNull()) return Null{};
    if (const auto* text = value.get<std::string>()) return trimBlanks(*text);
    return toText(value, locale);
}

bool isDate(const Variant& value, const Locale& locale) {
    if (const auto* text = value.get<std::string>()) return readDate(*text, locale).has_value();
    return value.get<Date>() != nullptr;
}

Date toDate(const Variant& value, const Locale& locale) {
    if (const auto* date = value.get<Date>()) return *date;
    if (const auto* text = value.get<std::string>()) {
        if (const std::optional<Date> date = readDate(*text, locale)) return *date;
        throw RuntimeError(ErrorNumber::TypeMismatch);
    }
    const Date date{toDouble(value, locale)};
    toCalendar(date);  // refuses what lies outside the calendar
    return date;
}

std::string dayMonthYear(const Variant& value, const Locale& locale) {
    return dayMonthYear(toCalendar(toDate(value, locale)));
}

std::optional<std::partial_ordering> compare(const Variant& a, const Variant& b, const Locale& locale) {
    if (a.isNull() || b.isNull()) return std::nullopt;
    refuseUnconvertible(a);
    refuseUnconvertible(b);
    const auto* textA = a.get<std::string>();
    const auto* textB = b.get<std::string>();
    if (textA && textB) return *textA <=> *textB;
    if (textA && b.isEmpty()) return *textA <=> std::string();
    if (a.isEmpty() && textB) return std::string() <=> *textB;
    if (a.get<Date>() || b.get<Date>()) return daysOf(a, locale) <=> daysOf(b, locale);
    if (isFixedPoint(a) || isFixedPoint(b)) {
        const auto exactA = exactly(a);
        const auto exactB = exactly(b);
        if (exactA && exactB) return compare(*exactA, *exactB);
    }
    return toDouble(a, locale) <=> toDouble(b, locale);
}

}  // namespace pxtarvo
