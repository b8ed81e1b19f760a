#include "platform/values/rounding.h"

#include <charconv>
#include <cmath>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

namespace {

constexpr int shownDigits = 15;

}  // namespace

SignificantDigits significantDigits(double value) {
    if (!std::isfinite(value)) throw RuntimeError(ErrorNumber::Overflow);
    if (value == 0) return {};
    std::array<char, 32> text;  // d.ddddddddddddddE-ddd
    const auto written = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                       std::chars_format::scientific, shownDigits - 1);
    SignificantDigits result{.negative = value < 0};
    const char* digit = text.data();
    for (; *digit != 'e'; ++digit) {
        if (*digit != '.') result.digits = result.digits * 10 + static_cast<std::uint64_t>(*digit - '0');
    }
    ++digit;
    const bool negativeExponent = *digit++ == '-';
    std::from_chars(digit, written.ptr, result.exponent);
    if (negativeExponent) result.exponent = -result.exponent;
    result.exponent -= shownDigits - 1;
    return result;
}

double roundHalfEven(double value) {
    const double below = std::floor(value);
    const double excess = value - below;
    if (excess != 0.5) return excess < 0.5 ? below : below + 1;
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

double roundHalfAway(double value, int decimals) {
    const SignificantDigits shown = significantDigits(value);
    const int dropped = -shown.exponent - decimals;
    if (dropped <= 0) return value;
    if (dropped > shownDigits) return 0;
    const std::uint64_t unit = powersOfTen[static_cast<std::size_t>(dropped)];
    const std::uint64_t kept = (shown.digits + unit / 2) / unit;
    const double rounded =
        static_cast<double>(kept) / static_cast<double>(powersOfTen[static_cast<std::size_t>(decimals)]);
    return shown.negative && kept != 0 ? -rounded : rounded;
}

}  // namespace pxtarvo
