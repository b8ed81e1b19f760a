#include "platform/values/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// Whole numbers below this are exact in a double.
constexpr double exactWholeNumbers = 9007199254740992.0;

constexpr int largestExponent = 100'000;

bool isWhite(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

class NumberReader {
  public:
    NumberReader(std::string_view text, const Locale& locale) : rest_(text), locale_(locale) {}

    std::optional<NumberReading> read() {
        readBefore();
        const bool read = take("&") ? readBits() : readDecimal();
        readAfter();
        if (!read || !rest_.empty() || open_) return std::nullopt;
        if (!reading_.bits) reading_.value = decimalValue();
        reading_.negative = negative_;
        if (negative_) reading_.value = -reading_.value;
        return reading_;
    }

  private:
    bool take(std::string_view token) {
        if (token.empty() || !rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }
    bool takeWhite() {
        if (rest_.empty() || !isWhite(rest_.front())) return false;
        rest_.remove_prefix(1);
        return true;
    }
    /// One sign or one pair of parentheses.
    bool takeSign() {
        if (signed_) return false;
        if (take("-")) return negative_ = signed_ = true;
        return signed_ = take("+");
    }
    bool takeCurrency() { return !currency_ && (currency_ = take(locale_.currencySymbol)); }

    void readBefore() {
        while (takeWhite() || takeSign() || takeCurrency() || takeOpening()) {
        }
    }
    bool takeOpening() { return !signed_ && take("(") && (open_ = signed_ = negative_ = true); }
    void readAfter() {
        while (takeWhite() || takeSign() || takeCurrency() || takeClosing()) {
        }
    }
    bool takeClosing() { return open_ && take(")") && !(open_ = false); }

    bool readBits() {
        const int base = take("H") || take("h") ? 16 : take("O") || take("o") ? 8 : 0;
        if (base == 0) return false;
        std::uint64_t bits = 0;
        const auto end = std::from_chars(rest_.data(), rest_.data() + rest_.size(), bits, base);
        if (end.ec == std::errc::result_out_of_range) throw RuntimeError(ErrorNumber::Overflow);
        if (end.ec != std::errc()) return false;
        rest_.remove_prefix(static_cast<std::size_t>(end.ptr - rest_.data()));
        reading_.bits = bits;
        reading_.value = static_cast<double>(bits);
        return true;
    }

    /// Group separators stand anywhere among the whole digits.
    bool readDecimal() {
        bool anyDigit = false;
        bool decimals = false;
        for (; !rest_.empty();) {
            if (isDigit(rest_.front())) {
                plain_ += rest_.front();
                rest_.remove_prefix(1);
                anyDigit = true;
            } else if (!decimals && take(locale_.decimalSeparator)) {
                plain_ += '.';
                decimals = true;
            } else if (decimals || !take(locale_.groupSeparator)) {
                break;
            }
        }
        if (anyDigit) readExponent();
        return anyDigit;
    }

    void readExponent() {
        if (rest_.empty() || std::string_view("eEdD").find(rest_.front()) == std::string_view::npos) return;
        std::size_t at = 1;
        const bool sign = at < rest_.size() && (rest_[at] == '+' || rest_[at] == '-');
        const bool negative = sign && rest_[at] == '-';
        if (sign) ++at;
        if (at == rest_.size() || !isDigit(rest_[at])) return;
        for (; at < rest_.size() && isDigit(rest_[at]); ++at) {
            exponent_ = std::min(exponent_ * 10 + (rest_[at] - '0'), largestExponent);
        }
        if (negative) exponent_ = -exponent_;
        rest_.remove_prefix(at);
    }

    double decimalValue() {
        if (exponent_ != 0) plain_.append("e").append(std::to_string(exponent_));
        double value = 0;
        const auto end = std::from_chars(plain_.data(), plain_.data() + plain_.size(), value);
        if (end.ec == std::errc::result_out_of_range) {
            if (leadingPower() > 0) throw RuntimeError(ErrorNumber::Overflow);
            return 0;
        }
        return value;
    }
    /// The power of ten of the first digit that counts, tells too large from too small.
    long leadingPower() const {
        const auto digitsEnd = plain_.find('e');
        const auto point = std::min({plain_.find('.'), digitsEnd, plain_.size()});
        const auto first = plain_.find_first_of("123456789");
        return static_cast<long>(point) - static_cast<long>(first) + exponent_;
    }

    std::string_view rest_;
    const Locale& locale_;
    NumberReading reading_;
    std::string plain_;  ///< the digits, with a point for the decimal separator
    int exponent_ = 0;
    bool signed_ = false;
    bool negative_ = false;
    bool open_ = false;
    bool currency_ = false;
};

}  // namespace

std::optional<NumberReading> readNumber(std::string_view text, const Locale& locale) {
    return NumberReader(text, locale).read();
}

std::string numberText(double value, int digits, const Locale& locale) {
    if (!std::isfinite(value)) throw RuntimeError(ErrorNumber::Overflow);
    if (value == 0) return "0";
    std::array<char, 40> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::general, digits);
    std::string text(buffer.data(), written.ptr);
    if (const auto point = text.find('.'); point != std::string::npos) {
        text.replace(point, 1, locale.decimalSeparator);
    }
    if (const auto exponent = text.find('e'); exponent != std::string::npos) text[exponent] = 'E';
    return text;
}

std::string plainNumber(std::int32_t value) {
    return std::to_string(value);
}

std::string plainNumber(double value) {
    std::array<char, 400> buffer;  // holds the smallest double's zeros
    char* const begin = buffer.data();
    char* const end = begin + buffer.size();
    const bool manyDigits = std::fabs(value) >= exactWholeNumbers;
    if (!manyDigits && value == std::trunc(value)) {
        return {begin, std::to_chars(begin, end, static_cast<std::int64_t>(value)).ptr};
    }
    if (!std::isfinite(value)) throw RuntimeError(ErrorNumber::Overflow);
    if (!manyDigits) return {begin, std::to_chars(begin, end, value, std::chars_format::fixed).ptr};

    // A whole number: its shortest digits, d.ddde+xx, and zeros in the place of the others.
    const std::string_view written(begin,
                                   std::to_chars(begin, end, value, std::chars_format::scientific).ptr);
    std::string text = replaced(written.substr(0, written.find('e')), ".", "");
    int exponent = 0;
    std::from_chars(begin + written.find('e') + 2, begin + written.size(), exponent);
    const std::size_t sign = value < 0 ? 1 : 0;
    text.resize(sign + static_cast<std::size_t>(exponent) + 1, '0');
    return text;
}

std::string groupedNumber(std::int32_t value, const Locale& locale) {
    const std::string plain = plainNumber(value);
    const std::size_t sign = value < 0 ? 1 : 0;
    std::string text;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        if (i > sign && (plain.size() - i) % 3 == 0) text += locale.groupSeparator;
        text += plain[i];
    }
    return text;
}

}  // namespace pxtarvo
