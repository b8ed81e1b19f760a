#pragma once

// Numbers as text and text as numbers, in the user's notation and in that of statements.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/values/locale.h"

namespace pxtarvo {

/// What a text says as a number.
struct NumberReading {
    double value = 0;
    /// The bits of a text written with &H or &O, before its sign: as a 32-bit whole number &HFFFFFFFF is
    /// -1.
    std::optional<std::uint64_t> bits;
    bool negative = false;
};

/// Reads a whole text as the automation run time does; nullopt where it is no number. 6 (Overflow) beyond the
/// range of a double; a number too small for one is 0.
std::optional<NumberReading> readNumber(std::string_view text, const Locale& locale);

/// At most `digits` significant digits (15 for a double, 7 for a single), with an exponent ("1E+15", "1E-05")
/// for a number of more whole digits or less than 0.0001. 6 (Overflow) for an infinity or NaN.
std::string numberText(double value, int digits, const Locale& locale);

/// A whole or decimal number in plain decimal form with a point, shortest form that reads back the same; no
/// exponent, grouping or leading blank. For statements and messages. 6 for an infinity or NaN.
std::string plainNumber(double value);
std::string plainNumber(std::int32_t value);

/// Grouped thousands, no decimals ("##,###,##0" in the user's locale).
std::string groupedNumber(std::int32_t value, const Locale& locale);

}  // namespace pxtarvo
