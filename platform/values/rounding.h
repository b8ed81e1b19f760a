#pragma once

// Rounding of doubles.

#include <array>
#include <cstdint>

namespace pxtarvo {

/// Powers of ten that a 64-bit whole number holds.
inline constexpr auto powersOfTen = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// A double's decimal form: digits x 10^exponent. `digits` has exactly 15 digits, or is 0.
struct SignificantDigits {
    std::uint64_t digits = 0;
    int exponent = 0;
    bool negative = false;
};

/// The 15 significant digits that the platform shows of a double. 6 (Overflow) for an infinity or NaN.
SignificantDigits significantDigits(double value);

/// The nearest whole number, halves to the even one, whatever rounding mode the processor is in.
double roundHalfEven(double value);

/// Rounds to `decimals` (0 to 9) places, halves away from zero, judged on the value at 15 significant digits.
double roundHalfAway(double value, int decimals);

}  // namespace pxtarvo
