#include "platform/values/decimal_number.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/values/rounding.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo {

namespace {

constexpr int mostPlaces = 28;

/// An unsigned whole number wide enough for 96 bits scaled up by 10^28 (190 bits) and one carry.
class WideNumber {
  public:
    WideNumber() = default;
    explicit WideNumber(const Decimal& value)
        : limbs_{static_cast<std::uint32_t>(value.low), static_cast<std::uint32_t>(value.low >> 32),
                 value.high} {}
    explicit WideNumber(std::uint64_t value)
        : limbs_{static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)} {}

    bool fitsDecimal() const {
        return std::all_of(limbs_.begin() + 3, limbs_.end(), [](std::uint32_t limb) { return limb == 0; });
    }
    bool odd() const { return limbs_[0] & 1; }
    bool isZero() const { return limbs_ == Limbs{}; }
    Decimal decimal(int scale, bool negative) const {
        return {.low = static_cast<std::uint64_t>(limbs_[1]) << 32 | limbs_[0],
                .high = limbs_[2],
                .scale = static_cast<std::uint8_t>(scale),
                .negative = negative && !isZero()};
    }

    void timesTen() {
        std::uint64_t carry = 0;
        for (std::uint32_t& limb : limbs_) {
            carry += std::uint64_t{limb} * 10;
            limb = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    /// Returns the remainder.
    std::uint32_t divideByTen() {
        std::uint64_t remainder = 0;
        for (auto limb = limbs_.rbegin(); limb != limbs_.rend(); ++limb) {
            remainder = remainder << 32 | *limb;
            *limb = static_cast<std::uint32_t>(remainder / 10);
            remainder %= 10;
        }
        return static_cast<std::uint32_t>(remainder);
    }
    void add(const WideNumber& other) {
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < limbs_.size(); ++i) {
            carry += std::uint64_t{limbs_[i]} + other.limbs_[i];
            limbs_[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    /// `other` is at most this.
    void subtract(const WideNumber& other) {
        std::uint64_t borrow = 0;
        for (std::size_t i = 0; i < limbs_.size(); ++i) {
            const std::uint64_t difference = std::uint64_t{limbs_[i]} - other.limbs_[i] - borrow;
            limbs_[i] = static_cast<std::uint32_t>(difference);
            borrow = difference >> 63;
        }
    }
    std::strong_ordering operator<=>(const WideNumber& other) const {
        return std::lexicographical_compare_three_way(limbs_.rbegin(), limbs_.rend(), other.limbs_.rbegin(),
                                                      other.limbs_.rend());
    }

  private:
    using Limbs = std::array<std::uint32_t, 7>;  ///< least significant first
    Limbs limbs_{};
};

WideNumber scaledUp(const Decimal& value, int scale) {
    WideNumber number(value);
    for (int places = value.scale; places < scale; ++places) number.timesTen();
    return number;
}

/// Drops places, halves to even, until the scale is at most 28 and the number fits.
Decimal fitted(WideNumber number, int scale, bool negative) {
    std::uint32_t last = 0;
    bool more = false;
    while (scale > 0 && (scale > mostPlaces || !number.fitsDecimal())) {
        more |= last != 0;
        last = number.divideByTen();
        --scale;
    }
    if (last > 5 || (last == 5 && (more || number.odd()))) {
        number.add(WideNumber(1));
        if (!number.fitsDecimal() && scale > 0) return fitted(number, scale, negative);
    }
    if (!number.fitsDecimal()) throw RuntimeError(ErrorNumber::Overflow);
    return number.decimal(scale, negative);
}

bool isNegative(const Decimal& value) {
    return value.negative && (value.low != 0 || value.high != 0);
}

}  // namespace

Decimal decimalOf(std::int64_t units, std::uint8_t scale) {
    const auto magnitude = static_cast<std::uint64_t>(units);
    return {.low = units < 0 ? 0 - magnitude : magnitude, .scale = scale, .negative = units < 0};
}

Decimal decimalOf(Currency value) {
    return decimalOf(value.tenThousandths, 4);
}

Decimal decimalOf(double value) {
    const SignificantDigits shown = significantDigits(value);
    if (shown.digits == 0 || shown.exponent < -mostPlaces - 15) return {};
    if (shown.exponent > mostPlaces) throw RuntimeError(ErrorNumber::Overflow);
    WideNumber number(shown.digits);
    int scale = -shown.exponent;
    for (; scale < 0; ++scale) number.timesTen();
    while (scale > 0) {
        WideNumber shorter = number;
        if (shorter.divideByTen() != 0) break;
        number = shorter;
        --scale;
    }
    return fitted(number, scale, shown.negative);
}

double toDouble(const Decimal& value) {
    const std::string text = decimalText(value, ".");
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::string decimalText(const Decimal& value, std::string_view decimalSeparator) {
    std::string digits;  // least significant first
    for (WideNumber rest(value); !rest.isZero();) digits += static_cast<char>('0' + rest.divideByTen());
    const std::size_t scale = value.scale;
    if (digits.size() <= scale) digits.append(scale + 1 - digits.size(), '0');
    const std::size_t firstKept = std::min(digits.find_first_not_of('0'), scale);
    std::ranges::reverse(digits);

    std::string text;
    if (isNegative(value)) text += '-';
    text.append(digits, 0, digits.size() - scale);
    if (firstKept < scale)
        text.append(decimalSeparator).append(digits, digits.size() - scale, scale - firstKept);
    return text;
}

std::strong_ordering compare(const Decimal& a, const Decimal& b) {
    if (isNegative(a) != isNegative(b)) {
        return isNegative(a) ? std::strong_ordering::less : std::strong_ordering::greater;
    }
    const int scale = std::max(a.scale, b.scale);
    const auto order = scaledUp(a, scale) <=> scaledUp(b, scale);
    return isNegative(a) ? 0 <=> order : order;
}

Decimal sum(const Decimal& a, const Decimal& b) {
    const int scale = std::max(a.scale, b.scale);
    WideNumber larger = scaledUp(a, scale);
    WideNumber smaller = scaledUp(b, scale);
    bool negative = a.negative;
    if (a.negative == b.negative) {
        larger.add(smaller);
    } else {
        if (larger < smaller) {
            std::swap(larger, smaller);
            negative = b.negative;
        }
        larger.subtract(smaller);
    }
    return fitted(larger, scale, negative);
}

}  // namespace pxtarvo
