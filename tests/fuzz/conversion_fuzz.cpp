// Any text as a number and as a date, and any eight bytes as a value: what is read and written is read again
// as the same.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/values/conversion.h"
#include "platform/values/date_text.h"
#include "platform/values/decimal_number.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"
#include "platform/values/runtime_error.h"

namespace {

using namespace pxtarvo;

void require(bool holds) {
    if (!holds) std::abort();
}

/// The result, or nothing where it raised one of a conversion's own errors.
template <class Conversion>
auto attempt(const Conversion& conversion) -> std::optional<decltype(conversion())> {
    try {
        return conversion();
    } catch (const RuntimeError& error) {
        require(error.is(ErrorNumber::Overflow) || error.is(ErrorNumber::TypeMismatch));
        return std::nullopt;
    }
}

void writeAndRead(const Variant& value) {
    const Locale& locale = spanishLocale();
    const auto text = attempt([&] { return toText(value, locale); });
    attempt([&] { return toLong(value, locale); });
    attempt([&] { return toDate(value, locale); });
    attempt([&] { return compare(value, Variant("12,5"), locale); });
    if (!text || value.isText()) return;
    if (value.get<Date>() != nullptr) {
        require(isDate(*text, locale));
        require(toText(toDate(*text, locale), locale) == *text);
        return;
    }
    // The fifteen digits of a double stay; those of the largest ones are beyond a double.
    const auto number = attempt([&] { return toDouble(*text, locale); });
    if (!number) return;
    const std::string digits = toText(*number, locale);
    if (const auto again = attempt([&] { return toDouble(digits, locale); })) {
        require(toText(*again, locale) == digits);
    }
}

void useNumber(double number) {
    const auto plain = attempt([&] { return plainNumber(number); });
    require(plain.has_value() == std::isfinite(number));
    if (!plain) return;
    require(std::strtod(plain->c_str(), nullptr) == number);
    require(std::abs(roundHalfEven(number) - number) <= 0.5);
    attempt([&] { return roundHalfAway(number, 2); });
    if (const auto decimal = attempt([&] { return decimalOf(number); })) {
        require(compare(*decimal, *decimal) == 0);
        attempt([&] { return sum(*decimal, decimalOf(Currency{1})); });
        writeAndRead(*decimal);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    writeAndRead(text);
    if (const auto number = attempt([&] { return toDouble(text, spanishLocale()); })) {
        useNumber(*number);
        writeAndRead(*number);
    }
    if (isDate(text, spanishLocale())) {
        if (const auto date = attempt([&] { return toDate(text, spanishLocale()); })) writeAndRead(*date);
    }
    double number = 0;
    std::int64_t bits = 0;
    if (size < sizeof number) return 0;
    std::memcpy(&number, data, sizeof number);
    std::memcpy(&bits, data, sizeof bits);
    useNumber(number);
    writeAndRead(number);
    writeAndRead(static_cast<float>(number));
    writeAndRead(Date{number});
    writeAndRead(Currency{bits});
    writeAndRead(static_cast<std::int32_t>(bits));
    return 0;
}
