#pragma once

// Exact arithmetic of the fixed-point values, Decimal and Currency.

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/values/variant.h"

namespace pxtarvo {

/// units / 10^scale; `scale` 0 to 28.
Decimal decimalOf(std::int64_t units, std::uint8_t scale = 0);
Decimal decimalOf(Currency value);
/// From the 15 digits that the platform shows of a double, halves to even beyond 28 places. 6 (Overflow)
/// beyond 96 bits.
Decimal decimalOf(double value);

double toDouble(const Decimal& value);
/// All the digits that count: no zeros at the end of the decimals, no exponent.
std::string decimalText(const Decimal& value, std::string_view decimalSeparator);

std::strong_ordering compare(const Decimal& a, const Decimal& b);
/// Exact where 96 bits and 28 places hold it, else with fewer places, halves to even. 6 (Overflow) where not
/// even its whole part fits.
Decimal sum(const Decimal& a, const Decimal& b);

}  // namespace pxtarvo
